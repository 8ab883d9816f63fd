// Where a host's control sits on its form, as tklGetContainer walks it: a
// control knows what holds it directly (a frame, a tab page, a page of a
// stack, or the form itself), and each of those knows what holds it in
// turn, up to the form. The Qt adapters of norvik50/qt_dialogs.h answer
// from the widget's parents; MemoryContainer and the in-memory controls
// serve hosts without a toolkit, tests and the batch protocol.
//
// Thread safety: none; a control belongs to the thread that uses it.
#ifndef NORVIK50_CONTAINER_H_
#define NORVIK50_CONTAINER_H_

#include <memory>
#include <string>
#include <utility>

#include "norvik50/export.h"
#include "norvik50/variant.h"

namespace norvik50 {

// Something placed on a form.
class NORVIK50_EXPORT Contained {
 public:
  virtual ~Contained();
  // What holds it directly: a ControlContainer, or the form (a Form of
  // norvik50/form.h, or a container of type "Form"); nullptr when nothing
  // does (a window of its own, or a control that is gone).
  virtual std::shared_ptr<HostObject> Parent() const = 0;
};

// A control that holds others: a frame or group box ("Frame"), a page of a
// tab widget ("TabPage"), a page of a stack ("Page"), or, for hosts
// without a toolkit, the form itself ("Form").
class NORVIK50_EXPORT ControlContainer : public Contained {
 public:
  ~ControlContainer() override;
  // The container's name (fraAddress).
  virtual std::u16string ContainerName() const = 0;
  // Its kind, as above.
  virtual std::u16string ContainerType() const = 0;
};

// A container held in memory.
class NORVIK50_EXPORT MemoryContainer final : public HostObject, public ControlContainer {
 public:
  MemoryContainer(std::u16string name, std::u16string type,
                  std::shared_ptr<HostObject> parent = nullptr)
      : name(std::move(name)), type(std::move(type)), parent(std::move(parent)) {}
  std::u16string ContainerName() const override { return name; }
  std::u16string ContainerType() const override { return type; }
  std::shared_ptr<HostObject> Parent() const override { return parent; }

  std::u16string name;
  std::u16string type;
  std::shared_ptr<HostObject> parent;
};

}  // namespace norvik50

#endif  // NORVIK50_CONTAINER_H_
