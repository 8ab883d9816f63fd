#include "dialogs/qt/rich_text_reader.h"

#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
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

enum class Destination { kText, kSkip, kFontTable, kColorTable };

struct GroupState {
  bool bold = false, italic = false, underline = false, strike = false;
  int half_points = 0;  // 0: the document's default size
  int color = 0;        // index into the colour table; 0 the default
  int font = -1;
  int unicode_skip = 1;
  Destination destination = Destination::kText;
};

class Reader {
 public:
  Reader(std::u16string_view source, QTextDocument& document) : in_(source), cursor_(&document) {}

  void Run() {
    while (pos_ < in_.size()) {
      const char16_t c = in_[pos_++];
      if (c == u'{') {
        OpenGroup();
      } else if (c == u'}') {
        CloseGroup();
      } else if (c == u'\\') {
        ControlWord();
      } else if (c == u'\r' || c == u'\n') {
        // Line ends in the source are not text.
      } else {
        Text(QString(QChar(c)));
      }
    }
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
      Text(QString(QChar(c)));
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
    if (!((c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'))) {
      ++pos_;  // a control symbol we do not know (\~ \- \_): ignored
      return;
    }
    std::u16string word;
    while (pos_ < in_.size() && word.size() < 32 &&
           ((in_[pos_] >= u'a' && in_[pos_] <= u'z') || (in_[pos_] >= u'A' && in_[pos_] <= u'Z'))) {
      word.push_back(in_[pos_++]);
    }
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
    if (skip_after_unicode_ > 0) {
      --skip_after_unicode_;
      return;
    }
    Text(QString(QChar(FromCp1252(value))));
  }

  void Apply(const std::u16string& w, std::optional<int> n) {
    const bool on = !n || *n != 0;
    if (w == u"fonttbl") {
      state_.destination = Destination::kFontTable;
    } else if (w == u"colortbl") {
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
      state_.bold = on;
    } else if (w == u"i") {
      state_.italic = on;
    } else if (w == u"ul") {
      state_.underline = on;
    } else if (w == u"ulnone") {
      state_.underline = false;
    } else if (w == u"strike") {
      state_.strike = on;
    } else if (w == u"plain") {
      const GroupState keep = state_;
      state_ = GroupState();
      state_.unicode_skip = keep.unicode_skip;
      state_.destination = keep.destination;
    } else if (w == u"fs" && n) {
      state_.half_points = std::clamp(*n, 2, 400);
    } else if (w == u"cf" && n) {
      state_.color = *n;
    } else if (w == u"f" && n) {
      state_.font = *n;
    } else if (w == u"par") {
      NewParagraph();
    } else if (w == u"line") {
      Text(QString(QChar::LineSeparator));
    } else if (w == u"tab") {
      Text(QStringLiteral("\t"));
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
      if (unit >= 0 && unit <= 0xFFFF) Text(QString(QChar(static_cast<char16_t>(unit))));
      skip_after_unicode_ = state_.unicode_skip;
    }
    // Unknown words are ignored, as readers of this format must.
  }

  void Text(const QString& text) {
    if (skip_after_unicode_ > 0) {
      --skip_after_unicode_;
      return;
    }
    switch (state_.destination) {
      case Destination::kSkip:
      case Destination::kColorTable:
        if (state_.destination == Destination::kColorTable && text == QStringLiteral(";")) {
          // An entry without colour words (the first, usually) is the
          // default colour.
          if (colors_.size() < 4096) colors_.push_back(pending_);
          pending_.reset();
        }
        return;
      case Destination::kFontTable:
        if (text == QStringLiteral(";")) {
          fonts_[font_index_] = font_name_.trimmed();
          font_name_.clear();
        } else if (font_name_.size() < 64) {
          font_name_ += text;
        }
        return;
      case Destination::kText:
        break;
    }
    QTextCharFormat format;
    format.setFontWeight(state_.bold ? QFont::Bold : QFont::Normal);
    format.setFontItalic(state_.italic);
    format.setFontUnderline(state_.underline);
    format.setFontStrikeOut(state_.strike);
    if (state_.half_points > 0) format.setFontPointSize(state_.half_points / 2.0);
    if (state_.color > 0 && state_.color < static_cast<int>(colors_.size()) &&
        colors_[static_cast<std::size_t>(state_.color)]) {
      format.setForeground(*colors_[static_cast<std::size_t>(state_.color)]);
    }
    if (const auto font = fonts_.find(state_.font);
        font != fonts_.end() && !font->second.isEmpty()) {
      format.setFontFamilies({font->second});
    }
    cursor_.insertText(text, format);
  }

  void NewParagraph() {
    if (state_.destination != Destination::kText) return;
    cursor_.insertBlock();
    SetAlignment();
  }

  void SetAlignment() {
    if (state_.destination != Destination::kText) return;
    QTextBlockFormat block = cursor_.blockFormat();
    block.setAlignment(alignment_);
    cursor_.setBlockFormat(block);
  }

  std::u16string_view in_;
  std::size_t pos_ = 0;
  QTextCursor cursor_;
  GroupState state_;
  std::vector<GroupState> stack_;
  int ignored_opens_ = 0;
  int skip_after_unicode_ = 0;
  Qt::Alignment alignment_ = Qt::AlignLeft;
  std::vector<std::optional<QColor>> colors_;
  std::optional<QColor> pending_;
  std::map<int, QString> fonts_;
  int font_index_ = 0;
  QString font_name_;
};

}  // namespace

void ReadRichText(std::u16string_view source, QTextDocument& document) {
  document.clear();
  Reader(source, document).Run();
}

}  // namespace norvik50::qt
