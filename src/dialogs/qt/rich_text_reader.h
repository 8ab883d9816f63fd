// A small, bounded reader for the rich-text source that hosts put into
// message boxes: groups, \b \i \ul \strike \plain, \fs, \cf with
// \colortbl, \f with \fonttbl, \par \line \tab, \ql \qc \qr \qj, \pard,
// \'hh (Windows-1252), \uN with \ucN, the escapes \\ \{ \}, and {\*...}
// destinations skipped. Anything else is ignored or shown as plain text;
// unbalanced braces never fail. Work is linear in the input: text goes
// into the document in runs of one format, control words of any length
// are read once, and groups nest at most kMaxRichTextDepth deep (deeper
// braces are ignored).
#ifndef NORVIK50_SRC_DIALOGS_QT_RICH_TEXT_READER_H_
#define NORVIK50_SRC_DIALOGS_QT_RICH_TEXT_READER_H_

#include <QTextDocument>
#include <string_view>

namespace norvik50::qt {

inline constexpr int kMaxRichTextDepth = 64;

// What a message area shows at most, in characters (paragraph ends
// count as one). Nobody reads further in a message box, and laying out a
// megabyte of text would keep the host waiting for seconds; a longer text
// is cut there and ends in kRichTextCutMarker.
inline constexpr qsizetype kMaxRichTextShown = 30000;
inline constexpr char16_t kRichTextCutMarker = u'\u2026';  // "…"

// Replaces the content of `document` with `source` read as rich text.
// When the text would pass `max_shown` characters, the first `max_shown`
// are shown followed by kRichTextCutMarker, and the rest of the source is
// not read. The document keeps no undo steps of the reading.
void ReadRichText(std::u16string_view source, QTextDocument& document,
                  qsizetype max_shown = kMaxRichTextShown);

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_RICH_TEXT_READER_H_
