# One QML module a folder below views/: its C++ and its QML in one static library with a plugin.
# Programs link QuillmereViews and import the plugins with Q_IMPORT_QML_PLUGIN; modules lie below qrc:/qt/qml.

# Qt's generated sources follow Qt's rules, so in targets with QML the house's warnings go to its own files only.
function(quillmere_warn_on)
  set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_OPTIONS ${QUILLMERE_WARNINGS})
endfunction()

# What the QML compiler makes of each file is small beside the headers that it includes: a page's are one source.
function(quillmere_join_compiled_qml target)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "/qmlcache/.*_qml\\.cpp$")
  foreach(source IN LISTS sources)
    get_filename_component(page "${source}" DIRECTORY)
    get_filename_component(page "${page}" NAME)
    set_property(SOURCE "${source}" PROPERTY UNITY_GROUP "${page}")
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()

option(QUILLMERE_COMPILE_QML "Compile QML ahead of time; off, a change of a page is built in a moment" ON)

# quillmere_qml_module(<target> <folder below views> <URI> [USES ...] [LIBRARIES ...] [IMPORTS <URIs>...]
#                      [RESOURCES <globs below resources/>...] [PAGES <subfolders>...])
# PAGES are subfolders whose sources and QML belong to the same module.
function(quillmere_qml_module target folder uri)
  cmake_parse_arguments(ARG "" "" "USES;LIBRARIES;IMPORTS;RESOURCES;PAGES" ${ARGN})
  set(folders "views/${folder}")
  foreach(page IN LISTS ARG_PAGES)
    list(APPEND folders "views/${folder}/${page}")
  endforeach()
  list(TRANSFORM folders REPLACE "/\\./" "/")
  list(TRANSFORM folders REPLACE "/\\.$" "")
  list(TRANSFORM folders PREPEND "${CMAKE_SOURCE_DIR}/" OUTPUT_VARIABLE roots)
  set(sources)
  set(qml)
  foreach(each IN LISTS roots)
    file(GLOB found CONFIGURE_DEPENDS "${each}/*.cpp" "${each}/*.h")
    list(APPEND sources ${found})
    file(GLOB found CONFIGURE_DEPENDS "${each}/*.qml")
    list(APPEND qml ${found})
  endforeach()
  foreach(file IN LISTS qml)
    get_filename_component(name "${file}" NAME)
    set_source_files_properties("${file}" PROPERTIES QT_RESOURCE_ALIAS "${name}")
  endforeach()
  string(REPLACE "." "/" path "${uri}")
  list(GET folders 0 public_folder)
  quillmere_forward_headers(${target} ${public_folder})
  set(CMAKE_AUTOMOC ON)
  set(as_text)
  if(NOT QUILLMERE_COMPILE_QML)
    set(as_text NO_CACHEGEN)
  endif()
  qt_add_qml_module(${target}
    URI ${uri} VERSION 1.0 STATIC
    RESOURCE_PREFIX /qt/qml
    OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/qml/${path}"
    SOURCES ${sources}
    QML_FILES ${qml}
    DEPENDENCIES QtQuick
    ${as_text}
    IMPORTS ${ARG_IMPORTS}
    IMPORT_PATH "${CMAKE_BINARY_DIR}/qml")
  # The folders themselves, because Qt's generated sources name a header without its folder.
  target_include_directories(${target} PUBLIC "${QUILLMERE_FORWARD_ROOT}" PRIVATE ${roots})
  quillmere_own_headers(${target} ${folders})
  target_link_libraries(${target} PRIVATE ${ARG_USES} ${ARG_LIBRARIES} PUBLIC Qt6::Quick)
  quillmere_warn_on(${sources})
  quillmere_join_compiled_qml(${target})
  quillmere_precompile(${target} standard qt WITH qml)
  if(ARG_RESOURCES)
    list(TRANSFORM ARG_RESOURCES PREPEND "${CMAKE_SOURCE_DIR}/resources/")
    file(GLOB resources CONFIGURE_DEPENDS ${ARG_RESOURCES})
    qt_add_resources(${target} "${target}_drawings" PREFIX /quillmere
      BASE "${CMAKE_SOURCE_DIR}/resources" FILES ${resources})
  endif()
  target_link_libraries(QuillmereViews INTERFACE ${target} ${target}plugin)
endfunction()
