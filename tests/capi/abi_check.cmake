cmake_policy(VERSION 3.25)
# Fails when the shared library's C interface differs from the committed
# list: an exported norvik50_* symbol missing, added or with another
# version, or another SONAME. A host built against the list must keep
# loading and finding every function it calls.
#   cmake -DLIBRARY=... -DSYMBOLS=... -DNM=... -DREADELF=... -P abi_check.cmake
file(STRINGS ${SYMBOLS} expected REGEX "^[^#]")
list(FILTER expected EXCLUDE REGEX "^SONAME ")
file(STRINGS ${SYMBOLS} expected_soname REGEX "^SONAME ")
string(REPLACE "SONAME " "" expected_soname "${expected_soname}")

execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY} OUTPUT_VARIABLE nm_out
  RESULT_VARIABLE nm_rc)
if(NOT nm_rc EQUAL 0)
  message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()
string(REPLACE "\n" ";" nm_lines "${nm_out}")
set(actual "")
foreach(line IN LISTS nm_lines)
  if(line MATCHES " [A-Za-z] (norvik50_[A-Za-z0-9_]+@+[A-Za-z0-9_.]+)$")
    list(APPEND actual "${CMAKE_MATCH_1}")
  elseif(line MATCHES " [A-Za-z] (norvik50_[A-Za-z0-9_]+)$")
    list(APPEND actual "${CMAKE_MATCH_1} (without a version)")
  endif()
endforeach()
list(SORT actual)
list(SORT expected)

set(problems "")
foreach(symbol IN LISTS expected)
  if(NOT symbol IN_LIST actual)
    string(APPEND problems "  missing or changed: ${symbol}\n")
  endif()
endforeach()
foreach(symbol IN LISTS actual)
  if(NOT symbol IN_LIST expected)
    string(APPEND problems "  not in the list: ${symbol}\n")
  endif()
endforeach()

execute_process(COMMAND ${READELF} -d ${LIBRARY} OUTPUT_VARIABLE dynamic)
if(NOT dynamic MATCHES "Library soname: \\[([^]]+)\\]")
  string(APPEND problems "  no SONAME\n")
elseif(NOT CMAKE_MATCH_1 STREQUAL expected_soname)
  string(APPEND problems "  SONAME ${CMAKE_MATCH_1}, expected ${expected_soname}\n")
endif()

if(problems)
  message(FATAL_ERROR "The C interface of ${LIBRARY} differs from ${SYMBOLS}:\n${problems}")
endif()
list(LENGTH expected count)
message(STATUS "C interface: ${count} symbols as listed, SONAME ${expected_soname}")
