#include "batch.h"

#include <istream>
#include <ostream>
#include <string>

#include "json_value.h"
#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

constexpr std::u16string_view kProtocolSource = u"norvik50 batch";

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

}  // namespace

json AnswerRequest(LIB& lib, std::string_view line) {
  const json request = json::parse(line, nullptr, /*allow_exceptions=*/false);
  if (request.is_discarded()) return MalformedAnswer(nullptr, "not valid JSON");
  if (!request.is_object()) return MalformedAnswer(nullptr, "a request must be a JSON object");
  const json id = request.value("id", json(nullptr));
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
    try {
      for (const json& arg : *it) {
        if (arg.is_object() && arg.value("missing", false)) {
          args.emplace_back(std::nullopt);
        } else {
          args.emplace_back(VariantFromJson(arg));
        }
      }
    } catch (const JsonValueError& e) {
      return MalformedAnswer(id, e.what());
    }
  }

  try {
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
  } catch (const Error& e) {
    return ErrorAnswer(id, e.number(), ToUtf8(e.description()), ToUtf8(e.source()));
  } catch (const std::bad_alloc&) {
    return ErrorAnswer(id, kErrOutOfMemory, ToUtf8(RuntimeErrorText(kErrOutOfMemory)),
                       ToUtf8(kErrorSource));
  } catch (const std::exception& e) {
    // A failure no member documents: reported, never fatal to the batch.
    return ErrorAnswer(id, 51, std::string("Internal error: ") + e.what(),
                       ToUtf8(kErrorSource));
  }
}

int RunBatch(std::istream& in, std::ostream& out) {
  LIB lib;  // one object for the whole batch, as a host holds one
  int failures = 0;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.find_first_not_of(" \t") == std::string::npos) continue;
    const json answer = AnswerRequest(lib, line);
    if (!answer.value("ok", false)) ++failures;
    // Invalid UTF-8 inside strings is replaced rather than aborting the dump.
    out << answer.dump(-1, ' ', false, json::error_handler_t::replace) << '\n' << std::flush;
  }
  return failures;
}

}  // namespace norvik50::cli
