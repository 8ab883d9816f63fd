// A small, bounded reader for the rich-text source that hosts put into
// message boxes: groups, \b \i \ul \strike \plain, \fs, \cf with
// \colortbl, \f with \fonttbl, \par \line \tab, \ql \qc \qr \qj, \pard,
// \'hh (Windows-1252), \uN with \ucN, the escapes \\ \{ \}, and {\*...}
// destinations skipped. Anything else is ignored or shown as plain text;
// unbalanced braces never fail. Work is linear in the input, and groups
// nest at most kMaxDepth deep (deeper braces are ignored).
#ifndef NORVIK50_SRC_DIALOGS_QT_RICH_TEXT_READER_H_
#define NORVIK50_SRC_DIALOGS_QT_RICH_TEXT_READER_H_

#include <QTextDocument>
#include <string_view>

namespace norvik50::qt {

inline constexpr int kMaxRichTextDepth = 64;

// Replaces the content of `document` with `source` read as rich text.
void ReadRichText(std::u16string_view source, QTextDocument& document);

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_RICH_TEXT_READER_H_
