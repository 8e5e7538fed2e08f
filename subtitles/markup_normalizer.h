#pragma once

// Normalising caption mark-up before styling. Thread-safety: reentrant.

#include <QString>
#include <QStringView>

namespace tolvane::subtitles {

// Line breaks by file type ("smi" drops raw line ends and honours only <br>;
// "srt" honours both), "&nbsp;", numeric character references, the repairs of
// common authoring mistakes, <rp>, "{...}" override codes, comments, and the
// tag filter: honoured tags stay, other tags go, and bracketed text that is
// not a tag stays visible between "「" and "」".
QString pre_processingTag(QStringView content, QStringView type);

}  // namespace tolvane::subtitles
