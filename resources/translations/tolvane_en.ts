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
    <message id="NOTOPENEDVIDEO">
        <source>No video is open.</source>
        <translation>No video is open.</translation>
    </message>
    <message id="ITEMS">
        <source>%1 items</source>
        <translation>%1 items</translation>
    </message>
    <message id="WHEREALERT">
        <source>The subtitle folder cannot be found.</source>
        <translation>The subtitle folder cannot be found.</translation>
    </message>
    <message id="WHEREALERTCONT">
        <source>Choose the folder again in Preferences, or clear it.</source>
        <translation>Choose the folder again in Preferences, or clear it.</translation>
    </message>
    <message id="ERROPEN">
        <source>The file could not be opened.</source>
        <translation>The file could not be opened.</translation>
    </message>
    <message id="NOVIDEOTRACK">
        <source>The file has no video track.</source>
        <translation>The file has no video track.</translation>
    </message>
    <message id="NOAUDIOTRACK">
        <source>The file has no audio track.</source>
        <translation>The file has no audio track.</translation>
    </message>
    <message id="NOVIDEOCODEC">
        <source>The video codec of this file is not supported.</source>
        <translation>The video codec of this file is not supported.</translation>
    </message>
    <message id="NOAUDIOCODEC">
        <source>The audio codec of this file is not supported.</source>
        <translation>The audio codec of this file is not supported.</translation>
    </message>
    <message id="NOAUDIOCHNNL">
        <source>The audio channel layout of this file is not supported.</source>
        <translation>The audio channel layout of this file is not supported.</translation>
    </message>
    <message id="NOTYPEFORQT">
        <source>Native mode cannot play %1 files.</source>
        <translation>Native mode cannot play %1 files.</translation>
    </message>
    <message id="NOTYPEFORQTCONT">
        <source>Switch to FFmpeg mode to play this file.</source>
        <translation>Switch to FFmpeg mode to play this file.</translation>
    </message>
    <message id="QTLSFFNTCPU">
        <source>The file took too long to load in Native mode.</source>
        <translation>The file took too long to load in Native mode.</translation>
    </message>
    <message id="QTLSFFADVANCE">
        <source>FFmpeg mode plays more kinds of files.</source>
        <translation>FFmpeg mode plays more kinds of files.</translation>
    </message>
    <message id="QTLSCHANGEMODE">
        <source>Choose FFmpeg to switch the decoding mode and play the file again.</source>
        <translation>Choose FFmpeg to switch the decoding mode and play the file again.</translation>
    </message>
    <message id="FFADERROR">
        <source>The audio of this file cannot be decoded.</source>
        <translation>The audio of this file cannot be decoded.</translation>
    </message>
    <message id="FFADERRORCONT">
        <source>The audio codec is not supported.</source>
        <translation>The audio codec is not supported.</translation>
    </message>
    <message id="FFADERRORFFMODE">
        <source>Native mode found no sound it can play in this file.</source>
        <translation>Native mode found no sound it can play in this file.</translation>
    </message>
    <message id="HASPT">
        <source>The file is protected and cannot be played.</source>
        <translation>The file is protected and cannot be played.</translation>
    </message>
    <message id="NOTPBL">
        <source>Native mode cannot play this file.</source>
        <translation>Native mode cannot play this file.</translation>
    </message>
    <message id="NOTCHANGEDEC">
        <source>The decoding mode cannot be changed now.</source>
        <translation>The decoding mode cannot be changed now.</translation>
    </message>
    <message id="NOTCHANGEDECCONT">
        <source>The playing video is no longer in the playlist. Open it again first.</source>
        <translation>The playing video is no longer in the playlist. Open it again first.</translation>
    </message>
    <message id="NOTCHANGEACC">
        <source>The decoding setting cannot be changed now.</source>
        <translation>The decoding setting cannot be changed now.</translation>
    </message>
    <message id="RESETPLAYED">
        <source>Forget where the files of this playlist were stopped?</source>
        <translation>Forget where the files of this playlist were stopped?</translation>
    </message>
    <message id="RESETPLAYEDCONT">
        <source>Positions, chosen tracks, subtitle delays and watched marks are cleared.</source>
        <translation>Positions, chosen tracks, subtitle delays and watched marks are cleared.</translation>
    </message>
    <message id="RESET">
        <source>Reset</source>
        <translation>Reset</translation>
    </message>
    <message id="NOTTRASHED">
        <source>These files could not be moved to the trash:</source>
        <translation>These files could not be moved to the trash:</translation>
    </message>
    <message id="NOTWRITABLE">
        <source>The recent file cannot be found.</source>
        <translation>The recent file cannot be found.</translation>
    </message>
    <message id="NOTWRITABLECONT">
        <source>It was on a read-only disk that is not available now. Insert the disk and open the file from it.</source>
        <translation>It was on a read-only disk that is not available now. Insert the disk and open the file from it.</translation>
    </message>
</context>
</TS>
