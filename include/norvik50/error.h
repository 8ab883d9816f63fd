// The one error type of norvik50: a number, a description and a source, as
// the host runtime's error object carries them. Members whose error style is
// "none" throw it; the dispatch turns it into a failed status.
#ifndef NORVIK50_ERROR_H_
#define NORVIK50_ERROR_H_

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "norvik50/export.h"

namespace norvik50 {

// Error numbers of the host runtime that members raise.
inline constexpr int32_t kErrInvalidCall = 5;     // invalid procedure call or argument
inline constexpr int32_t kErrOverflow = 6;        // overflow
inline constexpr int32_t kErrOutOfMemory = 7;     // out of memory
inline constexpr int32_t kErrSubscript = 9;       // subscript out of range
inline constexpr int32_t kErrDivisionByZero = 11; // division by zero
inline constexpr int32_t kErrTypeMismatch = 13;   // type mismatch
inline constexpr int32_t kErrFileNotFound = 53;   // file not found
inline constexpr int32_t kErrPathNotFound = 76;   // path not found
inline constexpr int32_t kErrObjectRequired = 424;// object required
inline constexpr int32_t kErrNoSuchMember = 438;  // object doesn't support this property or method
inline constexpr int32_t kErrArgNotOptional = 449;// argument not optional
inline constexpr int32_t kErrWrongArgCount = 450; // wrong number of arguments

// The source of errors raised inside the library.
inline constexpr std::u16string_view kErrorSource = u"Norvik50";

// The host runtime's description for `number`, e.g. 6 -> "Overflow".
// Unknown numbers give "Application-defined or object-defined error".
NORVIK50_EXPORT std::u16string RuntimeErrorText(int32_t number);

class NORVIK50_EXPORT Error : public std::exception {
 public:
  Error(int32_t number, std::u16string description, std::u16string source);
  // An error with the runtime's standard description for `number`; an
  // empty source becomes kErrorSource.
  explicit Error(int32_t number, std::u16string source = u"");

  int32_t number() const noexcept { return number_; }
  const std::u16string& description() const noexcept { return description_; }
  const std::u16string& source() const noexcept { return source_; }
  void set_source(std::u16string source) { source_ = std::move(source); }

  // UTF-8 "description (number)" for diagnostics.
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  int32_t number_;
  std::u16string description_;
  std::u16string source_;
  std::string what_;
};

// Throws Error(number) with the runtime's description.
[[noreturn]] NORVIK50_EXPORT void Raise(int32_t number,
                                        std::u16string_view source = u"");

// 16-bit positions and counts: a value outside -32768..32767 raises
// overflow (6) instead of wrapping.
NORVIK50_EXPORT int16_t ToInt16Checked(int64_t value);
// 32-bit Long values: a value outside the Long range raises overflow (6).
NORVIK50_EXPORT int32_t ToInt32Checked(int64_t value);

}  // namespace norvik50

#endif  // NORVIK50_ERROR_H_
