#include "dialogs/qt/file_dialog_views.h"

#include <QAbstractItemView>
#include <QDir>
#include <QEvent>
#include <QFileSystemModel>
#include <QStylePainter>
#include <QStyledItemDelegate>

#include "norvik50/host.h"

namespace norvik50::qt {
namespace {

constexpr int kSizeColumn = 1;
constexpr int kDateColumn = 3;

// The list of the "look in" box: each folder in its Windows form.
class WindowsPathDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QString displayText(const QVariant& value, const QLocale& locale) const override {
    return value.typeId() == QMetaType::QString ? WindowsFormOf(value.toString())
                                                : QStyledItemDelegate::displayText(value, locale);
  }
};

// The box itself draws its current text; this draws it as QComboBox does,
// with the Windows form in its place.
class WindowsPathPainter final : public QObject {
 public:
  explicit WindowsPathPainter(QComboBox& combo) : QObject(&combo), combo_(combo) {
    combo.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched != &combo_ || event->type() != QEvent::Paint) return false;
    QStylePainter painter(&combo_);
    QStyleOptionComboBox option;
    option.initFrom(&combo_);
    option.editable = false;
    option.frame = combo_.hasFrame();
    option.subControls = QStyle::SC_All;
    if (combo_.view() && combo_.view()->isVisible()) option.state |= QStyle::State_On;
    option.currentText = WindowsFormOf(combo_.currentText());
    option.currentIcon = combo_.itemIcon(combo_.currentIndex());
    option.iconSize = combo_.iconSize();
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    return true;
  }

 private:
  QComboBox& combo_;
};

}  // namespace

LocalizedFileDetails::LocalizedFileDetails(const QLocale& locale, QObject* parent)
    : QIdentityProxyModel(parent), locale_(locale) {}

QVariant LocalizedFileDetails::data(const QModelIndex& index, int role) const {
  const auto* files = qobject_cast<const QFileSystemModel*>(sourceModel());
  if (role != Qt::DisplayRole || files == nullptr ||
      (index.column() != kSizeColumn && index.column() != kDateColumn)) {
    return QIdentityProxyModel::data(index, role);
  }
  const QModelIndex source = mapToSource(index);
  if (index.column() == kSizeColumn) {
    // Folders have no size, as in Qt's own column.
    return files->isDir(source) ? QString() : locale_.formattedDataSize(files->size(source));
  }
  return locale_.toString(files->lastModified(source), QLocale::ShortFormat);
}

QString WindowsFormOf(const QString& linux_path) {
  const QString path = QDir::fromNativeSeparators(linux_path);
  if (!path.startsWith(QLatin1Char('/'))) return linux_path;
  const auto windows = ToWindowsPath(QDir::cleanPath(path).toStdString());
  if (!windows) return linux_path;
  return QString::fromUtf16(windows->data(), static_cast<qsizetype>(windows->size()));
}

void ShowWindowsPaths(QComboBox& combo) {
  combo.setItemDelegate(new WindowsPathDelegate(&combo));
  new WindowsPathPainter(combo);
}

}  // namespace norvik50::qt
