// The name a host's Qt form or control goes by in the settings store.
#ifndef NORVIK50_SRC_DIALOGS_QT_CONTROL_NAME_H_
#define NORVIK50_SRC_DIALOGS_QT_CONTROL_NAME_H_

#include <QObject>
#include <string>

namespace norvik50::qt {

// The object name, which a form or control made in the designer carries;
// else the class name, as a host's form class names its form. "" for
// null (an object that is gone).
inline std::u16string ControlName(const QObject* object) {
  if (object == nullptr) return u"";
  const QString name = object->objectName();
  return (name.isEmpty() ? QString::fromLatin1(object->metaObject()->className()) : name)
      .toStdU16String();
}

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_CONTROL_NAME_H_
