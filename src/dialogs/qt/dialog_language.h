// The language of the toolkit's own dialogs (the system question, the
// file dialog, the folder browser): while one is open, Qt's translations
// and the default locale are those of the library's current language, so
// its texts, sizes and dates speak the language of the library's forms.
#ifndef NORVIK50_SRC_DIALOGS_QT_DIALOG_LANGUAGE_H_
#define NORVIK50_SRC_DIALOGS_QT_DIALOG_LANGUAGE_H_

#include <QLocale>
#include <QTranslator>
#include <cstdint>
#include <memory>

namespace norvik50::qt {

// The locale for a language id (1 German ... 8 the second German entry):
// the library locale when it speaks that language (German in Austria
// stays Austrian), else the language's home country. The library locale
// for 0 and for ids without a language.
QLocale LocaleForLanguage(int16_t language);

// For its lifetime: Qt's own translations for `language` are installed
// (ahead of any the host installed) and its locale is the default; both
// are put back as they were at the end, so a Qt host's own windows keep
// their language. Construct it before the dialog, so the dialog's texts
// are translated as it builds them.
class DialogLanguage {
 public:
  explicit DialogLanguage(int16_t language);
  ~DialogLanguage();
  DialogLanguage(const DialogLanguage&) = delete;
  DialogLanguage& operator=(const DialogLanguage&) = delete;

  const QLocale& Locale() const { return locale_; }
  // False when Qt has no translations for the language (the texts stay
  // Qt's English ones).
  bool Translated() const { return translator_ != nullptr; }

 private:
  QLocale previous_default_;
  QLocale locale_;
  std::unique_ptr<QTranslator> translator_;
};

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_DIALOG_LANGUAGE_H_
