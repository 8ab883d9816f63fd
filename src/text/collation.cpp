#include "text/collation.h"

#include <unicode/coll.h>
#include <unicode/locid.h>

#include <cstdint>
#include <memory>

#include "norvik50/error.h"
#include "norvik50/locale.h"

namespace norvik50 {
namespace {

std::unique_ptr<icu::Collator> MakeCollator(const std::string& icu_name) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(
      icu::Collator::createInstance(icu::Locale(icu_name.c_str()), status));
  if (U_FAILURE(status) || !collator) {
    status = U_ZERO_ERROR;
    collator.reset(icu::Collator::createInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status) || !collator) Raise(kErrOutOfMemory);
  }
  collator->setStrength(icu::Collator::SECONDARY);
  return collator;
}

// ICU collators must not be shared between threads; each thread keeps its
// own, rebuilt when the host switches the locale.
icu::Collator& CurrentCollator() {
  thread_local std::string name;
  thread_local std::unique_ptr<icu::Collator> collator;
  const std::string& wanted = CurrentLocale().icu_name;
  if (!collator || name != wanted) {
    collator = MakeCollator(wanted);
    name = wanted;
  }
  return *collator;
}

}  // namespace

int CompareIgnoringCase(std::u16string_view a, std::u16string_view b) {
  UErrorCode status = U_ZERO_ERROR;
  const UCollationResult r = CurrentCollator().compare(
      a.data(), static_cast<int32_t>(a.size()), b.data(), static_cast<int32_t>(b.size()), status);
  return r == UCOL_LESS ? -1 : r == UCOL_GREATER ? 1 : 0;
}

void AppendCollationKey(std::u16string_view text, std::string& out) {
  icu::Collator& collator = CurrentCollator();
  const auto len = static_cast<int32_t>(text.size());
  const std::size_t at = out.size();
  out.resize(at + 32 + text.size() * 4);
  auto* buffer = reinterpret_cast<uint8_t*>(out.data() + at);
  auto room = static_cast<int32_t>(out.size() - at);
  int32_t needed = collator.getSortKey(text.data(), len, buffer, room);
  if (needed > room) {
    out.resize(at + static_cast<std::size_t>(needed));
    buffer = reinterpret_cast<uint8_t*>(out.data() + at);
    needed = collator.getSortKey(text.data(), len, buffer, needed);
  }
  // The key ends in a terminating zero byte; leave it out.
  out.resize(at + static_cast<std::size_t>(needed > 0 ? needed - 1 : 0));
}

std::string CollationKey(std::u16string_view text) {
  std::string key;
  AppendCollationKey(text, key);
  return key;
}

}  // namespace norvik50
