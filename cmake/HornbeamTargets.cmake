# What gets built lies in `stage/` as it will lie below the install prefix, so that the programs find their
# bundles in the build tree as they do when installed.
set(HORNBEAM_STAGE "${CMAKE_BINARY_DIR}/stage")
set(HORNBEAM_HOME lib/hornbeam)
set(HORNBEAM_HOST_CONTENTS ${HORNBEAM_HOME}/HornbeamHost.app/Contents)
set(HORNBEAM_AGENT_FOLDER ${HORNBEAM_HOME}/Kiln)

# The run path of a file installed in `folder` (relative to the prefix), so that it finds the shared libraries
# in lib/hornbeam without any setting of the user's.
function(hornbeam_install_rpath target folder)
  file(RELATIVE_PATH to_home "/${folder}" "/${HORNBEAM_HOME}")
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${to_home}")
endfunction()

# hornbeam_sources(<variable> <folder>...): the sources of the folders and of those below them.
function(hornbeam_sources variable)
  set(found)
  foreach(folder IN LISTS ARGN)
    file(GLOB_RECURSE here CONFIGURE_DEPENDS "${folder}/*.cpp")
    list(APPEND found ${here})
  endforeach()
  set(${variable} ${found} PARENT_SCOPE)
endfunction()

# A program, in `folder` below the prefix.
function(hornbeam_program target folder)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${HORNBEAM_STAGE}/${folder}")
  hornbeam_install_rpath(${target} ${folder})
  install(TARGETS ${target} RUNTIME DESTINATION ${folder})
endfunction()

# A loadable bundle: a folder with Info.plist, one shared object of the bundle's name and, when the source
# folder has one, Resources/.
#   hornbeam_bundle(<target> NAME <name with extension> FOLDER <below the prefix> INFO <Info.plist.in>
#                   EXECUTABLE_FOLDER <below the bundle, may be "."> CONTENTS <below the bundle, may be ".">)
function(hornbeam_bundle target)
  cmake_parse_arguments(BUNDLE "" "NAME;FOLDER;INFO;EXECUTABLE_FOLDER;CONTENTS;RESOURCES" "" ${ARGN})
  set(bundle ${BUNDLE_FOLDER}/${BUNDLE_NAME})
  get_filename_component(executable ${BUNDLE_NAME} NAME_WE)
  set(contents ${bundle}/${BUNDLE_CONTENTS})
  set(binary ${bundle}/${BUNDLE_EXECUTABLE_FOLDER})
  cmake_path(NORMAL_PATH contents)
  cmake_path(NORMAL_PATH binary)
  set_target_properties(${target} PROPERTIES
    PREFIX "" SUFFIX "" OUTPUT_NAME ${executable}
    LIBRARY_OUTPUT_DIRECTORY "${HORNBEAM_STAGE}/${binary}")
  configure_file(${BUNDLE_INFO} "${HORNBEAM_STAGE}/${contents}/Info.plist" @ONLY)
  hornbeam_install_rpath(${target} ${binary})
  install(TARGETS ${target} LIBRARY DESTINATION ${binary})
  install(FILES "${HORNBEAM_STAGE}/${contents}/Info.plist" DESTINATION ${contents})
  if(BUNDLE_RESOURCES)
    add_custom_command(TARGET ${target} POST_BUILD COMMAND ${CMAKE_COMMAND} -E copy_directory
      "${BUNDLE_RESOURCES}" "${HORNBEAM_STAGE}/${contents}/Resources")
    install(DIRECTORY "${BUNDLE_RESOURCES}/" DESTINATION ${contents}/Resources)
  endif()
endfunction()

# hornbeam_tests(<name> <folder of tests> <library>...): one test program for a folder.
function(hornbeam_tests name folder)
  hornbeam_sources(sources "${folder}")
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE hornbeam_test_support ${ARGN})
  target_include_directories(${name} PRIVATE "${folder}")
  target_compile_definitions(${name} PRIVATE
    HORNBEAM_STAGE="${HORNBEAM_STAGE}" HORNBEAM_FIXTURES="${CMAKE_SOURCE_DIR}/tests/fixtures")
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()
