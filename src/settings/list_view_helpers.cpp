#include "settings/list_view_helpers.h"

#include <algorithm>
#include <numeric>
#include <optional>

#include "numeric/date_parse.h"
#include "numeric/locale_number.h"
#include "text/collation.h"
#include "text/fold.h"
#include "text/numeric_word.h"

namespace norvik50::settings {
namespace {

bool EqualFolded(std::u16string_view a, std::u16string_view folded_b) {
  return a.size() == folded_b.size() && StartsWithFolded(a, folded_b);
}

std::vector<std::u16string> ColumnTexts(const ListView& list, int32_t column) {
  const int32_t rows = list.RowCount();
  std::vector<std::u16string> texts(static_cast<std::size_t>(rows));
  std::u16string scratch;
  for (int32_t row = 0; row < rows; ++row) {
    texts[static_cast<std::size_t>(row)] = list.ItemTextView(row, column, scratch);
  }
  return texts;
}

// The value a number or date cell sorts by; nullopt for a cell that holds
// none.
using ValueReader = std::optional<double> (*)(std::u16string_view, const Locale&);

std::optional<double> NumberValue(std::u16string_view text, const Locale& locale) {
  return LocaleTextToDouble(text, locale);
}

std::optional<double> DateValue(std::u16string_view text, const Locale& locale) {
  const std::optional<Date> date = ParseDateText(text, locale);
  if (!date) return std::nullopt;
  return date->serial;
}

bool IsBlank(std::u16string_view text) {
  return text.find_first_not_of(u" \t") == std::u16string_view::npos;
}

// A column sorts as numbers when every filled cell is a number word of the
// locale (strict, so that "05.03.2024" is no German number), else as dates
// when every filled cell is a date, else as text.
ListSortKind KindOf(const std::vector<std::u16string>& texts, const Locale& locale) {
  bool numbers = true;
  bool dates = true;
  bool any = false;
  for (const std::u16string& text : texts) {
    if (IsBlank(text)) continue;
    any = true;
    numbers = numbers && IsNumericWord(text, locale);
    dates = dates && !numbers && ParseDateText(text, locale).has_value();
    if (!numbers && !dates) return ListSortKind::kText;
  }
  if (!any) return ListSortKind::kText;
  return numbers ? ListSortKind::kNumber : ListSortKind::kDate;
}

std::vector<int32_t> TextOrder(const std::vector<std::u16string>& texts, bool descending) {
  std::vector<std::string> keys(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) AppendCollationKey(texts[i], keys[i]);
  std::vector<int32_t> order(texts.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int32_t a, int32_t b) {
    const auto& ka = keys[static_cast<std::size_t>(a)];
    const auto& kb = keys[static_cast<std::size_t>(b)];
    return descending ? kb < ka : ka < kb;
  });
  return order;
}

std::vector<int32_t> ValueOrder(const std::vector<std::u16string>& texts, ValueReader read,
                                bool descending, const Locale& locale) {
  struct Keyed {
    double value;
    int32_t row;
  };
  std::vector<Keyed> valued;
  std::vector<std::u16string> others_text;
  std::vector<int32_t> others_row;
  valued.reserve(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (const std::optional<double> value = read(texts[i], locale)) {
      valued.push_back({*value, static_cast<int32_t>(i)});
    } else {
      others_text.push_back(texts[i]);
      others_row.push_back(static_cast<int32_t>(i));
    }
  }
  std::stable_sort(valued.begin(), valued.end(), [descending](const Keyed& a, const Keyed& b) {
    return descending ? b.value < a.value : a.value < b.value;
  });
  std::vector<int32_t> order;
  order.reserve(texts.size());
  const auto append_others = [&] {
    for (int32_t i : TextOrder(others_text, descending)) {
      order.push_back(others_row[static_cast<std::size_t>(i)]);
    }
  };
  if (descending) append_others();
  for (const Keyed& k : valued) order.push_back(k.row);
  if (!descending) append_others();
  return order;
}

void AppendCell(std::u16string& out, std::u16string_view text) {
  for (char16_t c : text) out += (c == u'\t' || c == u'\r' || c == u'\n') ? u' ' : c;
}

}  // namespace

int32_t FindColumn(const ListView& list, std::u16string_view header) {
  const std::u16string folded = FoldText(header);
  for (int32_t column = 0, count = list.ColumnCount(); column < count; ++column) {
    if (EqualFolded(list.ColumnHeader(column), folded)) return column;
  }
  return -1;
}

int32_t FindRow(const ListView& list, std::u16string_view text, int32_t column) {
  const std::u16string folded = FoldText(text);
  std::u16string cell;
  for (int32_t row = 0, count = list.RowCount(); row < count; ++row) {
    if (EqualFolded(list.ItemTextView(row, column, cell), folded)) return row;
  }
  return -1;
}

std::vector<int32_t> SortedRowOrder(const ListView& list, int32_t column, ListSortKind kind,
                                    bool descending, const Locale& locale) {
  const std::vector<std::u16string> texts = ColumnTexts(list, column);
  if (kind == ListSortKind::kAuto) kind = KindOf(texts, locale);
  switch (kind) {
    case ListSortKind::kNumber:
      return ValueOrder(texts, &NumberValue, descending, locale);
    case ListSortKind::kDate:
      return ValueOrder(texts, &DateValue, descending, locale);
    default:
      return TextOrder(texts, descending);
  }
}

ListViewSort SortListView(ListView& list, int32_t column, ListSortKind kind, const Locale& locale) {
  const ListViewSort before = list.Sort();
  ListViewSort after{column, before.column == column && !before.descending};
  list.ReorderRows(SortedRowOrder(list, column, kind, after.descending, locale));
  list.SetSort(after);
  return after;
}

int32_t SearchRow(const ListView& list, std::u16string_view typed, int32_t start, int32_t column) {
  const int32_t count = list.RowCount();
  if (typed.empty() || count == 0) return -1;
  start = std::clamp(start, 0, count - 1);
  const auto first_from = [&](std::u16string_view folded, int32_t from) {
    // From `from` to the end, then from the top: no division per row.
    const int32_t found = list.FirstRowWithPrefix(column, folded, from, count);
    return found >= 0 ? found : list.FirstRowWithPrefix(column, folded, 0, from);
  };
  const std::u16string folded = FoldText(typed);
  const int32_t found = first_from(folded, start);
  if (found >= 0 || folded.size() < 2) return found;
  const bool repeated = folded.find_first_not_of(folded[0]) == std::u16string::npos;
  if (!repeated) return -1;
  return first_from(std::u16string_view(folded).substr(0, 1), (start + 1) % count);
}

std::u16string ListViewAsText(const ListView& list, bool with_headers, bool selected_only) {
  const int32_t columns = list.ColumnCount();
  std::u16string out;
  std::u16string cell;
  const auto end_row = [&] { out += u"\r\n"; };
  if (with_headers && columns > 0) {
    for (int32_t column = 0; column < columns; ++column) {
      if (column > 0) out += u'\t';
      AppendCell(out, list.ColumnHeader(column));
    }
    end_row();
  }
  for (int32_t row = 0, rows = list.RowCount(); row < rows; ++row) {
    if (selected_only && !list.Selected(row)) continue;
    for (int32_t column = 0; column < columns; ++column) {
      if (column > 0) out += u'\t';
      AppendCell(out, list.ItemTextView(row, column, cell));
    }
    end_row();
  }
  return out;
}

}  // namespace norvik50::settings
