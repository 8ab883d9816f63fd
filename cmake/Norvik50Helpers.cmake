# Helpers that give every layer the same shape: src/<layer>/*.cpp builds the
# static library norvik50_<layer> (alias norvik50::<layer>), and
# src/<layer>/*_test.cpp builds <layer>_tests, registered with CTest.

function(norvik50_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic
    -Wno-missing-field-initializers)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 reports false -Wrestrict overlaps inside libstdc++'s
    # std::string assignment (GCC bug 105329).
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  if(NORVIK50_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# SERVER_TESTS: a gtest filter naming the tests that need the settings
# server the test program starts for itself (tests/testing/pg_test_server.h).
# They run as one CTest test, so that the server is made once for all of
# them rather than once for each.
function(norvik50_add_layer layer)
  cmake_parse_arguments(ARG "" "SERVER_TESTS" "DEPS" ${ARGN})
  file(GLOB all_sources CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/src/${layer}/*.cpp)
  set(sources ${all_sources})
  list(FILTER sources EXCLUDE REGEX "_test\\.cpp$")
  set(tests ${all_sources})
  list(FILTER tests INCLUDE REGEX "_test\\.cpp$")

  set(target norvik50_${layer})
  if(NOT sources)
    # A layer whose members have not landed yet passes its dependencies on.
    add_library(${target} INTERFACE)
    add_library(norvik50::${layer} ALIAS ${target})
    target_link_libraries(${target} INTERFACE ${ARG_DEPS})
    return()
  endif()
  add_library(${target} STATIC ${sources})
  add_library(norvik50::${layer} ALIAS ${target})
  set_property(GLOBAL APPEND PROPERTY NORVIK50_LAYER_TARGETS ${target})
  target_include_directories(${target}
    PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
           $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
    PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${target} PUBLIC ${ARG_DEPS})
  target_compile_definitions(${target} PRIVATE NORVIK50_BUILDING)
  norvik50_warnings(${target})

  if(NORVIK50_BUILD_TESTS AND tests)
    add_executable(${layer}_tests ${tests})
    target_include_directories(${layer}_tests PRIVATE ${PROJECT_SOURCE_DIR}/src)
    # norvik50_members: tests may call members by name through Invoke.
    target_link_libraries(${layer}_tests PRIVATE ${target} norvik50_members norvik50_testing
      GTest::gtest GTest::gmock GTest::gtest_main)
    norvik50_warnings(${layer}_tests)
    set(filter "")
    if(ARG_SERVER_TESTS)
      set(filter "-${ARG_SERVER_TESTS}")
      add_test(NAME ${layer}_server_tests
        COMMAND ${layer}_tests "--gtest_filter=${ARG_SERVER_TESTS}"
        WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
      set_tests_properties(${layer}_server_tests PROPERTIES TIMEOUT 600
        ENVIRONMENT "NORVIK50_TESTDATA=${PROJECT_SOURCE_DIR}/testdata")
    endif()
    gtest_discover_tests(${layer}_tests
      WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
      TEST_FILTER "${filter}"
      PROPERTIES ENVIRONMENT "NORVIK50_TESTDATA=${PROJECT_SOURCE_DIR}/testdata"
      DISCOVERY_TIMEOUT 60)
  endif()
endfunction()
