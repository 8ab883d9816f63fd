#include "batch.h"

#include <istream>
#include <ostream>
#include <string>

#include "json_line.h"
#include "json_value.h"
#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

constexpr std::u16string_view kProtocolSource = u"norvik50 batch";
constexpr int32_t kErrInternal = 51;
constexpr const char* kLastResortAnswer =
    R"({"id":null,"ok":false,"error":{"number":7,"description":"Out of memory","source":"norvik50 batch"}})";

json ErrorAnswer(const json& id, int32_t number, const std::string& description,
                 const std::string& source) {
  return {{"id", id},
          {"ok", false},
          {"error", {{"number", number}, {"description", description}, {"source", source}}}};
}

// Requests that are not well-formed are answered as an invalid argument,
// with a description saying what is wrong.
json MalformedAnswer(const json& id, const std::string& why) {
  return ErrorAnswer(id, kErrInvalidCall, "Malformed request: " + why, ToUtf8(kProtocolSource));
}

// A failure no member documents, such as a library fault or exhausted
// memory: reported on the request's line, never fatal to the batch.
json UnexpectedFailureAnswer(const json& id, const char* what) {
  return ErrorAnswer(id, kErrInternal, std::string("Internal error: ") + what,
                     ToUtf8(kErrorSource));
}

// The argument list; `{"missing":true}` omits an optional argument.
std::vector<std::optional<Variant>> Arguments(const json& list) {
  std::vector<std::optional<Variant>> args;
  args.reserve(list.size());
  for (const json& arg : list) {
    if (const auto it = arg.find("missing"); it != arg.end()) {
      if (*it != true || arg.size() != 1) throw JsonValueError("\"missing\" must be true");
      args.emplace_back(std::nullopt);
    } else {
      args.emplace_back(VariantFromJson(arg));
    }
  }
  return args;
}

// The answer to a well-formed request, or the error it raises. `id` is set
// as soon as it is known, so that every error answer can carry it.
json Answer(LIB& lib, std::string_view line, json& id) {
  std::string why;
  const std::optional<json> parsed = ReadJsonLine(line, why);
  if (!parsed) return MalformedAnswer(nullptr, why);
  const json& request = *parsed;
  if (!request.is_object()) return MalformedAnswer(nullptr, "a request must be a JSON object");
  if (const auto it = request.find("id"); it != request.end()) id = *it;
  const auto member_it = request.find("member");
  if (member_it == request.end() || !member_it->is_string()) {
    return MalformedAnswer(id, "\"member\" must be a string");
  }
  bool let = false;
  if (const auto it = request.find("let"); it != request.end()) {
    if (!it->is_boolean()) return MalformedAnswer(id, "\"let\" must be true or false");
    let = it->get<bool>();
  }
  std::vector<std::optional<Variant>> args;
  if (const auto it = request.find("args"); it != request.end() && !it->is_null()) {
    if (!it->is_array()) return MalformedAnswer(id, "\"args\" must be a list");
    args = Arguments(*it);
  }

  const InvokeResult result =
      Invoke(lib, member_it->get_ref<const std::string&>(), std::move(args), let);
  json answer = {{"id", id}, {"ok", true}};
  if (result.result) answer["result"] = VariantToJson(*result.result);
  if (!result.by_ref.empty()) {
    json by_ref = json::object();
    for (const auto& [index, value] : result.by_ref) {
      by_ref[std::to_string(index)] = VariantToJson(value);
    }
    answer["byref"] = std::move(by_ref);
  }
  return answer;
}

}  // namespace

json AnswerRequest(LIB& lib, std::string_view line) {
  json id = nullptr;
  try {
    return Answer(lib, line, id);
  } catch (const JsonValueError& e) {
    return MalformedAnswer(id, e.what());
  } catch (const Error& e) {
    return ErrorAnswer(id, e.number(), Utf16ToWireText(e.description()),
                       Utf16ToWireText(e.source()));
  } catch (const std::bad_alloc&) {
    return ErrorAnswer(id, kErrOutOfMemory, ToUtf8(RuntimeErrorText(kErrOutOfMemory)),
                       ToUtf8(kErrorSource));
  } catch (const std::exception& e) {
    return UnexpectedFailureAnswer(id, e.what());
  } catch (...) {
    return UnexpectedFailureAnswer(id, "unknown exception");
  }
}

int RunBatch(std::istream& in, std::ostream& out) {
  LIB lib;  // one object for the whole batch, as a host holds one
  int failures = 0;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.find_first_not_of(" \t") == std::string::npos) continue;
    std::string answer;
    try {
      const json answered = AnswerRequest(lib, line);
      if (!answered.value("ok", false)) ++failures;
      answer = WriteJsonLine(answered);
    } catch (...) {
      // Not even the error answer could be built (memory is exhausted):
      // a fixed line keeps the answers in step with the requests.
      ++failures;
      answer = kLastResortAnswer;
    }
    out << answer << '\n' << std::flush;
  }
  return failures;
}

}  // namespace norvik50::cli
