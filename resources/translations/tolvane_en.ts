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
</context>
</TS>
