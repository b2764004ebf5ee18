# Debian packages these libraries for its own machines, but they are headers and nothing else, good for Windows too. A
# cross-compiler must not see the rest of /usr/include, so each gets a link in a folder of its own.
function(debian_headers target) # the files and folders of /usr/include that make up the library
  set(folder ${CMAKE_BINARY_DIR}/headers/${target})
  string(REPLACE "::" "-" folder ${folder})
  file(MAKE_DIRECTORY ${folder})
  foreach(part ${ARGN})
    file(CREATE_LINK /usr/include/${part} ${folder}/${part} SYMBOLIC)
  endforeach()
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${folder})
endfunction()
