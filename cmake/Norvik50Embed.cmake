# Compiles files into a library as byte arrays, so the library carries its
# own resources without a file beside it and without a compiler extension.
#
# norvik50_embed_file(target file symbol) generates a source that defines
#   namespace norvik50::embedded {
#     extern const unsigned char symbol[];   // the file's bytes, unchanged
#     extern const std::size_t symbol_size;
#   }
# and adds it to `target`; it is regenerated whenever the file changes.
function(norvik50_embed_file target file symbol)
  set(out ${CMAKE_BINARY_DIR}/embedded/${symbol}.cpp)
  add_custom_command(OUTPUT ${out}
    COMMAND ${CMAKE_COMMAND} -DIN=${file} -DOUT=${out} -DSYMBOL=${symbol}
            -P ${PROJECT_SOURCE_DIR}/cmake/embed_file.cmake
    DEPENDS ${file} ${PROJECT_SOURCE_DIR}/cmake/embed_file.cmake
    COMMENT "Embedding ${file}"
    VERBATIM)
  target_sources(${target} PRIVATE ${out})
endfunction()
