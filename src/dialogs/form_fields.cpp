#include "dialogs/form_fields.h"

#include <algorithm>
#include <optional>
#include <unordered_set>

#include "core/name_fold.h"
#include "norvik50/error.h"
#include "norvik50/form.h"

namespace norvik50 {
namespace {

constexpr std::u16string_view kFormType = u"Form";

// A step of the chain: what a container is called and what holds it.
struct Level {
  std::u16string name;
  std::u16string type;
  const Contained* up = nullptr;  // nullptr: the chain ends here
};

std::optional<Level> LevelOf(const HostObject& object) {
  if (const auto* form = dynamic_cast<const Form*>(&object)) {
    return Level{form->Name(), std::u16string(kFormType), nullptr};
  }
  if (const auto* container = dynamic_cast<const ControlContainer*>(&object)) {
    return Level{container->ContainerName(), container->ContainerType(), container};
  }
  return std::nullopt;
}

bool NameIsOpen(std::u16string_view name, const OpenFormNames& names) {
  if (name.empty()) return false;
  const std::vector<std::u16string> open_names = names();
  return std::any_of(open_names.begin(), open_names.end(),
                     [&](const std::u16string& open) { return SameNameWithoutCase(open, name); });
}

}  // namespace

bool IsFormOpen(const Variant& form, const OpenFormNames& open_names) {
  switch (form.type()) {
    case VarType::kEmpty:
    case VarType::kNull:
      return false;
    case VarType::kString:
      return NameIsOpen(form.as_string(), open_names);
    case VarType::kObject:
      break;
    default:
      throw Error(kErrTypeMismatch, u"A form is asked for by its name or as an object.",
                  std::u16string(kErrorSource));
  }
  const HostObject* object = form.as_object().get();
  if (object == nullptr) return false;
  if (const auto* as_form = dynamic_cast<const Form*>(object)) return as_form->IsOpen();
  // A host without a toolkit stands for its form with a container.
  const std::optional<Level> level = LevelOf(*object);
  return level && SameNameWithoutCase(level->type, kFormType) &&
         NameIsOpen(level->name, open_names);
}

std::shared_ptr<HostObject> FindContainer(const Contained& control, std::u16string_view kind) {
  std::unordered_set<const HostObject*> seen;
  for (std::shared_ptr<HostObject> current = control.Parent(); current != nullptr;) {
    if (kind.empty()) return current;
    if (!seen.insert(current.get()).second) {
      throw Error(kErrInvalidCall, u"The containers of the control form a ring.",
                  std::u16string(kErrorSource));
    }
    const std::optional<Level> level = LevelOf(*current);
    if (!level) return nullptr;
    if (SameNameWithoutCase(level->type, kind) || SameNameWithoutCase(level->name, kind))
      return current;
    current = level->up != nullptr ? level->up->Parent() : nullptr;
  }
  return nullptr;
}

}  // namespace norvik50
