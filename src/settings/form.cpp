#include "norvik50/form.h"

namespace norvik50 {

Form::~Form() = default;

}  // namespace norvik50
