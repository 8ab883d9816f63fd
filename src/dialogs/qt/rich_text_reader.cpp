#include "dialogs/qt/rich_text_reader.h"

#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <algorithm>
#include <map>
#include <optional>
#include <vector>

namespace norvik50::qt {
namespace {

// Windows-1252 bytes 0x80..0x9F; the rest of the code page is Latin-1.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char16_t FromCp1252(int byte) {
  return byte >= 0x80 && byte < 0xA0 ? kCp1252High[byte - 0x80] : static_cast<char16_t>(byte);
}

bool IsLetter(char16_t c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }

// Characters that end a stretch of plain text in the source.
bool IsSyntax(char16_t c) {
  return c == u'{' || c == u'}' || c == u'\\' || c == u'\r' || c == u'\n';
}

bool IsHighSurrogate(char16_t c) { return c >= 0xD800 && c <= 0xDBFF; }

QString ToQ(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

enum class Destination { kText, kSkip, kFontTable, kColorTable };

// What decides a character's look; text of one style is one run.
struct CharStyle {
  bool bold = false, italic = false, underline = false, strike = false;
  int half_points = 0;  // 0: the document's default size
  int color = 0;        // index into the colour table; 0 the default
  int font = -1;
  bool operator==(const CharStyle&) const = default;
};

struct GroupState {
  CharStyle style;
  int unicode_skip = 1;
  Destination destination = Destination::kText;
};

class Reader {
 public:
  Reader(std::u16string_view source, QTextDocument& document, qsizetype max_shown)
      : in_(source), cursor_(&document), max_shown_(std::max<qsizetype>(0, max_shown)) {}

  void Run() {
    // One edit block: the document's layout sees a single change at the
    // end instead of one per run, which would lay the paragraph out again
    // each time.
    cursor_.beginEditBlock();
    if (const QTextBlockFormat block = cursor_.blockFormat();
        block.hasProperty(QTextFormat::BlockAlignment)) {
      block_alignment_ = block.alignment();
    }
    while (pos_ < in_.size() && !cut_) {
      const char16_t c = in_[pos_];
      if (c == u'{') {
        ++pos_;
        OpenGroup();
      } else if (c == u'}') {
        ++pos_;
        CloseGroup();
      } else if (c == u'\\') {
        ++pos_;
        ControlWord();
      } else if (c == u'\r' || c == u'\n') {
        ++pos_;  // line ends in the source are not text
      } else {
        PlainText();
      }
    }
    Flush();
    cursor_.endEditBlock();
  }

 private:
  void OpenGroup() {
    if (stack_.size() >= kMaxRichTextDepth) {
      ++ignored_opens_;
      return;
    }
    stack_.push_back(state_);
    if (state_.destination == Destination::kFontTable) font_name_.clear();
  }

  void CloseGroup() {
    if (ignored_opens_ > 0) {
      --ignored_opens_;
      return;
    }
    if (stack_.empty()) return;  // unbalanced: nothing to close
    state_ = stack_.back();
    stack_.pop_back();
  }

  // The stretch up to the next brace, backslash or line end, taken whole.
  void PlainText() {
    const std::size_t start = pos_;
    while (pos_ < in_.size() && !IsSyntax(in_[pos_])) ++pos_;
    Text(in_.substr(start, pos_ - start));
  }

  std::optional<int> ReadNumber() {
    const std::size_t start = pos_;
    bool negative = false;
    if (pos_ < in_.size() && in_[pos_] == u'-') {
      negative = true;
      ++pos_;
    }
    long long value = 0;
    int digits = 0;
    while (pos_ < in_.size() && in_[pos_] >= u'0' && in_[pos_] <= u'9') {
      if (digits < 10) value = value * 10 + (in_[pos_] - u'0');
      ++digits;
      ++pos_;
    }
    if (digits == 0) {
      pos_ = start;
      return std::nullopt;
    }
    if (value > 0x7FFFFFFF) value = 0x7FFFFFFF;
    return static_cast<int>(negative ? -value : value);
  }

  void ControlWord() {
    if (pos_ >= in_.size()) return;
    const char16_t c = in_[pos_];
    if (c == u'\\' || c == u'{' || c == u'}') {
      ++pos_;
      Text(std::u16string_view(&in_[pos_ - 1], 1));
      return;
    }
    if (c == u'\'') {
      ++pos_;
      Hex();
      return;
    }
    if (c == u'*') {
      ++pos_;
      state_.destination = Destination::kSkip;
      return;
    }
    if (!IsLetter(c)) {
      ++pos_;  // a control symbol we do not know (\~ \- \_): ignored
      return;
    }
    // The word is every letter that follows, however many: an overlong
    // word is one unknown word, not a word followed by text.
    const std::size_t start = pos_;
    while (pos_ < in_.size() && IsLetter(in_[pos_])) ++pos_;
    const std::u16string_view word = in_.substr(start, pos_ - start);
    const std::optional<int> number = ReadNumber();
    if (pos_ < in_.size() && in_[pos_] == u' ') ++pos_;  // the delimiter
    Apply(word, number);
  }

  void Hex() {
    int value = 0;
    for (int i = 0; i < 2; ++i) {
      if (pos_ >= in_.size()) return;
      const char16_t h = in_[pos_];
      int digit = -1;
      if (h >= u'0' && h <= u'9') digit = h - u'0';
      if (h >= u'a' && h <= u'f') digit = h - u'a' + 10;
      if (h >= u'A' && h <= u'F') digit = h - u'A' + 10;
      if (digit < 0) return;
      value = value * 16 + digit;
      ++pos_;
    }
    const char16_t c = FromCp1252(value);
    Text(std::u16string_view(&c, 1));
  }

  void Apply(std::u16string_view w, std::optional<int> n) {
    const bool on = !n || *n != 0;
    if (w == u"fonttbl") {
      state_.destination = Destination::kFontTable;
    } else if (w == u"colortbl") {
      Flush();  // the text so far keeps the colours it was written in
      state_.destination = Destination::kColorTable;
      colors_.clear();
      pending_.reset();
    } else if (state_.destination == Destination::kColorTable) {
      const int v = n ? std::clamp(*n, 0, 255) : 0;
      if (!pending_) pending_ = QColor(0, 0, 0);
      if (w == u"red") pending_->setRed(v);
      if (w == u"green") pending_->setGreen(v);
      if (w == u"blue") pending_->setBlue(v);
      return;
    } else if (state_.destination == Destination::kFontTable) {
      if (w == u"f" && n) font_index_ = *n;
      return;
    } else if (w == u"b") {
      state_.style.bold = on;
    } else if (w == u"i") {
      state_.style.italic = on;
    } else if (w == u"ul") {
      state_.style.underline = on;
    } else if (w == u"ulnone") {
      state_.style.underline = false;
    } else if (w == u"strike") {
      state_.style.strike = on;
    } else if (w == u"plain") {
      state_.style = CharStyle();
    } else if (w == u"fs" && n) {
      state_.style.half_points = std::clamp(*n, 2, 400);
    } else if (w == u"cf" && n) {
      state_.style.color = *n;
    } else if (w == u"f" && n) {
      state_.style.font = *n;
    } else if (w == u"par") {
      NewParagraph();
    } else if (w == u"line") {
      Text(u"\u2028");  // QChar::LineSeparator: a new line in the same paragraph
    } else if (w == u"tab") {
      Text(u"\t");
    } else if (w == u"pard") {
      alignment_ = Qt::AlignLeft;
      SetAlignment();
    } else if (w == u"ql" || w == u"qc" || w == u"qr" || w == u"qj") {
      alignment_ = w == u"qc"   ? Qt::AlignHCenter
                   : w == u"qr" ? Qt::AlignRight
                   : w == u"qj" ? Qt::AlignJustify
                                : Qt::AlignLeft;
      SetAlignment();
    } else if (w == u"uc" && n) {
      state_.unicode_skip = std::clamp(*n, 0, 8);
    } else if (w == u"u" && n) {
      // Negative values stand for the units above 32767.
      const int unit = *n < 0 ? *n + 65536 : *n;
      if (unit >= 0 && unit <= 0xFFFF) {
        const char16_t c = static_cast<char16_t>(unit);
        Text(std::u16string_view(&c, 1));
      }
      skip_after_unicode_ = state_.unicode_skip;
    }
    // Unknown words are ignored, as readers of this format must.
  }

  void Text(std::u16string_view text) {
    // The fallback characters after \uN are dropped, however they came.
    const std::size_t skipped = std::min<std::size_t>(skip_after_unicode_, text.size());
    skip_after_unicode_ -= static_cast<int>(skipped);
    text.remove_prefix(skipped);
    if (text.empty()) return;
    switch (state_.destination) {
      case Destination::kSkip:
        return;
      case Destination::kColorTable:
        for (const char16_t c : text) {
          // An entry without colour words (the first, usually) is the
          // default colour.
          if (c != u';') continue;
          Flush();  // the text so far keeps the colours it was written in
          if (colors_.size() < 4096) colors_.push_back(pending_);
          pending_.reset();
        }
        return;
      case Destination::kFontTable:
        for (const char16_t c : text) {
          if (c == u';') {
            Flush();  // the text so far keeps the fonts it was written in
            fonts_[font_index_] = font_name_.trimmed();
            font_name_.clear();
          } else if (font_name_.size() < 64) {
            font_name_ += QChar(c);
          }
        }
        return;
      case Destination::kText:
        Show(text);
        return;
    }
  }

  // Adds `text` to the run, which goes into the document in one piece when
  // the style changes or something else has to be inserted.
  void Show(std::u16string_view text) {
    if (!run_.isEmpty() && !(run_style_ == state_.style)) Flush();
    run_style_ = state_.style;
    const qsizetype room = max_shown_ - shown_;
    if (static_cast<qsizetype>(text.size()) <= room) {
      run_ += ToQ(text);
      shown_ += static_cast<qsizetype>(text.size());
      return;
    }
    std::u16string_view kept = text.substr(0, static_cast<std::size_t>(room));
    // Half a surrogate pair would show as a box.
    if (!kept.empty() && IsHighSurrogate(kept.back())) kept.remove_suffix(1);
    run_ += ToQ(kept);
    Cut();
  }

  // The marker ends the text in the style of what it follows.
  void Cut() {
    if (run_.isEmpty()) run_style_ = state_.style;
    run_ += QChar(kRichTextCutMarker);
    cut_ = true;
  }

  // Computed here rather than when the run began: the tables cannot have
  // changed in between, as every change to them flushes first.
  QTextCharFormat FormatOf(const CharStyle& style) const {
    QTextCharFormat format;
    format.setFontWeight(style.bold ? QFont::Bold : QFont::Normal);
    format.setFontItalic(style.italic);
    format.setFontUnderline(style.underline);
    format.setFontStrikeOut(style.strike);
    if (style.half_points > 0) format.setFontPointSize(style.half_points / 2.0);
    if (style.color > 0 && style.color < static_cast<int>(colors_.size()) &&
        colors_[static_cast<std::size_t>(style.color)]) {
      format.setForeground(*colors_[static_cast<std::size_t>(style.color)]);
    }
    if (const auto font = fonts_.find(style.font);
        font != fonts_.end() && !font->second.isEmpty()) {
      format.setFontFamilies({font->second});
    }
    return format;
  }

  void Flush() {
    if (run_.isEmpty()) return;
    cursor_.insertText(run_, FormatOf(run_style_));
    run_.clear();
  }

  void NewParagraph() {
    if (state_.destination != Destination::kText) return;
    if (shown_ >= max_shown_) {
      Cut();
      return;
    }
    Flush();
    cursor_.insertBlock();
    ++shown_;
    SetAlignment();
  }

  void SetAlignment() {
    if (state_.destination != Destination::kText) return;
    // Each paragraph would otherwise look its block up again, and a run of
    // \qc words would replace the same format each time.
    if (block_alignment_ == alignment_) return;
    QTextBlockFormat block = cursor_.blockFormat();
    block.setAlignment(alignment_);
    cursor_.setBlockFormat(block);
    block_alignment_ = alignment_;
  }

  std::u16string_view in_;
  std::size_t pos_ = 0;
  QTextCursor cursor_;
  GroupState state_;
  std::vector<GroupState> stack_;
  int ignored_opens_ = 0;
  int skip_after_unicode_ = 0;
  Qt::Alignment alignment_ = Qt::AlignLeft;
  // The alignment the cursor's block has, none while it has none of its
  // own; a new block takes the one before it.
  std::optional<Qt::Alignment> block_alignment_;
  std::vector<std::optional<QColor>> colors_;
  std::optional<QColor> pending_;
  std::map<int, QString> fonts_;
  int font_index_ = 0;
  QString font_name_;
  // The text not yet in the document, all in run_style_.
  QString run_;
  CharStyle run_style_;
  qsizetype shown_ = 0;
  const qsizetype max_shown_;
  bool cut_ = false;
};

}  // namespace

void ReadRichText(std::u16string_view source, QTextDocument& document, qsizetype max_shown) {
  // Nobody undoes a message, and the steps would only cost time and memory.
  const bool undo = document.isUndoRedoEnabled();
  document.setUndoRedoEnabled(false);
  document.clear();
  Reader(source, document, max_shown).Run();
  document.setUndoRedoEnabled(undo);
}

}  // namespace norvik50::qt
