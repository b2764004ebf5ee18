# Gives a program file its icon, its version and the words by which Windows and its firewall name it, and tells
# Windows how it is to be run.
enable_language(RC)
set(describe_program_folder ${CMAKE_CURRENT_LIST_DIR})

function(describe_program target description)
  set(manifest ${describe_program_folder}/program.manifest)
  set(icon ${PROJECT_BINARY_DIR}/shell/pictures/corvenna.ico)
  set(resources ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${describe_program_folder}/program.rc.in ${resources} @ONLY)
  set_source_files_properties(${resources} PROPERTIES OBJECT_DEPENDS "${icon};${manifest}")
  target_sources(${target} PRIVATE ${resources})
  add_dependencies(${target} corvenna_icon)
endfunction()
