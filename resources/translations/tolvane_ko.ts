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
    <message id="MENU_FILE">
        <source>File</source>
        <translation>파일</translation>
    </message>
    <message id="MENU_OPEN_FILES">
        <source>Open Files…</source>
        <translation>파일 열기…</translation>
    </message>
    <message id="MENU_OPEN_FOLDER">
        <source>Open Folder…</source>
        <translation>폴더 열기…</translation>
    </message>
    <message id="MENU_OPEN_RECENT">
        <source>Open Recent</source>
        <translation>최근 항목 열기</translation>
    </message>
    <message id="MENU_OPEN_RECENT_ITEM">
        <source>Open Recent: %1</source>
        <translation>최근 항목 열기: %1</translation>
    </message>
    <message id="MENU_MOVE_TO_TRASH">
        <source>Move to Trash</source>
        <translation>휴지통으로 이동</translation>
    </message>
    <message id="MENU_QUIT">
        <source>Quit</source>
        <translation>종료</translation>
    </message>
    <message id="MENU_PLAYBACK">
        <source>Playback</source>
        <translation>재생</translation>
    </message>
    <message id="MENU_PLAY_PAUSE">
        <source>Play / Pause</source>
        <translation>재생 / 일시 정지</translation>
    </message>
    <message id="MENU_FORWARD">
        <source>Forward 3 Seconds</source>
        <translation>3초 앞으로</translation>
    </message>
    <message id="MENU_BACKWARD">
        <source>Back 3 Seconds</source>
        <translation>3초 뒤로</translation>
    </message>
    <message id="MENU_SKIP_FORWARD">
        <source>Skip Forward</source>
        <translation>건너뛰기</translation>
    </message>
    <message id="MENU_VOLUME_UP">
        <source>Volume Up</source>
        <translation>볼륨 높이기</translation>
    </message>
    <message id="MENU_VOLUME_DOWN">
        <source>Volume Down</source>
        <translation>볼륨 낮추기</translation>
    </message>
    <message id="MENU_MUTE">
        <source>Mute</source>
        <translation>음소거</translation>
    </message>
    <message id="MENU_AUTO_PLAY">
        <source>Play Next File Automatically</source>
        <translation>다음 파일 자동 재생</translation>
    </message>
    <message id="MENU_PREVIOUS_FILE">
        <source>Previous File</source>
        <translation>이전 파일</translation>
    </message>
    <message id="MENU_NEXT_FILE">
        <source>Next File</source>
        <translation>다음 파일</translation>
    </message>
    <message id="MENU_CAPTIONS">
        <source>Captions</source>
        <translation>자막</translation>
    </message>
    <message id="MENU_CAPTION_EARLIER">
        <source>Show Captions Earlier</source>
        <translation>자막 빠르게</translation>
    </message>
    <message id="MENU_CAPTION_LATER">
        <source>Show Captions Later</source>
        <translation>자막 느리게</translation>
    </message>
    <message id="MENU_CAPTION_UP">
        <source>Move Captions Up</source>
        <translation>자막 위로 이동</translation>
    </message>
    <message id="MENU_CAPTION_DOWN">
        <source>Move Captions Down</source>
        <translation>자막 아래로 이동</translation>
    </message>
    <message id="MENU_ANOTHER_COLOR">
        <source>Alternative Default Colour</source>
        <translation>다른 기본 색상</translation>
    </message>
    <message id="MENU_VIEW">
        <source>View</source>
        <translation>보기</translation>
    </message>
    <message id="MENU_RATIO_SAR">
        <source>Original Aspect Ratio</source>
        <translation>원래 화면 비율</translation>
    </message>
    <message id="MENU_RATIO_4_3">
        <source>4:3</source>
        <translation>4:3</translation>
    </message>
    <message id="MENU_RATIO_16_9">
        <source>16:9</source>
        <translation>16:9</translation>
    </message>
    <message id="MENU_RATIO_1_85">
        <source>1.85:1</source>
        <translation>1.85:1</translation>
    </message>
    <message id="MENU_RATIO_2_35">
        <source>2.35:1</source>
        <translation>2.35:1</translation>
    </message>
    <message id="MENU_RATIO_2_40">
        <source>2.40:1</source>
        <translation>2.40:1</translation>
    </message>
    <message id="MENU_ALWAYS_ON_TOP">
        <source>Always on Top</source>
        <translation>항상 위에 표시</translation>
    </message>
    <message id="MENU_INCREASE_SIZE">
        <source>Increase Size</source>
        <translation>크기 키우기</translation>
    </message>
    <message id="MENU_DECREASE_SIZE">
        <source>Decrease Size</source>
        <translation>크기 줄이기</translation>
    </message>
    <message id="MENU_FULL_SCREEN">
        <source>Full Screen</source>
        <translation>전체 화면</translation>
    </message>
    <message id="MENU_LEAVE_FULL_SCREEN">
        <source>Leave Full Screen</source>
        <translation>전체 화면 끝내기</translation>
    </message>
    <message id="MENU_WINDOW">
        <source>Window</source>
        <translation>윈도우</translation>
    </message>
    <message id="MENU_INSPECTOR">
        <source>Inspector</source>
        <translation>정보</translation>
    </message>
    <message id="MENU_PLAYLIST">
        <source>Playlist</source>
        <translation>재생 목록</translation>
    </message>
    <message id="MENU_PREFERENCES">
        <source>Preferences…</source>
        <translation>환경설정…</translation>
    </message>
    <message id="CONTROL_PLAY_PAUSE">
        <source>Play or pause</source>
        <translation>재생 또는 일시 정지</translation>
    </message>
    <message id="CONTROL_PREVIOUS_FILE">
        <source>Previous file</source>
        <translation>이전 파일</translation>
    </message>
    <message id="CONTROL_NEXT_FILE">
        <source>Next file</source>
        <translation>다음 파일</translation>
    </message>
    <message id="CONTROL_EARLIER_CAPTION">
        <source>Captions earlier</source>
        <translation>자막 빠르게</translation>
    </message>
    <message id="CONTROL_LATER_CAPTION">
        <source>Captions later</source>
        <translation>자막 느리게</translation>
    </message>
    <message id="CONTROL_MUTE">
        <source>Mute</source>
        <translation>음소거</translation>
    </message>
    <message id="CONTROL_VOLUME">
        <source>Volume</source>
        <translation>볼륨</translation>
    </message>
    <message id="CONTROL_INSPECTOR">
        <source>Inspector</source>
        <translation>정보</translation>
    </message>
    <message id="CONTROL_PLAYLIST">
        <source>Playlist</source>
        <translation>재생 목록</translation>
    </message>
    <message id="CONTROL_FULL_WINDOW">
        <source>Full screen</source>
        <translation>전체 화면</translation>
    </message>
    <message id="WINDOW_CLOSE">
        <source>Close</source>
        <translation>닫기</translation>
    </message>
    <message id="WINDOW_MINIMISE">
        <source>Minimise</source>
        <translation>최소화</translation>
    </message>
    <message id="WINDOW_ZOOM">
        <source>Zoom</source>
        <translation>확대/축소</translation>
    </message>
    <message id="OPEN_VIDEOS_AND_CAPTIONS">
        <source>Videos and captions</source>
        <translation>동영상과 자막</translation>
    </message>
    <message id="OPEN_ALL_FILES">
        <source>All files</source>
        <translation>모든 파일</translation>
    </message>
    <message id="ENCODING_AUTOMATIC">
        <source>Automatic</source>
        <translation>자동</translation>
    </message>
    <message id="INSPECTOR_TITLE">
        <source>Inspector</source>
        <translation>정보</translation>
    </message>
    <message id="INSPECTOR_FRAME_RATE">
        <source>Frame rate</source>
        <translation>프레임 속도</translation>
    </message>
    <message id="INSPECTOR_BIT_RATE">
        <source>Bit rate</source>
        <translation>비트 전송률</translation>
    </message>
    <message id="INSPECTOR_PICTURE_SIZE">
        <source>Picture size</source>
        <translation>화면 크기</translation>
    </message>
    <message id="INSPECTOR_VIDEO_FORMAT">
        <source>Video format</source>
        <translation>비디오 형식</translation>
    </message>
    <message id="INSPECTOR_SOUND">
        <source>Sound track</source>
        <translation>오디오 트랙</translation>
    </message>
    <message id="INSPECTOR_CAPTIONS">
        <source>Caption tracks</source>
        <translation>자막 트랙</translation>
    </message>
    <message id="INSPECTOR_NO_CAPTIONS">
        <source>No captions</source>
        <translation>자막 없음</translation>
    </message>
    <message id="INSPECTOR_TEXT_ENCODING">
        <source>Caption text encoding</source>
        <translation>자막 문자 인코딩</translation>
    </message>
    <message id="INSPECTOR_DELAY">
        <source>%1 %2 s</source>
        <translation>%1 %2초</translation>
    </message>
    <message id="INSPECTOR_FIRST">
        <source>first</source>
        <translation>첫째</translation>
    </message>
    <message id="INSPECTOR_SECOND">
        <source>second</source>
        <translation>둘째</translation>
    </message>
    <message id="PLAYLIST_TITLE">
        <source>Playlist</source>
        <translation>재생 목록</translation>
    </message>
    <message id="PLAYLIST_RESET_PLAYED">
        <source>Reset Played State</source>
        <translation>재생 기록 지우기</translation>
    </message>
    <message id="PREFERENCES_TITLE">
        <source>Preferences</source>
        <translation>환경설정</translation>
    </message>
    <message id="PREFERENCES_DECODING">
        <source>Decoding</source>
        <translation>디코딩</translation>
    </message>
    <message id="PREFERENCES_DECODING_MODE">
        <source>Decoding mode</source>
        <translation>디코딩 방식</translation>
    </message>
    <message id="PREFERENCES_NATIVE_MODE">
        <source>Native (GStreamer)</source>
        <translation>기본 (GStreamer)</translation>
    </message>
    <message id="PREFERENCES_FFMPEG_MODE">
        <source>FFmpeg</source>
        <translation>FFmpeg</translation>
    </message>
    <message id="PREFERENCES_HARDWARE_DECODING">
        <source>Hardware decoding of H.264</source>
        <translation>H.264 하드웨어 디코딩</translation>
    </message>
    <message id="PREFERENCES_TEN_BIT">
        <source>10-bit output</source>
        <translation>10비트 출력</translation>
    </message>
    <message id="PREFERENCES_CAPTIONS">
        <source>Captions</source>
        <translation>자막</translation>
    </message>
    <message id="PREFERENCES_TEXT_ENCODING">
        <source>Default text encoding</source>
        <translation>기본 문자 인코딩</translation>
    </message>
    <message id="PREFERENCES_WHERE_FOLDER">
        <source>Caption folder</source>
        <translation>자막 폴더</translation>
    </message>
    <message id="PREFERENCES_WHERE_NONE">
        <source>None: captions are looked for beside the video</source>
        <translation>없음: 동영상과 같은 폴더에서 자막을 찾습니다</translation>
    </message>
    <message id="PREFERENCES_WHERE_CHOOSE">
        <source>Choose…</source>
        <translation>선택…</translation>
    </message>
    <message id="PREFERENCES_WHERE_SHOW">
        <source>Show</source>
        <translation>열기</translation>
    </message>
    <message id="PREFERENCES_WHERE_CLEAR">
        <source>Clear</source>
        <translation>지우기</translation>
    </message>
    <message id="PREFERENCES_FONT">
        <source>Caption font</source>
        <translation>자막 글꼴</translation>
    </message>
    <message id="PREFERENCES_FONT_CHOOSE">
        <source>Choose a font…</source>
        <translation>글꼴 선택…</translation>
    </message>
    <message id="PREFERENCES_FONT_SIZE">
        <source>Size (fraction of the width)</source>
        <translation>크기 (화면 너비 대비)</translation>
    </message>
    <message id="PREFERENCES_BOLD">
        <source>Bold</source>
        <translation>굵게</translation>
    </message>
    <message id="PREFERENCES_SPACING">
        <source>Line spacing</source>
        <translation>줄 간격</translation>
    </message>
    <message id="PREFERENCES_MARGIN">
        <source>Margin (fraction of the height)</source>
        <translation>여백 (화면 높이 대비)</translation>
    </message>
    <message id="PREFERENCES_ANOTHER_COLOR">
        <source>Alternative default colour</source>
        <translation>다른 기본 색상</translation>
    </message>
    <message id="PREFERENCES_SCREEN">
        <source>On screen</source>
        <translation>화면 표시</translation>
    </message>
    <message id="PREFERENCES_SHOW_MESSAGES">
        <source>Show status messages</source>
        <translation>상태 메시지 표시</translation>
    </message>
    <message id="NOOPENGL">
        <source>Tolvane needs OpenGL 3.3 to show video, and no OpenGL context could be created here (no display, or a broken graphics driver).</source>
        <translation>Tolvane은 동영상을 보여 주려면 OpenGL 3.3이 필요한데, 여기서는 OpenGL 컨텍스트를 만들 수 없습니다 (디스플레이가 없거나 그래픽 드라이버에 문제가 있습니다).</translation>
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
