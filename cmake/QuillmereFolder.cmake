# One target a folder. Headers at the root of a folder are public; those in its subfolders are private.
# A public header is reached as "<folder>/<Header>.h" only by targets that link the folder's target:
# each folder exports a forwarding tree of its own instead of the source root.

include(QuillmereWarnings)
include(QuillmerePrecompiled)
quillmere_warning_options(QUILLMERE_WARNINGS "${QUILLMERE_WERROR}" "${CMAKE_CXX_COMPILER_ID}" "${CMAKE_CXX_COMPILER_VERSION}")

add_library(QuillmereFlags INTERFACE)
target_compile_features(QuillmereFlags INTERFACE cxx_std_20)
# Contraction would change the last bit of the gain formula from one machine to the next.
target_compile_options(QuillmereFlags INTERFACE ${QUILLMERE_WARNINGS} -ffp-contract=off)
# Where sources are joined, what one has at its top stands above the others, which have never heard of it. Builds that don't
# join still look for these.
target_compile_options(QuillmereFlags INTERFACE $<$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>:-Wno-shadow>)
target_compile_definitions(QuillmereFlags INTERFACE
  $<$<BOOL:${QUILLMERE_THREAD_CHECKS}>:QUILLMERE_THREAD_CHECKS=1>)

# Makes <root>/<folder>/ with a link to each header, and each list that headers include, at the root of each of the
# folders, and nothing else below <root>.
function(quillmere_link_headers root)
  file(REMOVE_RECURSE "${root}")
  foreach(folder IN LISTS ARGN)
    file(GLOB headers CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/${folder}/*.h" "${CMAKE_SOURCE_DIR}/${folder}/*.def")
    file(MAKE_DIRECTORY "${root}/${folder}")
    foreach(header IN LISTS headers)
      get_filename_component(name "${header}" NAME)
      file(CREATE_LINK "${header}" "${root}/${folder}/${name}" SYMBOLIC)
    endforeach()
  endforeach()
endfunction()

# Makes <build>/include/<target>/<folder>/ with a link to each public header.
function(quillmere_forward_headers target folder)
  set(root "${CMAKE_BINARY_DIR}/include/${target}")
  quillmere_link_headers("${root}" ${folder})
  set(QUILLMERE_FORWARD_ROOT "${root}" PARENT_SCOPE)
endfunction()

# Lets a target that exists include the headers of these folders, its own, as "<folder>/<Header>.h".
function(quillmere_own_headers target)
  set(root "${CMAKE_BINARY_DIR}/include/${target}.own")
  quillmere_link_headers("${root}" ${ARGN})
  target_include_directories(${target} PRIVATE "${root}")
endfunction()

# quillmere_folder(<target> <folder> [USES <targets>...] [LIBRARIES <external>...] [EXCLUDE <regex>...]
#                  [PRECOMPILE <kinds>...])
# Compiles every .cpp and .mm below the folder (EXCLUDE drops some) into a static library.
# USES and LIBRARIES are linked privately: whoever needs a lower floor's headers names it itself.
function(quillmere_folder target folder)
  cmake_parse_arguments(ARG "" "" "USES;LIBRARIES;EXCLUDE;PRECOMPILE" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/${folder}/*.cpp" "${CMAKE_SOURCE_DIR}/${folder}/*.mm")
  foreach(pattern IN LISTS ARG_EXCLUDE)
    list(FILTER sources EXCLUDE REGEX "${pattern}")
  endforeach()
  quillmere_forward_headers(${target} ${folder})
  if(sources)
    add_library(${target} STATIC ${sources})
    target_include_directories(${target} PUBLIC "${QUILLMERE_FORWARD_ROOT}"
      PRIVATE "${CMAKE_SOURCE_DIR}/${folder}")
    target_link_libraries(${target} PRIVATE QuillmereFlags ${ARG_USES} ${ARG_LIBRARIES})
    if(ARG_PRECOMPILE)
      quillmere_precompile(${target} standard ${ARG_PRECOMPILE})
    else()
      quillmere_precompile(${target} standard WITH folder)
    endif()
  else()
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE "${QUILLMERE_FORWARD_ROOT}")
  endif()
endfunction()

# quillmere_tests(<name> <folder below tests> [USES ...] [LIBRARIES ...] [WHITEBOX] [LABELS ...] [EXCLUDE <regex>...]
#                 [PRECOMPILE <kinds>... [WITH <name>]])
# One GoogleTest program a folder; its objects alone where nothing can be linked.
# WHITEBOX lets it include private headers as "<folder>/<sub>/<Header>.h".
function(quillmere_tests name folder)
  cmake_parse_arguments(ARG "WHITEBOX" "" "USES;LIBRARIES;LABELS;EXCLUDE;PRECOMPILE" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp" "${CMAKE_SOURCE_DIR}/tests/${folder}/*.mm")
  foreach(pattern IN LISTS ARG_EXCLUDE)
    list(FILTER sources EXCLUDE REGEX "${pattern}")
  endforeach()
  if(NOT sources)
    return()
  endif()
  if(QUILLMERE_COMPILE_ONLY)
    add_library(${name} OBJECT ${sources})
  else()
    add_executable(${name} ${sources})
  endif()
  target_link_libraries(${name} PRIVATE QuillmereFlags ${ARG_USES} ${ARG_LIBRARIES}
    GTest::gmock GTest::gtest_main Threads::Threads)
  quillmere_precompile(${name} standard test ${ARG_PRECOMPILE})
  quillmere_join_sources(${name})
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests/${folder}")
  if(ARG_WHITEBOX)
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
  endif()
  if(NOT ARG_LABELS)
    set(ARG_LABELS unit)
  endif()
  if(NOT QUILLMERE_COMPILE_ONLY)
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES LABELS "${ARG_LABELS}" TIMEOUT 120)
  endif()
endfunction()
