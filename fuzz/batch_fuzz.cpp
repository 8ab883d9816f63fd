// Feeds lines to the batch protocol: JSON parsing, typed values, argument
// coercion and every member that does not write files. Each input must get
// exactly one answer that reads back as JSON, and never crash.
//
// Inputs starting with a byte below 0x09 (never the start of a JSON text)
// are not taken as they stand: the bytes after it drive a generator that
// writes a well-formed request with typed values of every kind, numbers at
// and past each type's range, unpaired surrogates and nesting far past the
// limit, so that the fuzzer reaches the decoder and the members instead of
// spending its time on JSON syntax. Every other input is one raw line.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "batch.h"
#include "json_line.h"
#include "norvik50/dispatch.h"

namespace {

using json = nlohmann::ordered_json;

bool Unsuitable(std::string name) {
  for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  // The log members write where their arguments point, the tkr members
  // into the store; a fuzzer must not create files wherever its input says.
  // tklWait sleeps as long as it is asked to, which is not a fault.
  return name.rfind("tkllog", 0) == 0 || name.rfind("tkr", 0) == 0 || name == "tklwait";
}

bool Unsuitable(const json& request) {
  if (!request.is_object()) return false;
  const auto it = request.find("member");
  return it != request.end() && it->is_string() && Unsuitable(it->get<std::string>());
}

norvik50::LIB& Lib() {
  static norvik50::LIB* lib = [] {
    // Keep the log inside a folder of the fuzzer's own.
    static std::string folder =
        (std::filesystem::temp_directory_path() / "norvik50-batch-fuzz").string();
    std::filesystem::create_directories(folder);
    setenv("TMPDIR", folder.c_str(), 1);
    setenv("NORVIK50_REGISTRY_DIR", folder.c_str(), 1);
    return new norvik50::LIB();
  }();
  return *lib;
}

// ---- The request generator --------------------------------------------

class Bytes {
 public:
  Bytes(const uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  uint8_t Next() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }
  std::size_t Pick(std::size_t count) { return Next() % count; }
  bool Empty() const { return size_ == 0; }

 private:
  const uint8_t* data_;
  std::size_t size_;
};

// Numbers at, inside and past the edges of every type's range.
const char* const kNumbers[] = {"0",
                                "-1",
                                "1",
                                "0.5",
                                "2.5",
                                "-0.125",
                                "-0",
                                "255",
                                "256",
                                "32767",
                                "32768",
                                "-32769",
                                "2147483647",
                                "2147483648",
                                "-2147483649",
                                "9223372036854775807",
                                "18446744073709551616",
                                "1e300",
                                "-1e300",
                                "1.7976931348623157e308",
                                "1e400",
                                "1e-320",
                                "3.4028235e38",
                                "3.5e38",
                                "922337203685477.5807",
                                "922337203685478",
                                "2958465.99998843",
                                "2958466",
                                "-657434",
                                "-657435",
                                "7.9228162514264338e28",
                                "1e29",
                                "0.00005",
                                "12345678901234567890123"};

const char* const kTexts[] = {"",
                              "x",
                              "\\ud800",
                              "\\udc00",
                              "a\\ud800b",
                              "\\ud83d\\ude00",
                              "\\ude00\\ud83d",
                              "\\ufdd0",
                              "\\ufdd0\\ue000",
                              "\xEF\xB7\x90",
                              "1.234,56",
                              "EUR 1.234,56",
                              "1,234.5",
                              "12.3456",
                              "12.34567",
                              "-922337203685477.5808",
                              "79228162514264337593543950335",
                              "0.0000000000000000000000000001",
                              "2024-03-05T14:07:09",
                              "9999-12-31T23:59:59",
                              "0099-12-31T00:00:00",
                              "C:\\\\Temp",
                              "\\\\",
                              "a|b||c",
                              "\\\"q\\\"",
                              "OR|AND",
                              "True",
                              "#,##0.00",
                              "&HFFFF",
                              "FFFFFFFF",
                              "DEFLATE",
                              "INFLATE",
                              "\\u0000"};

const char* const kTypes[] = {"Empty",  "Null",     "Integer", "Long",   "Byte",   "Single",
                              "Double", "Currency", "Decimal", "Date",   "String", "Boolean",
                              "Error",  "Array",    "Object",  "Record", "Bogus"};

template <typename T, std::size_t N>
const T& PickFrom(Bytes& in, const T (&items)[N]) {
  return items[in.Pick(N)];
}

std::string Number(Bytes& in) {
  if (in.Next() < 200) return PickFrom(in, kNumbers);
  double d = 0;
  uint8_t raw[sizeof d];
  for (uint8_t& b : raw) b = in.Next();
  std::memcpy(&d, raw, sizeof d);
  if (!std::isfinite(d)) return "1e999";
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", d);
  return text;
}

std::string Text(Bytes& in) {
  if (in.Next() < 180) return "\"" + std::string(PickFrom(in, kTexts)) + "\"";
  // Raw units, escaped so that the line stays JSON.
  std::string text = "\"";
  for (std::size_t n = in.Pick(12); n > 0; --n) {
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\u%02x%02x", in.Next(), in.Next());
    text += escape;
  }
  return text + "\"";
}

std::string Repeat(const std::string& part, std::size_t times) {
  std::string out;
  out.reserve(part.size() * times);
  for (std::size_t i = 0; i < times; ++i) out += part;
  return out;
}

std::string Value(Bytes& in, int depth);

std::string Values(Bytes& in, int depth, std::size_t most) {
  std::string list;
  for (std::size_t n = in.Pick(most + 1); n > 0; --n) {
    list += (list.empty() ? "" : ",") + Value(in, depth + 1);
  }
  return list;
}

// Typed values nested far past the limit: arrays, collections, records or
// bare JSON lists, up to 2,041 levels.
std::string Deep(Bytes& in) {
  static const std::pair<const char*, const char*> kShapes[] = {
      {R"({"vt":"Array","v":[)", "]}"},
      {R"({"vt":"Object","type":"Collection","v":[)", "]}"},
      {R"({"vt":"Record","type":"typFileInfo","v":{"f":)", "}}"},
      {"[", "]"}};
  const auto& [open, close] = PickFrom(in, kShapes);
  // Up to ten times the limit: enough to overflow any recursion that the
  // limit did not stop, cheap enough to keep the fuzzer fast.
  const std::size_t levels = std::size_t{in.Next()} * 8 + 1;
  const bool closed = in.Next() != 0;
  return Repeat(open, levels) + "1" + (closed ? Repeat(close, levels) : "");
}

// A host control as the batch carries it: a text field, a status panel or
// a mouse pointer with some of their fields (or others), each field holding
// a value of any kind, so that the decoder meets wrong types and ranges.
std::string Control(Bytes& in, int depth) {
  static const char* const kControls[] = {
      "\"TextBox\"", "\"ComboBox\"", "\"ListBox\"",     "\"ListItem\"",    "\"Node\"",
      "\"QSCombo\"", "\"DCCombo\"",  "\"StatusPanel\"", "\"MousePointer\"", "\"List\"",
      "\"TabStrip\""};
  static const char* const kFields[] = {"text",      "enabled", "locked",       "tooltip",
                                        "selStart",  "selLength", "focused",    "MousePointer",
                                        "itemData", "key",     "caption"};
  std::string fields;
  for (std::size_t n = in.Pick(5); n > 0; --n) {
    fields += (fields.empty() ? "\"" : ",\"") + std::string(PickFrom(in, kFields)) +
              "\":" + Value(in, depth + 1);
  }
  return std::string(PickFrom(in, kControls)) + R"(,"v":{)" + fields + "}";
}

std::string Typed(Bytes& in, int depth) {
  const std::string vt = PickFrom(in, kTypes);
  std::string out = R"({"vt":")" + vt + "\"";
  if (vt == "Array") {
    if (in.Next() % 4 == 0) return out + R"(,"v":null})";
    if (in.Next() % 2 == 0) out += R"(,"lb":)" + Number(in);
    return out + R"(,"v":[)" + Values(in, depth, 4) + "]}";
  }
  if (vt == "Object") {
    switch (in.Pick(4)) {
      case 0:
        return out + R"(,"v":null})";
      case 1:
        return out + R"(,"type":"Collection","v":[)" + Values(in, depth, 4) + "]}";
      case 2:
        return out + R"(,"type":)" + Control(in, depth) + "}";
      default:
        return out + R"(,"type":)" + Number(in) + R"(,"v":[]})";
    }
  }
  if (vt == "Record") {
    static const char* const kRecordTypes[] = {"\"typFileInfo\"", "\"SIZE\"", "7"};
    static const char* const kFields[] = {"lpDrive", "lpPath",     "lpFilename",
                                          "lpExt",   "lpFullName", "x"};
    std::string fields;
    for (std::size_t n = in.Pick(6); n > 0; --n) {
      fields += (fields.empty() ? "\"" : ",\"") + std::string(PickFrom(in, kFields)) +
                "\":" + Value(in, depth + 1);
    }
    return out + R"(,"type":)" + PickFrom(in, kRecordTypes) + R"(,"v":{)" + fields + "}}";
  }
  switch (in.Pick(5)) {
    case 0:
      return out + "}";  // no "v"
    case 1:
      return out + R"(,"v":)" + Text(in) + "}";
    case 2:
      return out + R"(,"v":)" + (in.Next() % 2 ? "true" : "false") + "}";
    default:
      return out + R"(,"v":)" + Number(in) + "}";
  }
}

std::string Value(Bytes& in, int depth) {
  const std::size_t choice = depth > 6 ? in.Pick(4) : in.Pick(16);
  switch (choice) {
    case 0:
      return Number(in);
    case 1:
      return Text(in);
    case 2:
      return in.Next() % 2 ? "true" : "false";
    case 3:
      return "null";
    case 4:
      return R"({"missing":)" + std::string(in.Next() % 2 ? "true" : "1") + "}";
    case 5:
      return Deep(in);
    default:
      return Typed(in, depth);
  }
}

std::string GeneratedRequest(Bytes& in) {
  static const std::vector<std::string> members = [] {
    std::vector<std::string> names;
    for (const norvik50::MemberInfo& m : norvik50::Members().members()) {
      if (!Unsuitable(m.name)) names.push_back(m.name);
    }
    return names;
  }();
  std::string request = R"({"id":)" + (in.Next() < 16 ? Deep(in) : Value(in, 5));
  request += R"(,"member":")" + members[in.Pick(members.size())] + "\"";
  if (in.Next() < 40) request += R"(,"let":true)";
  request += R"(,"args":[)";
  std::string args;
  while (!in.Empty() && args.size() < 4096) {
    args += (args.empty() ? "" : ",") + Value(in, 0);
    if (in.Next() < 64) break;
  }
  return request + args + "]}";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  std::string line;
  if (data[0] < 0x09) {
    Bytes in(data + 1, size - 1);
    line = GeneratedRequest(in);
  } else {
    line.assign(reinterpret_cast<const char*>(data), size);
    std::string why;
    const auto request = norvik50::cli::ReadJsonLine(line, why);
    if (request && Unsuitable(*request)) return 0;
  }
  const json answer = norvik50::cli::AnswerRequest(Lib(), line);
  if (!answer.is_object() || !answer.contains("ok")) std::abort();
  // Every answer is one line that a client reads back.
  const std::string written = norvik50::cli::WriteJsonLine(answer);
  if (written.find('\n') != std::string::npos) std::abort();
  std::string why;
  if (!norvik50::cli::ReadJsonLine(written, why)) std::abort();
  return 0;
}
