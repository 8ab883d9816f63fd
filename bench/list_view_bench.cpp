// The list view helpers on 100,000 rows, in one run on the offscreen
// platform:
// - tklSortListView on a QTreeWidget by a German number column and by a
//   date column (compared as values) against QTreeWidget::sortItems on the
//   same rows (target: within 2x); both alternate between ascending and
//   descending, as clicks on one header do;
// - tklSearchListItem for the last row of 100,000 (every row read once),
//   on a MemoryListView and on the QTreeWidget (target: below 1 ms), and
//   on the QTreeWidget right after a row's text changed (the column is
//   read out of the widget again: the key typed after an edit);
// - tklListCheckedItems against a loop over the same QTreeWidget's model
//   asking each row's check state (target: within 2x).
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <QApplication>
#include <QTreeWidget>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "best_time_reporter.h"
#include "norvik50/lib.h"
#include "norvik50/list_view.h"
#include "norvik50/locale.h"
#include "norvik50/qt_dialogs.h"

namespace {

using namespace norvik50;

constexpr int kRows = 100000;

LIB& Lib() {
  static LIB lib;
  return lib;
}

struct Rows {
  std::vector<std::u16string> names, amounts, dates;
};

// Names "Kunde 0".."Kunde 99999" in shuffled order, German amounts with
// thousands separators and dates day first, every third row checked.
const Rows& TheRows() {
  static const Rows rows = [] {
    Rows r;
    std::mt19937 random(50);
    std::vector<int> order(kRows);
    for (int i = 0; i < kRows; ++i) order[static_cast<std::size_t>(i)] = i;
    std::shuffle(order.begin(), order.end(), random);
    const auto u16 = [](const std::string& s) { return std::u16string(s.begin(), s.end()); };
    for (int i : order) {
      char amount[32];
      const int cents = static_cast<int>(random() % 100000000);
      std::snprintf(amount, sizeof amount, "%d.%03d,%02d", cents / 100000, cents / 100 % 1000,
                    cents % 100);
      char date[16];
      std::snprintf(date, sizeof date, "%02d.%02d.%04d", static_cast<int>(random() % 28 + 1),
                    static_cast<int>(random() % 12 + 1), static_cast<int>(random() % 60 + 1970));
      r.names.push_back(u16("Kunde " + std::to_string(i)));
      r.amounts.push_back(u16(amount));
      r.dates.push_back(u16(date));
    }
    return r;
  }();
  return rows;
}

QString ToQ(const std::u16string& text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

std::unique_ptr<QTreeWidget> MakeTree() {
  auto tree = std::make_unique<QTreeWidget>();
  tree->setColumnCount(3);
  tree->setHeaderLabels({"Kunde", "Betrag", "Datum"});
  const Rows& rows = TheRows();
  QList<QTreeWidgetItem*> items;
  items.reserve(kRows);
  for (int i = 0; i < kRows; ++i) {
    const auto at = static_cast<std::size_t>(i);
    auto* item =
        new QTreeWidgetItem({ToQ(rows.names[at]), ToQ(rows.amounts[at]), ToQ(rows.dates[at])});
    item->setCheckState(0, i % 3 == 0 ? Qt::Checked : Qt::Unchecked);
    items.push_back(item);
  }
  tree->addTopLevelItems(items);
  return tree;
}

std::shared_ptr<MemoryListView> MakeMemoryList() {
  auto list = std::make_shared<MemoryListView>(u"lvw");
  list->columns = {{u"Kunde", 1440, u""}, {u"Betrag", 1440, u""}, {u"Datum", 1440, u""}};
  const Rows& rows = TheRows();
  for (std::size_t i = 0; i < rows.names.size(); ++i) {
    list->rows.push_back({{rows.names[i], rows.amounts[i], rows.dates[i]}, i % 3 == 0, false});
  }
  return list;
}

void SortByMember(benchmark::State& state, int32_t column) {
  const auto tree = MakeTree();
  const auto view = QtListView(tree.get());
  for (auto _ : state) benchmark::DoNotOptimize(Lib().tklSortListView(view, column));
}
void BM_tklSortListView_Numbers(benchmark::State& state) { SortByMember(state, 2); }
void BM_tklSortListView_Dates(benchmark::State& state) { SortByMember(state, 3); }
BENCHMARK(BM_tklSortListView_Numbers)->Unit(benchmark::kMillisecond)->Repetitions(3);
BENCHMARK(BM_tklSortListView_Dates)->Unit(benchmark::kMillisecond)->Repetitions(3);

void SortByQt(benchmark::State& state, int column) {
  const auto tree = MakeTree();
  bool descending = false;
  for (auto _ : state) {
    tree->sortItems(column, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
    descending = !descending;
  }
}
void BM_QTreeWidgetSortItems_Numbers(benchmark::State& state) { SortByQt(state, 1); }
void BM_QTreeWidgetSortItems_Dates(benchmark::State& state) { SortByQt(state, 2); }
BENCHMARK(BM_QTreeWidgetSortItems_Numbers)->Unit(benchmark::kMillisecond)->Repetitions(3);
BENCHMARK(BM_QTreeWidgetSortItems_Dates)->Unit(benchmark::kMillisecond)->Repetitions(3);

// The name of the last row: every row is read before it is found.
std::u16string LastName() { return TheRows().names.back(); }

void SearchLastRow(benchmark::State& state, const std::shared_ptr<HostObject>& view) {
  const std::u16string typed = LastName();
  for (auto _ : state) {
    if (Lib().tklSearchListItem(view, typed, 1) != kRows) state.SkipWithError("not found");
  }
}
void BM_tklSearchListItem_Memory(benchmark::State& state) {
  SearchLastRow(state, MakeMemoryList());
}
void BM_tklSearchListItem_QTreeWidget(benchmark::State& state) {
  const auto tree = MakeTree();
  SearchLastRow(state, QtListView(tree.get()));
}
// The first search after a row's text changed, when the view reads the
// column again: what the key after an edit costs.
void BM_tklSearchListItem_QTreeWidgetAfterAnEdit(benchmark::State& state) {
  const auto tree = MakeTree();
  const auto view = QtListView(tree.get());
  const std::u16string typed = LastName();
  QTreeWidgetItem* first = tree->topLevelItem(0);
  const QString texts[] = {first->text(0), first->text(0) + " (neu)"};
  int edits = 0;
  for (auto _ : state) {
    first->setText(0, texts[++edits % 2]);
    if (Lib().tklSearchListItem(view, typed, 1) != kRows) state.SkipWithError("not found");
  }
}
// The floor of the search on a MemoryListView: a host's own loop over the
// same rows, comparing with case (every row's text is read as there).
void BM_WalkMemoryRowsStartsWith(benchmark::State& state) {
  const auto list = MakeMemoryList();
  const std::u16string typed = LastName();
  for (auto _ : state) {
    std::size_t found = 0;
    for (std::size_t row = 0; row < list->rows.size(); ++row) {
      if (list->rows[row].texts[0].starts_with(typed)) {
        found = row + 1;
        break;
      }
    }
    if (found != static_cast<std::size_t>(kRows)) state.SkipWithError("not found");
  }
}
BENCHMARK(BM_WalkMemoryRowsStartsWith)->Unit(benchmark::kMicrosecond)->Repetitions(3);
BENCHMARK(BM_tklSearchListItem_Memory)->Unit(benchmark::kMicrosecond)->Repetitions(3);
BENCHMARK(BM_tklSearchListItem_QTreeWidget)->Unit(benchmark::kMicrosecond)->Repetitions(3);
BENCHMARK(BM_tklSearchListItem_QTreeWidgetAfterAnEdit)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3);

void BM_tklListCheckedItems(benchmark::State& state) {
  const auto tree = MakeTree();
  const auto view = QtListView(tree.get());
  for (auto _ : state) {
    SafeArray indexes;
    benchmark::DoNotOptimize(Lib().tklListCheckedItems(view, &indexes));
  }
}
BENCHMARK(BM_tklListCheckedItems)->Unit(benchmark::kMillisecond)->Repetitions(3);

// The floor: the host's own loop over the model, keeping the indexes.
void BM_WalkModelCheckState(benchmark::State& state) {
  const auto tree = MakeTree();
  const QAbstractItemModel* model = tree->model();
  for (auto _ : state) {
    std::vector<int> checked;
    for (int row = 0, rows = model->rowCount(); row < rows; ++row) {
      if (model->index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked) {
        checked.push_back(row + 1);
      }
    }
    benchmark::DoNotOptimize(checked.data());
  }
}
BENCHMARK(BM_WalkModelCheckState)->Unit(benchmark::kMillisecond)->Repetitions(3);

}  // namespace

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  static int qargc = 1;
  static char name[] = "list_view_bench";
  static char* qargv[] = {name, nullptr};
  QApplication app(qargc, qargv);
  SetCurrentLocale("de-DE");
  TheRows();
  benchmark::Initialize(&argc, argv);
  bench::BestTimeReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\nRatio (CPU time)\n");
  for (const char* kind : {"Numbers", "Dates"}) {
    const std::string member = std::string("BM_tklSortListView_") + kind;
    const std::string anchor = std::string("BM_QTreeWidgetSortItems_") + kind;
    if (const double ratio = reporter.Ratio(member, anchor); ratio > 0) {
      std::printf("tklSortListView (%-7s) / QTreeWidget::sortItems = %5.2f (target <= 2)\n", kind,
                  ratio);
    }
  }
  if (const double ratio = reporter.Ratio("BM_tklListCheckedItems", "BM_WalkModelCheckState");
      ratio > 0) {
    std::printf("tklListCheckedItems / walking the model        = %5.2f (target <= 2)\n", ratio);
  }
  if (const double ratio =
          reporter.Ratio("BM_tklSearchListItem_Memory", "BM_WalkMemoryRowsStartsWith");
      ratio > 0) {
    std::printf("tklSearchListItem (Memory) / a loop comparing with case = %5.2f\n", ratio);
  }
  for (const char* where : {"Memory", "QTreeWidget", "QTreeWidgetAfterAnEdit"}) {
    const std::string member = std::string("BM_tklSearchListItem_") + where;
    if (const double ns = reporter.Ns(member); ns > 0) {
      std::printf("tklSearchListItem over %d rows (%-22s) = %.3f ms (target < 1)\n", kRows, where,
                  ns / 1e6);
    }
  }
  benchmark::Shutdown();
  return 0;
}
