#include "text/collation.h"

#include <unicode/coll.h>
#include <unicode/locid.h>

#include <memory>
#include <vector>

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
      a.data(), static_cast<int32_t>(a.size()), b.data(), static_cast<int32_t>(b.size()),
      status);
  return r == UCOL_LESS ? -1 : r == UCOL_GREATER ? 1 : 0;
}

std::string CollationKey(std::u16string_view text) {
  icu::Collator& collator = CurrentCollator();
  const auto len = static_cast<int32_t>(text.size());
  std::vector<uint8_t> key(64 + text.size() * 4);
  int32_t needed = collator.getSortKey(text.data(), len, key.data(),
                                       static_cast<int32_t>(key.size()));
  if (needed > static_cast<int32_t>(key.size())) {
    key.resize(static_cast<std::size_t>(needed));
    needed = collator.getSortKey(text.data(), len, key.data(), needed);
  }
  // The key ends in a terminating zero byte; leave it out.
  return std::string(key.begin(), key.begin() + (needed > 0 ? needed - 1 : 0));
}

}  // namespace norvik50
