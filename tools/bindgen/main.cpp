// norvik50_bindgen: writes the parts of the language bindings that follow
// the member table, so a binding offers exactly the members the library
// it was built with answers.
//   norvik50_bindgen pyi HEAD OUT   Python stubs: HEAD, then LIB's members
//   norvik50_bindgen cs OUT         the .NET Lib class's members
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "member_view.h"

int main(int argc, char** argv) {
  const std::string mode = argc > 1 ? argv[1] : "";
  try {
    const auto members = norvik50::bindgen::ReadMembers();
    std::ostringstream text;
    std::string out_path;
    if (mode == "pyi" && argc == 4) {
      std::ifstream head(argv[2]);
      if (!head) throw std::runtime_error(std::string("cannot read ") + argv[2]);
      text << head.rdbuf();
      norvik50::bindgen::WritePythonStubs(members, text);
      out_path = argv[3];
    } else if (mode == "cs" && argc == 3) {
      norvik50::bindgen::WriteCSharpMembers(members, text);
      out_path = argv[2];
    } else {
      std::cerr << "usage: norvik50_bindgen pyi HEAD OUT | cs OUT\n";
      return 2;
    }
    std::ofstream out(out_path);
    out << text.str();
    if (!out.flush()) throw std::runtime_error("cannot write " + out_path);
  } catch (const std::exception& e) {
    std::cerr << "norvik50_bindgen: " << e.what() << '\n';
    return 1;
  }
  return 0;
}
