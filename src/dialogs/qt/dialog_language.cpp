#include "dialogs/qt/dialog_language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <array>

#include "norvik50/locale.h"

namespace norvik50::qt {
namespace {

struct LanguageHome {
  int16_t id;
  QLocale::Language language;
  QLocale::Territory territory;
};

// The built-in language table's ids. Czech and Polish have Qt texts of
// their own although the library's captions are English for them.
constexpr std::array<LanguageHome, 8> kHomes = {{
    {1, QLocale::German, QLocale::Germany},
    {2, QLocale::English, QLocale::UnitedStates},
    {3, QLocale::French, QLocale::France},
    {4, QLocale::Italian, QLocale::Italy},
    {5, QLocale::Spanish, QLocale::Spain},
    {6, QLocale::Czech, QLocale::CzechRepublic},
    {7, QLocale::Polish, QLocale::Poland},
    {8, QLocale::German, QLocale::Germany},
}};

QLocale LibraryLocale() {
  const std::string& tag = CurrentLocale().tag;
  return QLocale(QString::fromStdString(tag.empty() ? std::string("en-US") : tag));
}

}  // namespace

QLocale LocaleForLanguage(int16_t language) {
  const QLocale library = LibraryLocale();
  for (const LanguageHome& home : kHomes) {
    if (home.id != language) continue;
    if (library.language() == home.language) return library;
    return QLocale(home.language, home.territory);
  }
  return library;
}

DialogLanguage::DialogLanguage(int16_t language)
    : previous_default_(QLocale()), locale_(LocaleForLanguage(language)) {
  QLocale::setDefault(locale_);
  auto translator = std::make_unique<QTranslator>();
  if (QCoreApplication::instance() &&
      translator->load(locale_, QStringLiteral("qtbase"), QStringLiteral("_"),
                       QLibraryInfo::path(QLibraryInfo::TranslationsPath)) &&
      QCoreApplication::installTranslator(translator.get())) {
    translator_ = std::move(translator);
  }
}

DialogLanguage::~DialogLanguage() {
  if (translator_) QCoreApplication::removeTranslator(translator_.get());
  QLocale::setDefault(previous_default_);
}

}  // namespace norvik50::qt
