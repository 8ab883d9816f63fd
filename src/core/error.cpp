#include "norvik50/error.h"

#include <limits>

#include "norvik50/encoding.h"

namespace norvik50 {

std::u16string RuntimeErrorText(int32_t number) {
  // The host runtime's own wording; hosts compare these texts.
  switch (number) {
    case 3: return u"Return without GoSub";
    case 5: return u"Invalid procedure call or argument";
    case 6: return u"Overflow";
    case 7: return u"Out of memory";
    case 9: return u"Subscript out of range";
    case 10: return u"This array is fixed or temporarily locked";
    case 11: return u"Division by zero";
    case 13: return u"Type mismatch";
    case 14: return u"Out of string space";
    case 28: return u"Out of stack space";
    case 35: return u"Sub or Function not defined";
    case 48: return u"Error in loading DLL";
    case 51: return u"Internal error";
    case 52: return u"Bad file name or number";
    case 53: return u"File not found";
    case 54: return u"Bad file mode";
    case 55: return u"File already open";
    case 57: return u"Device I/O error";
    case 58: return u"File already exists";
    case 61: return u"Disk full";
    case 62: return u"Input past end of file";
    case 67: return u"Too many files";
    case 68: return u"Device unavailable";
    case 70: return u"Permission denied";
    case 71: return u"Disk not ready";
    case 75: return u"Path/File access error";
    case 76: return u"Path not found";
    case 91: return u"Object variable or With block variable not set";
    case 92: return u"For loop not initialized";
    case 93: return u"Invalid pattern string";
    case 94: return u"Invalid use of Null";
    case 424: return u"Object required";
    case 438: return u"Object doesn't support this property or method";
    case 440: return u"Automation error";
    case 445: return u"Object doesn't support this action";
    case 446: return u"Object doesn't support named arguments";
    case 448: return u"Named argument not found";
    case 449: return u"Argument not optional";
    case 450: return u"Wrong number of arguments or invalid property assignment";
    case 451: return u"Property let procedure not defined and property get procedure did not return an object";
    default: return u"Application-defined or object-defined error";
  }
}

Error::Error(int32_t number, std::u16string description, std::u16string source)
    : number_(number),
      description_(std::move(description)),
      source_(std::move(source)),
      what_(ToUtf8(description_) + " (" + std::to_string(number_) + ")") {}

// Errors the runtime raises inside the library carry the library's project
// name as their source, as hosts see it in Err.Source.
Error::Error(int32_t number, std::u16string source)
    : Error(number, RuntimeErrorText(number),
            source.empty() ? std::u16string(kErrorSource) : std::move(source)) {}

void Raise(int32_t number, std::u16string_view source) {
  throw Error(number, std::u16string(source));
}

int16_t ToInt16Checked(int64_t value) {
  if (value < std::numeric_limits<int16_t>::min() ||
      value > std::numeric_limits<int16_t>::max()) {
    Raise(kErrOverflow);
  }
  return static_cast<int16_t>(value);
}

int32_t ToInt32Checked(int64_t value) {
  if (value < std::numeric_limits<int32_t>::min() ||
      value > std::numeric_limits<int32_t>::max()) {
    Raise(kErrOverflow);
  }
  return static_cast<int32_t>(value);
}

}  // namespace norvik50
