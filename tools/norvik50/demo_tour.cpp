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

std::optional<Variant> ShowCall(Tour& tour, std::string_view member, std::vector<Variant> args) {
  std::cout << "   " << member << "(" << LiteralList(args) << ")";
  std::vector<std::optional<Variant>> call_args(args.begin(), args.end());
  try {
    InvokeResult result = Invoke(tour.lib, member, std::move(call_args));
    if (result.result) std::cout << " = " << Literal(*result.result);
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
    std::cout << " -> error " << e.number() << ": " << ToUtf8(e.description()) << '\n';
    return std::nullopt;
  }
}

}  // namespace norvik50::cli
