// Reading and writing single values.
#include <exception>
#include <string>

#include "norvik50/encoding.h"
#include "norvik50/error.h"
#include "numeric/format.h"
#include "numeric/radix.h"
#include "settings/registry_algorithms.h"
#include "settings/value_bytes.h"

namespace norvik50::settings {
namespace {

constexpr std::u16string_view kReadSource = u"LIB:tkrGetValue()";
constexpr std::u16string_view kWriteSource = u"LIB:tkrSetValue()";
// Class text and access of the keys a write creates.
constexpr int32_t kCreateOptions = REG_OPTION_NON_VOLATILE;

void ReportException(const ErrorReport& report, std::u16string_view source) {
  if (!report) return;
  try {
    throw;
  } catch (const Error& e) {
    report(e.number(), e.description(), source);
  } catch (const std::exception& e) {
    report(kErrInvalidCall, FromUtf8(e.what()), source);
  } catch (...) {
    report(kErrInvalidCall, RuntimeErrorText(kErrInvalidCall), source);
  }
}

// The stored bytes of a value as the reader sees them.
Variant Decode(int32_t type, const std::string& data) {
  switch (type) {
    case REG_SZ:
    case REG_EXPAND_SZ: {
      // The stored length counts the terminator; one character is dropped
      // for it. REG_EXPAND_SZ is deliberately never expanded.
      std::u16string text = FromUtf8(data);
      if (!text.empty()) text.pop_back();
      return Variant(std::move(text));
    }
    case REG_BINARY:
      return Variant(BytesToText(data));
    case REG_DWORD:
    case REG_DWORD_BIG_ENDIAN:
      // Big-endian DWORDs are read little-endian too, on purpose: hosts
      // wrote and read them this way for years, and the values they hold
      // are only correct read like this. The "x" form of HexTextToLong
      // takes raw bytes, least significant first.
      if (data.size() == 4) {
        // The four bytes read that way, without the text detour (reads are
        // hot: hosts read settings in loops).
        uint32_t v = 0;
        for (int i = 3; i >= 0; --i) v = (v << 8) | static_cast<uint8_t>(data[i]);
        return Variant(static_cast<int32_t>(v));
      }
      return Variant(HexTextToLong(Variant(u"x" + BytesToText(data))));
    default:
      // REG_MULTI_SZ and the rest carry nothing a getter can return.
      return Variant(std::u16string());
  }
}

// "hex:01,ff,10" -> the bytes 01 FF 10. A part that is not a byte raises
// overflow (6), as a byte conversion does.
std::string HexBytes(std::u16string_view list) {
  std::string bytes;
  if (list.empty()) return bytes;
  std::size_t start = 0;
  while (true) {
    const std::size_t comma = list.find(u',', start);
    const std::u16string_view part =
        list.substr(start, comma == std::u16string_view::npos ? list.npos : comma - start);
    const int32_t value = HexTextToLong(Variant(part));
    if (value < 0 || value > 255) Raise(kErrOverflow, kWriteSource);
    bytes.push_back(static_cast<char>(value));
    if (comma == std::u16string_view::npos) break;
    start = comma + 1;
  }
  return bytes;
}

}  // namespace

void ReportStoreProblem(RegistryStore& store, const ErrorReport& report,
                        std::u16string_view source) {
  const StoreProblem problem = store.TakeStoreProblem();
  if (problem.number != 0 && report) report(problem.number, problem.description, source);
}

Variant RegReadValue(RegistryStore& store, int32_t root, std::u16string_view sub_key,
                     std::u16string_view value_name, const std::optional<Variant>& default_value,
                     bool auto_create, const ErrorReport& report) {
  Variant result{std::u16string()};
  RegKey key = 0;
  bool open = false;
  try {
    open = store.OpenKey(root, sub_key, KEY_QUERY_VALUE, key) == ERROR_SUCCESS;
    if (open) {
      int32_t type = REG_NONE;
      std::string data;
      // A fixed buffer of 1024 bytes: a longer value is treated exactly like
      // a missing one (and overwritten by the default with auto-create).
      // Hosts have long kept their large data elsewhere because of this.
      if (store.QueryValue(key, value_name, kReadBufferSize, type, data) == ERROR_SUCCESS) {
        result = Decode(type, data);
        store.CloseKey(key);
        ReportStoreProblem(store, report, kReadSource);
        return result;
      }
    }
    // Whatever made the read fail is reported as the read's, before the
    // write-back can add its own.
    ReportStoreProblem(store, report, kReadSource);
    if (default_value) {
      if (auto_create) {
        RegWriteValue(store, root, sub_key, value_name, *default_value, report);
      }
      result = *default_value;
    }
  } catch (...) {
    ReportException(report, kReadSource);
  }
  if (open) store.CloseKey(key);
  ReportStoreProblem(store, report, kReadSource);
  return result;
}

bool RegWriteValue(RegistryStore& store, int32_t root, std::u16string_view sub_key,
                   std::u16string_view value_name, const Variant& data, const ErrorReport& report) {
  RegKey key = 0;
  bool open = false;
  int32_t code = -1;
  try {
    const bool remove = data.is_string() && data.as_string() == u"-";
    open = store.OpenKey(root, sub_key, KEY_SET_VALUE, key) == ERROR_SUCCESS;
    // "-" never creates the key it would delete from.
    if (!open && !remove) {
      open = store.CreateKey(root, sub_key, kCreateOptions, KEY_ALL_ACCESS, key, nullptr) ==
             ERROR_SUCCESS;
    }
    if (open) {
      if (remove) {
        // The text "-" deletes the value: hosts clear settings this way.
        code = store.DeleteValue(key, value_name);
      } else if (data.is_string() && data.as_string().starts_with(u"hex:")) {
        // Hosts store binary settings by writing "hex:01,ff,10", the form
        // the registry editor shows them in. The prefix is case-sensitive.
        code = store.SetValue(key, value_name, REG_BINARY,
                              HexBytes(std::u16string_view(data.as_string()).substr(4)));
      } else {
        switch (data.type()) {
          case VarType::kInteger:
          case VarType::kLong:
          case VarType::kByte: {
            const int32_t v = data.type() == VarType::kInteger ? data.as_integer()
                              : data.type() == VarType::kLong  ? data.as_long()
                                                               : data.as_byte();
            code = store.SetValue(key, value_name, REG_DWORD, DwordBytes(static_cast<uint32_t>(v)));
            break;
          }
          case VarType::kSingle:
          case VarType::kDouble:
          case VarType::kCurrency:
            // Fractional numbers are stored as formatted text with two
            // decimals in the current locale ("2,50" under German settings)
            // and come back as text. Deliberate: settings files were meant
            // to be read by people, and hosts parse these texts themselves.
            code = store.SetValue(key, value_name, REG_SZ, ToUtf8(FormatValue(data, u"#,##0.00")));
            break;
          case VarType::kString:
            code = store.SetValue(key, value_name, REG_SZ, ToUtf8(data.as_string()));
            break;
          default:
            // Booleans, dates, decimals, Empty, Null, objects and arrays are
            // deliberately not persisted: they store the empty text, and
            // hosts store such settings as numbers or text.
            code = store.SetValue(key, value_name, REG_SZ, std::string());
            break;
        }
      }
    }
  } catch (...) {
    ReportException(report, kWriteSource);
    code = -1;
  }
  if (open) store.CloseKey(key);
  ReportStoreProblem(store, report, kWriteSource);
  return code == ERROR_SUCCESS;
}

}  // namespace norvik50::settings
