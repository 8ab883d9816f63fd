// A form's captions in the current language, in one run on the offscreen
// platform: tklLoadFormCaptions on a form of 200 captioned controls
// (buttons, labels, check boxes; not yet shown, as a form is when it
// loads) against 200 setText calls on the same controls with texts made
// beforehand plus one load of the resource library (target: within 2x,
// and below 10 ms a form). For comparison, also against what a host
// writes by hand: the library loaded once, and each control's text
// fetched from it by id and set. All switch between German and English
// on every round, so every text really changes.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "bench_folder.h"
#include "best_time_reporter.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "norvik50/resource_module.h"

namespace {

using namespace norvik50;

constexpr int kControls = 200;
constexpr int kFirstId = 1000;
// One base key per language, so that a round switches language with the
// member's own sRegKey and no store write.
constexpr std::array<std::u16string_view, 2> kKeys = {u"Software\\BenchDE", u"Software\\BenchEN"};

std::u16string LibraryPattern() {
  const std::string dir = NORVIK50_FIXTURE_DIR;
  return std::u16string(dir.begin(), dir.end()) + u"/FormCaptions_%L.dll";
}

LIB& Lib() {
  static LIB lib;
  return lib;
}

// The form, and every control in the order of its ids. Made in main,
// after the application object, and gone before it.
struct CaptionedForm {
  CaptionedForm() {
    auto* layout = new QVBoxLayout(&window);
    for (int i = 0; i < kControls; ++i) {
      QWidget* control = i % 4 == 0   ? static_cast<QWidget*>(new QLabel(&window))
                         : i % 4 == 1 ? static_cast<QWidget*>(new QCheckBox(&window))
                                      : static_cast<QWidget*>(new QPushButton(&window));
      control->setProperty("resId", QString::number(kFirstId + i));  // as a designer writes it
      layout->addWidget(control);
      controls.push_back(control);
    }
  }
  QWidget window;
  std::vector<QWidget*> controls;
};

CaptionedForm* the_form = nullptr;
CaptionedForm& TheForm() { return *the_form; }

void SetText(QWidget* control, const QString& text) {
  if (auto* button = qobject_cast<QAbstractButton*>(control)) {
    button->setText(text);
  } else {
    static_cast<QLabel*>(control)->setText(text);
  }
}

void BM_tklLoadFormCaptions(benchmark::State& state) {
  const auto form = QtForm(&TheForm().window);
  std::size_t round = 0;
  for (auto _ : state) {
    if (Lib().tklLoadFormCaptions(form, kKeys[round++ % 2]) != kControls) {
      state.SkipWithError("not every caption was set");
      return;
    }
  }
}
BENCHMARK(BM_tklLoadFormCaptions)->Unit(benchmark::kMillisecond)->Repetitions(5);

// The floor: what any caption loader must do at least.
void BM_SetTextAndOneLibraryLoad(benchmark::State& state) {
  std::array<std::vector<QString>, 2> texts;
  for (int language = 0; language < 2; ++language) {
    for (int i = 0; i < kControls; ++i) {
      texts[language].push_back(QString(language == 0 ? "&Beschriftung %1" : "&Caption %1").arg(i));
    }
  }
  const std::u16string pattern = LibraryPattern();
  const std::array<std::u16string, 2> paths = {pattern.substr(0, pattern.size() - 6) + u"DE.dll",
                                               pattern.substr(0, pattern.size() - 6) + u"EN.dll"};
  std::size_t round = 0;
  for (auto _ : state) {
    const std::size_t language = round++ % 2;
    benchmark::DoNotOptimize(OpenResourceModule(paths[language]));
    for (int i = 0; i < kControls; ++i) SetText(TheForm().controls[i], texts[language][i]);
  }
}
BENCHMARK(BM_SetTextAndOneLibraryLoad)->Unit(benchmark::kMillisecond)->Repetitions(5);

void BM_HandWrittenLoader(benchmark::State& state) {
  const std::u16string pattern = LibraryPattern();
  const std::array<std::u16string, 2> paths = {pattern.substr(0, pattern.size() - 6) + u"DE.dll",
                                               pattern.substr(0, pattern.size() - 6) + u"EN.dll"};
  std::size_t round = 0;
  for (auto _ : state) {
    const auto library = OpenResourceModule(paths[round++ % 2]);
    for (int i = 0; i < kControls; ++i) {
      const std::u16string text = library->FetchString(kFirstId + i).value_or(u"");
      SetText(TheForm().controls[i],
              QString(reinterpret_cast<const QChar*>(text.data()), std::ssize(text)));
    }
  }
}
BENCHMARK(BM_HandWrittenLoader)->Unit(benchmark::kMillisecond)->Repetitions(5);

}  // namespace

int main(int argc, char** argv) {
  const bench::BenchFolder folder("form-captions");
  if (!folder.ok()) return 1;
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  static int qargc = 1;
  static char name[] = "form_captions_bench";
  static char* qargv[] = {name, nullptr};
  QApplication app(qargc, qargv);
  CaptionedForm form;
  the_form = &form;
  for (std::size_t language = 0; language < 2; ++language) {
    Lib().tkrSetValue(HKEY_CURRENT_USER, kKeys[language], u"Language",
                      Variant(static_cast<int32_t>(language + 1)));
    Lib().tkrSetValue(HKEY_LOCAL_MACHINE, kKeys[language], u"ResourceDLL",
                      Variant(LibraryPattern()));
  }
  benchmark::Initialize(&argc, argv);
  bench::BestTimeReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const char* member = "BM_tklLoadFormCaptions";
  if (const double ratio = reporter.Ratio(member, "BM_SetTextAndOneLibraryLoad"); ratio > 0) {
    std::printf(
        "\nRatio (CPU time)\n%-22s / %-32s = %5.2f (target <= 2); %.2f ms a form (target < 10)\n",
        "tklLoadFormCaptions", "200 setText + one library load", ratio, reporter.Ns(member) / 1e6);
  }
  if (const double ratio = reporter.Ratio(member, "BM_HandWrittenLoader"); ratio > 0) {
    std::printf("%-22s / %-32s = %5.2f (for comparison)\n", "tklLoadFormCaptions",
                "load once, fetch and set by hand", ratio);
  }
  benchmark::Shutdown();
  return 0;
}
