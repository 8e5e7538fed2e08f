<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko_KR">
<context>
    <name></name>
    <message id="MONO">
        <source>Mono</source>
        <translation>모노</translation>
    </message>
    <message id="STEREO">
        <source>Stereo</source>
        <translation>스테레오</translation>
    </message>
    <message id="CHANNELS">
        <source>Channels</source>
        <translation>채널</translation>
    </message>
    <message id="REDUCHANNELS">
        <source> channels</source>
        <translation> 채널</translation>
    </message>
    <message id="NOPXFMT">
        <source>This video's pixel format is not supported in FFmpeg mode. The picture may look wrong; Native mode may play it better.</source>
        <translation>FFmpeg 모드에서 지원하지 않는 픽셀 포맷입니다. 화면이 올바르지 않을 수 있으니 Native 모드로 재생해 보세요.</translation>
    </message>
    <message id="FILEINLIST">
        <source>%1 and %2 more</source>
        <translation>%1 외 %2개</translation>
    </message>
    <message id="MOREFILES">
        <source>New videos were found in this folder</source>
        <translation>폴더에서 새 동영상을 찾았습니다</translation>
    </message>
    <message id="MOREFILESCONT">
        <source>%1 video files not in the playlist are now in the folder. Add them to the playlist?</source>
        <translation>재생 목록에 없는 동영상 파일 %1개가 폴더에 있습니다. 재생 목록에 추가할까요?</translation>
    </message>
    <message id="ADD">
        <source>Add</source>
        <translation>추가</translation>
    </message>
    <message id="CANCEL">
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
    <message id="WARNINGMTXACC">
        <source>Tolvane has no permission to read this subtitle file.</source>
        <translation>이 자막 파일을 읽을 권한이 없습니다.</translation>
    </message>
    <message id="WARNINGMTXTXE">
        <source>This subtitle file is not text in the chosen encoding. Try another text encoding.</source>
        <translation>이 자막 파일은 선택한 인코딩의 텍스트가 아닙니다. 다른 텍스트 인코딩을 선택해 보세요.</translation>
    </message>
    <message id="WARNINGMTXFMT">
        <source>This file is neither a SAMI nor a SubRip subtitle file.</source>
        <translation>이 파일은 SAMI 자막도 SubRip 자막도 아닙니다.</translation>
    </message>
    <message id="WARNINGMTXCTS">
        <source>This subtitle file could not be read.</source>
        <translation>이 자막 파일을 읽을 수 없습니다.</translation>
    </message>
    <message id="NOTOPENEDVIDEO">
        <source>No video is open.</source>
        <translation>열린 동영상이 없습니다.</translation>
    </message>
    <message id="ITEMS">
        <source>%1 items</source>
        <translation>%1개 항목</translation>
    </message>
    <message id="WHEREALERT">
        <source>The subtitle folder cannot be found.</source>
        <translation>자막 폴더를 찾을 수 없습니다.</translation>
    </message>
    <message id="WHEREALERTCONT">
        <source>Choose the folder again in Preferences, or clear it.</source>
        <translation>환경설정에서 폴더를 다시 선택하거나 지우세요.</translation>
    </message>
    <message id="ERROPEN">
        <source>The file could not be opened.</source>
        <translation>파일을 열 수 없습니다.</translation>
    </message>
    <message id="NOVIDEOTRACK">
        <source>The file has no video track.</source>
        <translation>파일에 비디오 트랙이 없습니다.</translation>
    </message>
    <message id="NOAUDIOTRACK">
        <source>The file has no audio track.</source>
        <translation>파일에 오디오 트랙이 없습니다.</translation>
    </message>
    <message id="NOVIDEOCODEC">
        <source>The video codec of this file is not supported.</source>
        <translation>이 파일의 비디오 코덱은 지원되지 않습니다.</translation>
    </message>
    <message id="NOAUDIOCODEC">
        <source>The audio codec of this file is not supported.</source>
        <translation>이 파일의 오디오 코덱은 지원되지 않습니다.</translation>
    </message>
    <message id="NOAUDIOCHNNL">
        <source>The audio channel layout of this file is not supported.</source>
        <translation>이 파일의 오디오 채널 구성은 지원되지 않습니다.</translation>
    </message>
    <message id="NOTYPEFORQT">
        <source>Native mode cannot play %1 files.</source>
        <translation>네이티브 모드에서는 %1 파일을 재생할 수 없습니다.</translation>
    </message>
    <message id="NOTYPEFORQTCONT">
        <source>Switch to FFmpeg mode to play this file.</source>
        <translation>이 파일을 재생하려면 FFmpeg 모드로 바꾸세요.</translation>
    </message>
    <message id="QTLSFFNTCPU">
        <source>The file took too long to load in Native mode.</source>
        <translation>네이티브 모드에서 파일을 불러오는 데 너무 오래 걸렸습니다.</translation>
    </message>
    <message id="QTLSFFADVANCE">
        <source>FFmpeg mode plays more kinds of files.</source>
        <translation>FFmpeg 모드는 더 많은 종류의 파일을 재생합니다.</translation>
    </message>
    <message id="QTLSCHANGEMODE">
        <source>Choose FFmpeg to switch the decoding mode and play the file again.</source>
        <translation>FFmpeg를 누르면 디코딩 모드를 바꾸고 파일을 다시 재생합니다.</translation>
    </message>
    <message id="FFADERROR">
        <source>The audio of this file cannot be decoded.</source>
        <translation>이 파일의 오디오를 디코딩할 수 없습니다.</translation>
    </message>
    <message id="FFADERRORCONT">
        <source>The audio codec is not supported.</source>
        <translation>오디오 코덱이 지원되지 않습니다.</translation>
    </message>
    <message id="FFADERRORFFMODE">
        <source>Native mode found no sound it can play in this file.</source>
        <translation>네이티브 모드에서 이 파일의 소리를 재생할 수 없습니다.</translation>
    </message>
    <message id="HASPT">
        <source>The file is protected and cannot be played.</source>
        <translation>보호된 파일이라 재생할 수 없습니다.</translation>
    </message>
    <message id="NOTPBL">
        <source>Native mode cannot play this file.</source>
        <translation>네이티브 모드에서 이 파일을 재생할 수 없습니다.</translation>
    </message>
    <message id="NOTCHANGEDEC">
        <source>The decoding mode cannot be changed now.</source>
        <translation>지금은 디코딩 모드를 바꿀 수 없습니다.</translation>
    </message>
    <message id="NOTCHANGEDECCONT">
        <source>The playing video is no longer in the playlist. Open it again first.</source>
        <translation>재생 중인 동영상이 재생목록에 없습니다. 먼저 다시 여세요.</translation>
    </message>
    <message id="NOTCHANGEACC">
        <source>The decoding setting cannot be changed now.</source>
        <translation>지금은 디코딩 설정을 바꿀 수 없습니다.</translation>
    </message>
    <message id="RESETPLAYED">
        <source>Forget where the files of this playlist were stopped?</source>
        <translation>이 재생목록 파일들의 재생 위치를 지울까요?</translation>
    </message>
    <message id="RESETPLAYEDCONT">
        <source>Positions, chosen tracks, subtitle delays and watched marks are cleared.</source>
        <translation>재생 위치, 선택한 트랙, 자막 싱크와 시청 표시가 지워집니다.</translation>
    </message>
    <message id="RESET">
        <source>Reset</source>
        <translation>초기화</translation>
    </message>
    <message id="NOTTRASHED">
        <source>These files could not be moved to the trash:</source>
        <translation>다음 파일을 휴지통으로 옮기지 못했습니다:</translation>
    </message>
    <message id="NOTWRITABLE">
        <source>The recent file cannot be found.</source>
        <translation>최근 파일을 찾을 수 없습니다.</translation>
    </message>
    <message id="NOTWRITABLECONT">
        <source>It was on a read-only disk that is not available now. Insert the disk and open the file from it.</source>
        <translation>지금 연결되지 않은 읽기 전용 디스크에 있던 파일입니다. 디스크를 연결한 뒤 파일을 여세요.</translation>
    </message>
</context>
</TS>
