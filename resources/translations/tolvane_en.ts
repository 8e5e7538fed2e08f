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
    <message id="MENU_FILE">
        <source>File</source>
        <translation>File</translation>
    </message>
    <message id="MENU_OPEN_FILES">
        <source>Open Files…</source>
        <translation>Open Files…</translation>
    </message>
    <message id="MENU_OPEN_FOLDER">
        <source>Open Folder…</source>
        <translation>Open Folder…</translation>
    </message>
    <message id="MENU_OPEN_RECENT">
        <source>Open Recent</source>
        <translation>Open Recent</translation>
    </message>
    <message id="MENU_OPEN_RECENT_ITEM">
        <source>Open Recent: %1</source>
        <translation>Open Recent: %1</translation>
    </message>
    <message id="MENU_MOVE_TO_TRASH">
        <source>Move to Trash</source>
        <translation>Move to Trash</translation>
    </message>
    <message id="MENU_QUIT">
        <source>Quit</source>
        <translation>Quit</translation>
    </message>
    <message id="MENU_PLAYBACK">
        <source>Playback</source>
        <translation>Playback</translation>
    </message>
    <message id="MENU_PLAY_PAUSE">
        <source>Play / Pause</source>
        <translation>Play / Pause</translation>
    </message>
    <message id="MENU_FORWARD">
        <source>Forward 3 Seconds</source>
        <translation>Forward 3 Seconds</translation>
    </message>
    <message id="MENU_BACKWARD">
        <source>Back 3 Seconds</source>
        <translation>Back 3 Seconds</translation>
    </message>
    <message id="MENU_SKIP_FORWARD">
        <source>Skip Forward</source>
        <translation>Skip Forward</translation>
    </message>
    <message id="MENU_VOLUME_UP">
        <source>Volume Up</source>
        <translation>Volume Up</translation>
    </message>
    <message id="MENU_VOLUME_DOWN">
        <source>Volume Down</source>
        <translation>Volume Down</translation>
    </message>
    <message id="MENU_MUTE">
        <source>Mute</source>
        <translation>Mute</translation>
    </message>
    <message id="MENU_AUTO_PLAY">
        <source>Play Next File Automatically</source>
        <translation>Play Next File Automatically</translation>
    </message>
    <message id="MENU_PREVIOUS_FILE">
        <source>Previous File</source>
        <translation>Previous File</translation>
    </message>
    <message id="MENU_NEXT_FILE">
        <source>Next File</source>
        <translation>Next File</translation>
    </message>
    <message id="MENU_CAPTIONS">
        <source>Captions</source>
        <translation>Captions</translation>
    </message>
    <message id="MENU_CAPTION_EARLIER">
        <source>Show Captions Earlier</source>
        <translation>Show Captions Earlier</translation>
    </message>
    <message id="MENU_CAPTION_LATER">
        <source>Show Captions Later</source>
        <translation>Show Captions Later</translation>
    </message>
    <message id="MENU_CAPTION_UP">
        <source>Move Captions Up</source>
        <translation>Move Captions Up</translation>
    </message>
    <message id="MENU_CAPTION_DOWN">
        <source>Move Captions Down</source>
        <translation>Move Captions Down</translation>
    </message>
    <message id="MENU_ANOTHER_COLOR">
        <source>Alternative Default Colour</source>
        <translation>Alternative Default Colour</translation>
    </message>
    <message id="MENU_VIEW">
        <source>View</source>
        <translation>View</translation>
    </message>
    <message id="MENU_RATIO_SAR">
        <source>Original Aspect Ratio</source>
        <translation>Original Aspect Ratio</translation>
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
        <translation>Always on Top</translation>
    </message>
    <message id="MENU_INCREASE_SIZE">
        <source>Increase Size</source>
        <translation>Increase Size</translation>
    </message>
    <message id="MENU_DECREASE_SIZE">
        <source>Decrease Size</source>
        <translation>Decrease Size</translation>
    </message>
    <message id="MENU_FULL_SCREEN">
        <source>Full Screen</source>
        <translation>Full Screen</translation>
    </message>
    <message id="MENU_LEAVE_FULL_SCREEN">
        <source>Leave Full Screen</source>
        <translation>Leave Full Screen</translation>
    </message>
    <message id="MENU_WINDOW">
        <source>Window</source>
        <translation>Window</translation>
    </message>
    <message id="MENU_INSPECTOR">
        <source>Inspector</source>
        <translation>Inspector</translation>
    </message>
    <message id="MENU_PLAYLIST">
        <source>Playlist</source>
        <translation>Playlist</translation>
    </message>
    <message id="MENU_PREFERENCES">
        <source>Preferences…</source>
        <translation>Preferences…</translation>
    </message>
    <message id="CONTROL_PLAY_PAUSE">
        <source>Play or pause</source>
        <translation>Play or pause</translation>
    </message>
    <message id="CONTROL_PREVIOUS_FILE">
        <source>Previous file</source>
        <translation>Previous file</translation>
    </message>
    <message id="CONTROL_NEXT_FILE">
        <source>Next file</source>
        <translation>Next file</translation>
    </message>
    <message id="CONTROL_EARLIER_CAPTION">
        <source>Captions earlier</source>
        <translation>Captions earlier</translation>
    </message>
    <message id="CONTROL_LATER_CAPTION">
        <source>Captions later</source>
        <translation>Captions later</translation>
    </message>
    <message id="CONTROL_MUTE">
        <source>Mute</source>
        <translation>Mute</translation>
    </message>
    <message id="CONTROL_VOLUME">
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message id="CONTROL_INSPECTOR">
        <source>Inspector</source>
        <translation>Inspector</translation>
    </message>
    <message id="CONTROL_PLAYLIST">
        <source>Playlist</source>
        <translation>Playlist</translation>
    </message>
    <message id="CONTROL_FULL_WINDOW">
        <source>Full screen</source>
        <translation>Full screen</translation>
    </message>
    <message id="WINDOW_CLOSE">
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message id="WINDOW_MINIMISE">
        <source>Minimise</source>
        <translation>Minimise</translation>
    </message>
    <message id="WINDOW_ZOOM">
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message id="OPEN_VIDEOS_AND_CAPTIONS">
        <source>Videos and captions</source>
        <translation>Videos and captions</translation>
    </message>
    <message id="OPEN_ALL_FILES">
        <source>All files</source>
        <translation>All files</translation>
    </message>
    <message id="ENCODING_AUTOMATIC">
        <source>Automatic</source>
        <translation>Automatic</translation>
    </message>
    <message id="INSPECTOR_TITLE">
        <source>Inspector</source>
        <translation>Inspector</translation>
    </message>
    <message id="INSPECTOR_FRAME_RATE">
        <source>Frame rate</source>
        <translation>Frame rate</translation>
    </message>
    <message id="INSPECTOR_BIT_RATE">
        <source>Bit rate</source>
        <translation>Bit rate</translation>
    </message>
    <message id="INSPECTOR_PICTURE_SIZE">
        <source>Picture size</source>
        <translation>Picture size</translation>
    </message>
    <message id="INSPECTOR_VIDEO_FORMAT">
        <source>Video format</source>
        <translation>Video format</translation>
    </message>
    <message id="INSPECTOR_SOUND">
        <source>Sound track</source>
        <translation>Sound track</translation>
    </message>
    <message id="INSPECTOR_CAPTIONS">
        <source>Caption tracks</source>
        <translation>Caption tracks</translation>
    </message>
    <message id="INSPECTOR_NO_CAPTIONS">
        <source>No captions</source>
        <translation>No captions</translation>
    </message>
    <message id="INSPECTOR_TEXT_ENCODING">
        <source>Caption text encoding</source>
        <translation>Caption text encoding</translation>
    </message>
    <message id="INSPECTOR_DELAY">
        <source>%1 %2 s</source>
        <translation>%1 %2 s</translation>
    </message>
    <message id="INSPECTOR_FIRST">
        <source>first</source>
        <translation>first</translation>
    </message>
    <message id="INSPECTOR_SECOND">
        <source>second</source>
        <translation>second</translation>
    </message>
    <message id="PLAYLIST_TITLE">
        <source>Playlist</source>
        <translation>Playlist</translation>
    </message>
    <message id="PLAYLIST_RESET_PLAYED">
        <source>Reset Played State</source>
        <translation>Reset Played State</translation>
    </message>
    <message id="PREFERENCES_TITLE">
        <source>Preferences</source>
        <translation>Preferences</translation>
    </message>
    <message id="PREFERENCES_DECODING">
        <source>Decoding</source>
        <translation>Decoding</translation>
    </message>
    <message id="PREFERENCES_DECODING_MODE">
        <source>Decoding mode</source>
        <translation>Decoding mode</translation>
    </message>
    <message id="PREFERENCES_NATIVE_MODE">
        <source>Native (GStreamer)</source>
        <translation>Native (GStreamer)</translation>
    </message>
    <message id="PREFERENCES_FFMPEG_MODE">
        <source>FFmpeg</source>
        <translation>FFmpeg</translation>
    </message>
    <message id="PREFERENCES_HARDWARE_DECODING">
        <source>Hardware decoding of H.264</source>
        <translation>Hardware decoding of H.264</translation>
    </message>
    <message id="PREFERENCES_TEN_BIT">
        <source>10-bit output</source>
        <translation>10-bit output</translation>
    </message>
    <message id="PREFERENCES_CAPTIONS">
        <source>Captions</source>
        <translation>Captions</translation>
    </message>
    <message id="PREFERENCES_TEXT_ENCODING">
        <source>Default text encoding</source>
        <translation>Default text encoding</translation>
    </message>
    <message id="PREFERENCES_WHERE_FOLDER">
        <source>Caption folder</source>
        <translation>Caption folder</translation>
    </message>
    <message id="PREFERENCES_WHERE_NONE">
        <source>None: captions are looked for beside the video</source>
        <translation>None: captions are looked for beside the video</translation>
    </message>
    <message id="PREFERENCES_WHERE_CHOOSE">
        <source>Choose…</source>
        <translation>Choose…</translation>
    </message>
    <message id="PREFERENCES_WHERE_SHOW">
        <source>Show</source>
        <translation>Show</translation>
    </message>
    <message id="PREFERENCES_WHERE_CLEAR">
        <source>Clear</source>
        <translation>Clear</translation>
    </message>
    <message id="PREFERENCES_FONT">
        <source>Caption font</source>
        <translation>Caption font</translation>
    </message>
    <message id="PREFERENCES_FONT_CHOOSE">
        <source>Choose a font…</source>
        <translation>Choose a font…</translation>
    </message>
    <message id="PREFERENCES_FONT_SIZE">
        <source>Size (fraction of the width)</source>
        <translation>Size (fraction of the width)</translation>
    </message>
    <message id="PREFERENCES_BOLD">
        <source>Bold</source>
        <translation>Bold</translation>
    </message>
    <message id="PREFERENCES_SPACING">
        <source>Line spacing</source>
        <translation>Line spacing</translation>
    </message>
    <message id="PREFERENCES_MARGIN">
        <source>Margin (fraction of the height)</source>
        <translation>Margin (fraction of the height)</translation>
    </message>
    <message id="PREFERENCES_ANOTHER_COLOR">
        <source>Alternative default colour</source>
        <translation>Alternative default colour</translation>
    </message>
    <message id="PREFERENCES_SCREEN">
        <source>On screen</source>
        <translation>On screen</translation>
    </message>
    <message id="PREFERENCES_SHOW_MESSAGES">
        <source>Show status messages</source>
        <translation>Show status messages</translation>
    </message>
    <message id="NOOPENGL">
        <source>Tolvane needs OpenGL 3.3 to show video, and no OpenGL context could be created here (no display, or a broken graphics driver).</source>
        <translation>Tolvane needs OpenGL 3.3 to show video, and no OpenGL context could be created here (no display, or a broken graphics driver).</translation>
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
