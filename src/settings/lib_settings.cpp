// The tkr members of LIB: thin forwards to the registry routines, with the
// store in use and the object's log for anything a person should hear of.
#include <exception>

#include "norvik50/encoding.h"
#include "norvik50/lib.h"
#include "numeric/convert_to_type.h"
#include "settings/registry_algorithms.h"

namespace norvik50 {
namespace {

// Failures inside the registry routines go to this object's log.
settings::ErrorReport LogTo(LIB& lib) {
  return [&lib](int32_t number, std::u16string_view description, std::u16string_view source) {
    try {
      lib.tklLogError(number, description, source);
    } catch (...) {
      // Logging must not turn a getter that never fails into one that does.
    }
  };
}

// A converted getter result as a 32-bit integer; the conversion's fallback
// is an Integer 0 rather than a Long.
int32_t AsLong(const Variant& v) {
  if (v.type() == VarType::kLong) return v.as_long();
  if (v.type() == VarType::kInteger) return v.as_integer();
  return 0;
}

}  // namespace

int32_t LIB::tkrDeleteKey(int32_t lRegKey, std::u16string_view sRegSubKey, bool bKillAllSubKeys) {
  auto store = CurrentRegistryStore();
  try {
    const int32_t code = settings::RegDeleteKeyTree(*store, lRegKey, sRegSubKey, bKillAllSubKeys);
    settings::ReportStoreProblem(*store, LogTo(*this), u"LIB:tkrDeleteKey()");
    return code;
  } catch (const std::exception& e) {
    LogTo (*this)(ERROR_CANTOPEN, FromUtf8(e.what()), u"LIB:tkrDeleteKey()");
    return ERROR_CANTOPEN;
  }
}

int32_t LIB::tkrGetLong(int32_t lRegKey, std::u16string_view sRegSubKey,
                        std::u16string_view sValueName, int32_t lDefaultValue, bool bAutoCreate) {
  return AsLong(ConvertToType(
      3, tkrGetValue(lRegKey, sRegSubKey, sValueName, Variant(lDefaultValue), bAutoCreate)));
}

int16_t LIB::tkrGetInteger(int32_t lRegKey, std::u16string_view sRegSubKey,
                           std::u16string_view sValueName, int16_t iDefaultValue,
                           bool bAutoCreate) {
  const Variant v = ConvertToType(
      2, tkrGetValue(lRegKey, sRegSubKey, sValueName, Variant(iDefaultValue), bAutoCreate));
  return v.type() == VarType::kInteger ? v.as_integer() : int16_t{0};
}

std::u16string LIB::tkrGetString(int32_t lRegKey, std::u16string_view sRegSubKey,
                                 std::u16string_view sValueName, std::u16string_view sDefaultValue,
                                 bool bAutoCreate) {
  const Variant v = ConvertToType(
      8, tkrGetValue(lRegKey, sRegSubKey, sValueName, Variant(sDefaultValue), bAutoCreate));
  return v.is_string() ? v.as_string() : std::u16string();
}

Variant LIB::tkrGetValue(int32_t lRegKey, std::u16string_view sRegSubKey,
                         std::u16string_view sValueName,
                         const std::optional<Variant>& vDefaultValue, bool bAutoCreate) {
  auto store = CurrentRegistryStore();
  return settings::RegReadValue(*store, lRegKey, sRegSubKey, sValueName, vDefaultValue, bAutoCreate,
                                LogTo(*this));
}

bool LIB::tkrSetValue(int32_t lRegKey, std::u16string_view sRegSubKey,
                      std::u16string_view sValueName, const Variant& vData) {
  auto store = CurrentRegistryStore();
  return settings::RegWriteValue(*store, lRegKey, sRegSubKey, sValueName, vData, LogTo(*this));
}

int32_t LIB::tkrSubKeyCount(int32_t lRegKey, std::u16string_view sRegSubKey) {
  auto store = CurrentRegistryStore();
  try {
    const int32_t count = settings::RegCountKeys(*store, lRegKey, sRegSubKey);
    settings::ReportStoreProblem(*store, LogTo(*this), u"LIB:tkrSubKeyCount()");
    return count;
  } catch (const std::exception& e) {
    LogTo (*this)(ERROR_CANTOPEN, FromUtf8(e.what()), u"LIB:tkrSubKeyCount()");
    return 0;
  }
}

void LIB::tkrFindRegKeys(int32_t lRegKey, std::u16string_view sRegSubKey, SafeArray& sKeys) {
  auto store = CurrentRegistryStore();
  try {
    sKeys = settings::RegListSubKeys(*store, lRegKey, sRegSubKey);
    settings::ReportStoreProblem(*store, LogTo(*this), u"LIB:tkrFindRegKeys()");
  } catch (const std::exception& e) {
    sKeys = SafeArray(VarType::kString);
    LogTo (*this)(ERROR_CANTOPEN, FromUtf8(e.what()), u"LIB:tkrFindRegKeys()");
  }
}

int32_t LIB::tkrFlushKey(int32_t lRegKey) {
  auto store = CurrentRegistryStore();
  try {
    const int32_t code = store->FlushKey(lRegKey);
    settings::ReportStoreProblem(*store, LogTo(*this), u"LIB:tkrFlushKey()");
    return code;
  } catch (const std::exception& e) {
    LogTo (*this)(ERROR_CANTOPEN, FromUtf8(e.what()), u"LIB:tkrFlushKey()");
    return ERROR_CANTOPEN;
  }
}

}  // namespace norvik50
