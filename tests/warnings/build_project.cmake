# Builds project/ with COMPILER, made to tell VERSION, and fails unless its warning is what is EXPECTED: "error" stops
# both programs, "warning" is shown and stops none.
string(REPLACE "." ";" parts "${VERSION}")
list(GET parts 0 major)
list(GET parts 1 minor)
if(COMPILER_ID STREQUAL "GNU")
  set(macros __GNUC__ __GNUC_MINOR__)
else()
  set(macros __clang_major__ __clang_minor__)
endif()
list(GET macros 0 major_macro)
list(GET macros 1 minor_macro)

file(REMOVE_RECURSE "${FOLDER}")
file(WRITE "${FOLDER}/compiler" "#!/bin/sh\nexec '${COMPILER}' -Wno-builtin-macro-redefined -U${major_macro} -U${minor_macro} \
-D${major_macro}=${major} -D${minor_macro}=${minor} \"$@\"\n")
file(CHMOD "${FOLDER}/compiler" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
execute_process(
  COMMAND "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/project" -B "${FOLDER}/build" -G Ninja
    "-DCMAKE_CXX_COMPILER=${FOLDER}/compiler" "-DQUILLMERE_WERROR=${WERROR}" "-DSOURCE_ROOT=${SOURCE_ROOT}"
  OUTPUT_VARIABLE text ERROR_VARIABLE text RESULT_VARIABLE code)
if(NOT code EQUAL 0 OR NOT text MATCHES "The compiler tells ${COMPILER_ID} ${major}\\.${minor}")
  message(FATAL_ERROR "the project could not be configured as version ${VERSION}:\n${text}")
endif()

foreach(target links_the_flags warns_by_source)
  execute_process(COMMAND "${CMAKE_COMMAND}" --build "${FOLDER}/build" --target ${target}
    OUTPUT_VARIABLE text ERROR_VARIABLE text RESULT_VARIABLE code)
  if(NOT text MATCHES "unused_for_a_warning")
    message(FATAL_ERROR "no warning was shown for ${target}:\n${text}")
  endif()
  if(EXPECTED STREQUAL "error" AND code EQUAL 0)
    message(FATAL_ERROR "the warning did not stop ${target} with version ${VERSION}:\n${text}")
  elseif(EXPECTED STREQUAL "warning" AND NOT code EQUAL 0)
    message(FATAL_ERROR "the warning stopped ${target} with version ${VERSION}:\n${text}")
  endif()
endforeach()
message(STATUS "a warning was taken for: ${EXPECTED}")
