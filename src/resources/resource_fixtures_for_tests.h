// Test support: the resource libraries the build makes from
// testdata/resources (Res_DE.dll PE32+, Res_EN.dll PE32, multi64.dll and
// multi32.dll with several languages of one string).
#ifndef NORVIK50_SRC_RESOURCES_RESOURCE_FIXTURES_FOR_TESTS_H_
#define NORVIK50_SRC_RESOURCES_RESOURCE_FIXTURES_FOR_TESTS_H_

#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace norvik50::testing {

inline std::string FixturePath(const std::string& name) {
  return std::string(NORVIK50_FIXTURE_DIR) + "/" + name;
}

inline std::vector<uint8_t> FixtureBytes(const std::string& name) {
  std::ifstream in(FixturePath(name), std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  const std::string s = bytes.str();
  return {s.begin(), s.end()};
}

// The file offset of the resource section (".rsrc") of a PE image, 0 when
// there is none; for tests that damage the directory on purpose.
inline std::size_t ResourceSectionOffset(const std::vector<uint8_t>& b) {
  auto u16 = [&](std::size_t at) { return static_cast<std::size_t>(b[at] | (b[at + 1] << 8)); };
  auto u32 = [&](std::size_t at) { return u16(at) | (u16(at + 2) << 16); };
  const std::size_t pe = u32(0x3C);
  const std::size_t sections = pe + 24 + u16(pe + 20);
  for (std::size_t i = 0; i < u16(pe + 6); ++i) {
    const std::size_t at = sections + i * 40;
    if (std::string(reinterpret_cast<const char*>(&b[at]), 5) == ".rsrc") return u32(at + 20);
  }
  return 0;
}

}  // namespace norvik50::testing

#endif  // NORVIK50_SRC_RESOURCES_RESOURCE_FIXTURES_FOR_TESTS_H_
