#include "demo_tour.h"

#include <cstdio>
#include <iostream>

#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"
#include "variant_literal.h"

namespace norvik50::cli {

void Step(std::string_view heading, std::string_view explanation) {
  std::cout << "\n== " << heading << "\n   " << explanation << "\n\n";
}

void Note(std::string_view text) { std::cout << "      (" << text << ")\n"; }

std::string HexBytes(std::string_view bytes) {
  std::string text;
  char pair[4];
  for (const char byte : bytes) {
    std::snprintf(pair, sizeof pair, "%02X", static_cast<unsigned char>(byte));
    text += (text.empty() ? "" : " ") + std::string(pair);
  }
  return text;
}

namespace {

// Calls and prints; `answer` gets the result as written, or "error N".
std::optional<Variant> Call(Tour& tour, std::string_view member, std::vector<Variant> args,
                            std::string& answer) {
  std::cout << "   " << member << "(" << LiteralList(args) << ")";
  std::vector<std::optional<Variant>> call_args(args.begin(), args.end());
  try {
    InvokeResult result = Invoke(tour.lib, member, std::move(call_args));
    if (result.result) {
      answer = Literal(*result.result);
      std::cout << " = " << answer;
    }
    std::cout << '\n';
    const MemberInfo* info = Members().Find(member, MemberKind::kMethod);
    for (const auto& [index, value] : result.by_ref) {
      const std::string name = info != nullptr && index < info->params.size()
                                   ? info->params[index].name
                                   : "argument " + std::to_string(index);
      std::cout << "      " << name << " is now " << Literal(value) << '\n';
    }
    return std::move(result.result);
  } catch (const Error& e) {
    answer = "error " + std::to_string(e.number());
    std::cout << " -> error " << e.number() << ": " << ToUtf8(e.description()) << '\n';
    return std::nullopt;
  }
}

}  // namespace

std::optional<Variant> ShowCall(Tour& tour, std::string_view member, std::vector<Variant> args) {
  std::string ignored;
  return Call(tour, member, std::move(args), ignored);
}

std::optional<Variant> ShowCall(Tour& tour, std::string_view member, std::vector<Variant> args,
                                std::string_view expected) {
  std::string answer;
  auto result = Call(tour, member, std::move(args), answer);
  Expect(tour, member, answer, expected);
  return result;
}

void Expect(Tour& tour, std::string_view what, const std::string& got, std::string_view expected) {
  if (got == expected) return;
  ++tour.unexpected;
  std::cout << "      !! " << what << ": the tour expected " << expected << ", got "
            << (got.empty() ? "nothing" : got) << '\n';
}

}  // namespace norvik50::cli
