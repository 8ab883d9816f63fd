#include "dialogs/qt/qt_form_captions.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMetaProperty>
#include <QTabWidget>
#include <QTableView>
#include <QTreeView>
#include <optional>

namespace norvik50::qt {
namespace {

std::optional<QString> Ask(const CaptionLookup& lookup, CaptionPlace place, const QString& res_id) {
  if (res_id.isEmpty()) return std::nullopt;
  // The id's own characters, without a copy: a form asks hundreds of times.
  const std::u16string_view id(reinterpret_cast<const char16_t*>(res_id.utf16()),
                               static_cast<std::size_t>(res_id.size()));
  const std::optional<std::u16string_view> text = lookup(place, id);
  if (!text) return std::nullopt;
  // A plain copy: the text is the library's UTF-16, with nothing to check.
  return QString(reinterpret_cast<const QChar*>(text->data()),
                 static_cast<qsizetype>(text->size()));
}

// Ids by position, as a designer's string list or as one text.
QStringList IdList(const QVariant& value) {
  if (value.typeId() == QMetaType::QStringList) return value.toStringList();
  return value.toString().split(QLatin1Char('|'));
}

// The caption of a control that is not one of the usual kinds: its
// "text" property, else its "title".
bool SetByProperty(QObject& object, const QString& text) {
  const QMetaObject* meta = object.metaObject();
  for (const char* name : {"text", "title"}) {
    const int index = meta->indexOfProperty(name);
    if (index >= 0 && meta->property(index).isWritable()) {
      return object.setProperty(name, text);
    }
  }
  return false;
}

bool SetCaption(QObject& object, const QString& text) {
  if (auto* button = qobject_cast<QAbstractButton*>(&object)) {
    button->setText(text);
  } else if (auto* label = qobject_cast<QLabel*>(&object)) {
    label->setText(text);
  } else if (auto* group = qobject_cast<QGroupBox*>(&object)) {
    group->setTitle(text);
  } else if (auto* action = qobject_cast<QAction*>(&object)) {
    action->setText(text);
  } else if (auto* menu = qobject_cast<QMenu*>(&object)) {
    menu->setTitle(text);
  } else {
    return SetByProperty(object, text);
  }
  return true;
}

bool SetToolTip(QObject& object, const QString& text) {
  if (auto* widget = qobject_cast<QWidget*>(&object)) {
    widget->setToolTip(text);
  } else if (auto* action = qobject_cast<QAction*>(&object)) {
    action->setToolTip(text);
  } else {
    return false;
  }
  return true;
}

QAbstractItemModel* ModelOf(QObject& object) {
  if (auto* tree = qobject_cast<QTreeView*>(&object)) return tree->model();
  if (auto* table = qobject_cast<QTableView*>(&object)) return table->model();
  return nullptr;
}

int FillHeaders(QObject& object, const QVariant& ids, const CaptionLookup& lookup) {
  QAbstractItemModel* model = ModelOf(object);
  if (model == nullptr) return 0;
  const QStringList list = IdList(ids);
  int set = 0;
  for (int column = 0; column < list.size() && column < model->columnCount(); ++column) {
    if (const auto text = Ask(lookup, CaptionPlace::kColumnHeader, list[column])) {
      set += model->setHeaderData(column, Qt::Horizontal, *text) ? 1 : 0;
    }
  }
  return set;
}

int FillTabs(QObject& object, const QVariant& ids, const CaptionLookup& lookup) {
  auto* tabs = qobject_cast<QTabWidget*>(&object);
  if (tabs == nullptr) return 0;
  const QStringList list = IdList(ids);
  int set = 0;
  for (int tab = 0; tab < list.size() && tab < tabs->count(); ++tab) {
    if (const auto text = Ask(lookup, CaptionPlace::kTab, list[tab])) {
      tabs->setTabText(tab, *text);
      ++set;
    }
  }
  return set;
}

// Only the object's own dynamic properties are looked at: most objects
// have none, so a form of hundreds of controls costs a list test each.
int FillObject(QObject& object, bool is_window, const CaptionLookup& lookup) {
  int set = 0;
  for (const QByteArray& name : object.dynamicPropertyNames()) {
    const QVariant value = object.property(name.constData());
    if (name == "resId") {
      if (is_window) {
        if (const auto text = Ask(lookup, CaptionPlace::kTitle, value.toString())) {
          static_cast<QWidget&>(object).setWindowTitle(*text);
          ++set;
        }
      } else if (const auto text = Ask(lookup, CaptionPlace::kCaption, value.toString())) {
        set += SetCaption(object, *text) ? 1 : 0;
      }
    } else if (name == "toolTipResId") {
      if (const auto text = Ask(lookup, CaptionPlace::kToolTip, value.toString())) {
        set += SetToolTip(object, *text) ? 1 : 0;
      }
    } else if (name == "headerResIds") {
      set += FillHeaders(object, value, lookup);
    } else if (name == "tabResIds") {
      set += FillTabs(object, value, lookup);
    }
  }
  return set;
}

// Every object below `parent`, walked in place: no list of them is built.
int FillChildren(const QObject& parent, const CaptionLookup& lookup) {
  int set = 0;
  for (QObject* child : parent.children()) {
    set += FillObject(*child, false, lookup) + FillChildren(*child, lookup);
  }
  return set;
}

}  // namespace

int FillCaptions(QWidget& window, const CaptionLookup& lookup) {
  return FillObject(window, true, lookup) + FillChildren(window, lookup);
}

}  // namespace norvik50::qt
