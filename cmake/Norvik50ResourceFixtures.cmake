# Real Windows resource libraries for the tests, built from the .rc scripts
# in testdata/resources with the mingw-w64 binutils: windres compiles the
# script (the host's cpp stands in for the mingw preprocessor), ld links a
# resource-only DLL. Both bitnesses: x86-64 gives PE32+, i686 gives PE32.
#
# norvik50_resource_dll(arch rc output) adds ${NORVIK50_FIXTURE_DIR}/output
# to the target norvik50_resource_fixtures.
set(NORVIK50_FIXTURE_DIR ${CMAKE_BINARY_DIR}/fixtures/resources)
set(NORVIK50_FIXTURE_SOURCES ${PROJECT_SOURCE_DIR}/testdata/resources)
find_program(NORVIK50_WINDRES_x86_64 x86_64-w64-mingw32-windres REQUIRED)
find_program(NORVIK50_LD_x86_64 x86_64-w64-mingw32-ld REQUIRED)
find_program(NORVIK50_WINDRES_i686 i686-w64-mingw32-windres REQUIRED)
find_program(NORVIK50_LD_i686 i686-w64-mingw32-ld REQUIRED)
find_program(NORVIK50_CPP cpp REQUIRED)
file(GLOB NORVIK50_FIXTURE_INPUTS CONFIGURE_DEPENDS ${NORVIK50_FIXTURE_SOURCES}/*)
add_custom_target(norvik50_resource_fixtures)

function(norvik50_resource_dll arch rc output)
  set(object ${NORVIK50_FIXTURE_DIR}/${output}.o)
  set(dll ${NORVIK50_FIXTURE_DIR}/${output})
  add_custom_command(OUTPUT ${dll}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${NORVIK50_FIXTURE_DIR}
    COMMAND ${NORVIK50_WINDRES_${arch}} --preprocessor=${NORVIK50_CPP}
            --preprocessor-arg=-E --preprocessor-arg=-xc
            --preprocessor-arg=-DRC_INVOKED
            --include-dir=${NORVIK50_FIXTURE_SOURCES}
            -i ${NORVIK50_FIXTURE_SOURCES}/${rc} -o ${object}
    COMMAND ${NORVIK50_LD_${arch}} --dll -e 0 --no-insert-timestamp -o ${dll} ${object}
    DEPENDS ${NORVIK50_FIXTURE_INPUTS}
    COMMENT "Resource library ${output} (${arch})"
    VERBATIM)
  add_custom_target(norvik50_fixture_${output} DEPENDS ${dll})
  add_dependencies(norvik50_resource_fixtures norvik50_fixture_${output})
endfunction()

norvik50_resource_dll(x86_64 res_de.rc Res_DE.dll)
norvik50_resource_dll(i686 res_en.rc Res_EN.dll)
norvik50_resource_dll(x86_64 multi.rc multi64.dll)
norvik50_resource_dll(i686 multi.rc multi32.dll)
