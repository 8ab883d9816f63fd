# The README's examples are the files the tests run: each file's text must
# stand in the README as it is.
#   cmake -DREADME=... -DEXAMPLES="a;b" -P readme_examples.cmake
file(READ ${README} readme)
foreach(example IN LISTS EXAMPLES)
  file(READ ${example} text)
  string(FIND "${readme}" "${text}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "README.md does not show ${example} as it is")
  endif()
endforeach()
