#include "dialogs/qt/column_text_cache.h"

#include <QAbstractItemModel>
#include <algorithm>

namespace norvik50::qt {
namespace {

constexpr char kObjectName[] = "norvik50.columnTextCache";

}  // namespace

void PackedTexts::Append(std::u16string_view text) {
  units_.append(text);
  ends_.push_back(units_.size());
}

ColumnTextCache& ColumnTextCache::Of(QAbstractItemModel& model) {
  // A plain QObject child, found by its name: no meta-object of its own.
  for (QObject* child : model.children()) {
    if (child->objectName() == QLatin1String(kObjectName)) {
      if (auto* cache = dynamic_cast<ColumnTextCache*>(child)) return *cache;
    }
  }
  return *new ColumnTextCache(model);
}

ColumnTextCache::ColumnTextCache(QAbstractItemModel& model) : QObject(&model) {
  setObjectName(QLatin1String(kObjectName));
  // Whatever may change a row's text or a row's place drops every copy: a
  // copy is cheap to make again, a stale one would find the wrong row.
  connect(
      &model, &QAbstractItemModel::dataChanged, this,
      [this](const QModelIndex& top_left, const QModelIndex& bottom_right,
             const QList<int>& roles) {
        // A check box or a colour does not change the text, nor does
        // a text change touch the other columns' copies.
        if (!roles.isEmpty() && !roles.contains(Qt::DisplayRole) && !roles.contains(Qt::EditRole))
          return;
        columns_.erase(columns_.lower_bound(top_left.column()),
                       columns_.upper_bound(bottom_right.column()));
      });
  connect(&model, &QAbstractItemModel::layoutChanged, this, [this] { Drop(); });
  connect(&model, &QAbstractItemModel::modelReset, this, [this] { Drop(); });
  connect(&model, &QAbstractItemModel::rowsInserted, this, [this] { Drop(); });
  connect(&model, &QAbstractItemModel::rowsRemoved, this, [this] { Drop(); });
  connect(&model, &QAbstractItemModel::rowsMoved, this, [this] { Drop(); });
  connect(&model, &QAbstractItemModel::columnsInserted, this, [this] { Drop(); });
  connect(&model, &QAbstractItemModel::columnsRemoved, this, [this] { Drop(); });
  connect(&model, &QAbstractItemModel::columnsMoved, this, [this] { Drop(); });
}

const PackedTexts& ColumnTextCache::Column(int32_t column, int32_t rows, const RowReader& read) {
  auto found = columns_.find(column);
  if (found != columns_.end() && found->second.size() == rows) return found->second;
  PackedTexts texts;
  std::u16string scratch;
  for (int32_t row = 0; row < rows; ++row) texts.Append(read(row, scratch));
  ++fills_;
  return columns_.insert_or_assign(column, std::move(texts)).first->second;
}

}  // namespace norvik50::qt
