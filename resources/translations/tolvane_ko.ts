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
</context>
</TS>
