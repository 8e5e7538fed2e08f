<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name></name>
    <message id="MONO">
        <source>Mono</source>
        <translation>Mono</translation>
    </message>
    <message id="STEREO">
        <source>Stereo</source>
        <translation>Stereo</translation>
    </message>
    <message id="CHANNELS">
        <source>Channels</source>
        <translation>Channels</translation>
    </message>
    <message id="REDUCHANNELS">
        <source> channels</source>
        <translation> channels</translation>
    </message>
    <message id="NOPXFMT">
        <source>This video's pixel format is not supported in FFmpeg mode. The picture may look wrong; Native mode may play it better.</source>
        <translation>This video's pixel format is not supported in FFmpeg mode. The picture may look wrong; Native mode may play it better.</translation>
    </message>
    <message id="FILEINLIST">
        <source>%1 and %2 more</source>
        <translation>%1 and %2 more</translation>
    </message>
    <message id="MOREFILES">
        <source>New videos were found in this folder</source>
        <translation>New videos were found in this folder</translation>
    </message>
    <message id="MOREFILESCONT">
        <source>%1 video files not in the playlist are now in the folder. Add them to the playlist?</source>
        <translation>%1 video files not in the playlist are now in the folder. Add them to the playlist?</translation>
    </message>
    <message id="ADD">
        <source>Add</source>
        <translation>Add</translation>
    </message>
    <message id="CANCEL">
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message id="WARNINGMTXACC">
        <source>Tolvane has no permission to read this subtitle file.</source>
        <translation>Tolvane has no permission to read this subtitle file.</translation>
    </message>
    <message id="WARNINGMTXTXE">
        <source>This subtitle file is not text in the chosen encoding. Try another text encoding.</source>
        <translation>This subtitle file is not text in the chosen encoding. Try another text encoding.</translation>
    </message>
    <message id="WARNINGMTXFMT">
        <source>This file is neither a SAMI nor a SubRip subtitle file.</source>
        <translation>This file is neither a SAMI nor a SubRip subtitle file.</translation>
    </message>
    <message id="WARNINGMTXCTS">
        <source>This subtitle file could not be read.</source>
        <translation>This subtitle file could not be read.</translation>
    </message>
    <message id="FFADERROR">
        <source>This audio track cannot be played</source>
        <translation>This audio track cannot be played</translation>
    </message>
    <message id="FFADERRORCONT">
        <source>FFmpeg has no decoder for its codec. The previous audio track keeps playing.</source>
        <translation>FFmpeg has no decoder for its codec. The previous audio track keeps playing.</translation>
    </message>
    <message id="CAPTIONDELAY">
        <source>Subtitle delay %1 s</source>
        <translation>Subtitle delay %1 s</translation>
    </message>
    <message id="CAPTIONPOSITION">
        <source>Subtitle position %1%</source>
        <translation>Subtitle position %1%</translation>
    </message>
</context>
</TS>
