# Script mode: writes OUT, a C++ source holding the bytes of IN as SYMBOL.
file(READ ${IN} hex HEX)
file(SIZE ${IN} size)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
# Sixteen bytes a line keep the generated file readable in a debugger.
string(REGEX REPLACE "((0x..,){16})" "\\1\n" bytes "${bytes}")
if(size EQUAL 0)
  set(bytes "0x00")
endif()
file(WRITE ${OUT} "// Generated from ${IN}; do not edit.
#include <cstddef>
namespace norvik50::embedded {
extern const unsigned char ${SYMBOL}[];
extern const std::size_t ${SYMBOL}_size;
const unsigned char ${SYMBOL}[] = {
${bytes}
};
const std::size_t ${SYMBOL}_size = ${size};
}  // namespace norvik50::embedded
")
