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
    <message id="FFADERROR">
        <source>This audio track cannot be played</source>
        <translation>이 오디오 트랙은 재생할 수 없습니다</translation>
    </message>
    <message id="FFADERRORCONT">
        <source>FFmpeg has no decoder for its codec. The previous audio track keeps playing.</source>
        <translation>FFmpeg에 이 코덱의 디코더가 없습니다. 이전 오디오 트랙으로 계속 재생합니다.</translation>
    </message>
    <message id="CAPTIONDELAY">
        <source>Subtitle delay %1 s</source>
        <translation>자막 싱크 %1초</translation>
    </message>
    <message id="CAPTIONPOSITION">
        <source>Subtitle position %1%</source>
        <translation>자막 위치 %1%</translation>
    </message>
</context>
</TS>
