# Real Windows resource libraries for the tests and benchmarks, built from
# .rc scripts with the mingw-w64 binutils: windres compiles the script (the
# host's cpp stands in for the mingw preprocessor), ld links a
# resource-only DLL. Both bitnesses: x86-64 gives PE32+, i686 gives PE32.
#
# norvik50_resource_dll(arch rc output [DEPENDS file...]) builds
# ${NORVIK50_FIXTURE_DIR}/output from the script `rc` (files it names are
# looked up beside it) as part of the target norvik50_resource_fixtures.
include_guard(GLOBAL)
# Cached, so that every directory sees them, not only the first includer.
set(NORVIK50_FIXTURE_DIR ${CMAKE_BINARY_DIR}/fixtures/resources CACHE INTERNAL "")
set(NORVIK50_FIXTURE_SOURCES ${PROJECT_SOURCE_DIR}/testdata/resources CACHE INTERNAL "")
find_program(NORVIK50_WINDRES_x86_64 x86_64-w64-mingw32-windres REQUIRED)
find_program(NORVIK50_LD_x86_64 x86_64-w64-mingw32-ld REQUIRED)
find_program(NORVIK50_WINDRES_i686 i686-w64-mingw32-windres REQUIRED)
find_program(NORVIK50_LD_i686 i686-w64-mingw32-ld REQUIRED)
find_program(NORVIK50_CPP cpp REQUIRED)
file(GLOB fixture_inputs CONFIGURE_DEPENDS ${NORVIK50_FIXTURE_SOURCES}/*)
set(NORVIK50_FIXTURE_INPUTS ${fixture_inputs} CACHE INTERNAL "")
add_custom_target(norvik50_resource_fixtures)

function(norvik50_resource_dll arch rc output)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  get_filename_component(rc_dir ${rc} DIRECTORY)
  set(object ${NORVIK50_FIXTURE_DIR}/${output}.o)
  set(dll ${NORVIK50_FIXTURE_DIR}/${output})
  add_custom_command(OUTPUT ${dll}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${NORVIK50_FIXTURE_DIR}
    COMMAND ${NORVIK50_WINDRES_${arch}} --preprocessor=${NORVIK50_CPP}
            --preprocessor-arg=-E --preprocessor-arg=-xc
            --preprocessor-arg=-DRC_INVOKED
            --include-dir=${rc_dir} -i ${rc} -o ${object}
    COMMAND ${NORVIK50_LD_${arch}} --dll -e 0 --no-insert-timestamp -o ${dll} ${object}
    COMMAND ${CMAKE_COMMAND} -E remove ${object}
    DEPENDS ${rc} ${ARG_DEPENDS}
    COMMENT "Resource library ${output} (${arch})"
    VERBATIM)
  add_custom_target(norvik50_fixture_${output} DEPENDS ${dll})
  add_dependencies(norvik50_resource_fixtures norvik50_fixture_${output})
endfunction()

# norvik50_padded_resource_dll(size) builds Bench_<size>.dll: a small string
# table padded by one raw-data resource to `size` (100K, 10M), for tests and
# benchmarks of libraries whose size must not matter. Built once, whoever
# asks first.
function(norvik50_padded_resource_dll size)
  if(TARGET norvik50_fixture_Bench_${size}.dll)
    return()
  endif()
  set(padded_dir ${CMAKE_BINARY_DIR}/fixtures/padded)
  file(WRITE ${padded_dir}/bench_${size}.rc
    "LANGUAGE 7, 1\nSTRINGTABLE\nBEGIN\n  100 \"Change size\"\n  4000 \"Ende\"\nEND\n1 RCDATA \"padding_${size}.bin\"\n")
  add_custom_command(OUTPUT ${padded_dir}/padding_${size}.bin
    COMMAND truncate -s ${size} ${padded_dir}/padding_${size}.bin
    COMMENT "Padding of ${size}" VERBATIM)
  norvik50_resource_dll(x86_64 ${padded_dir}/bench_${size}.rc Bench_${size}.dll
    DEPENDS ${padded_dir}/padding_${size}.bin)
endfunction()

if(NORVIK50_BUILD_TESTS)
  # The block reader's tests need a library that spans many blocks.
  norvik50_padded_resource_dll(100K)
  set(sources ${NORVIK50_FIXTURE_SOURCES})
  norvik50_resource_dll(x86_64 ${sources}/res_de.rc Res_DE.dll DEPENDS ${NORVIK50_FIXTURE_INPUTS})
  norvik50_resource_dll(i686 ${sources}/res_en.rc Res_EN.dll DEPENDS ${NORVIK50_FIXTURE_INPUTS})
  norvik50_resource_dll(x86_64 ${sources}/multi.rc multi64.dll DEPENDS ${NORVIK50_FIXTURE_INPUTS})
  norvik50_resource_dll(i686 ${sources}/multi.rc multi32.dll DEPENDS ${NORVIK50_FIXTURE_INPUTS})
  # A form's captions in both languages, for tklLoadFormCaptions.
  norvik50_resource_dll(x86_64 ${sources}/captions_de.rc Captions_DE.dll
    DEPENDS ${NORVIK50_FIXTURE_INPUTS})
  norvik50_resource_dll(i686 ${sources}/captions_en.rc Captions_EN.dll
    DEPENDS ${NORVIK50_FIXTURE_INPUTS})
endif()
