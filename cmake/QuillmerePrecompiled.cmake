# Headers that nearly every source of a target includes, compiled once for all of them: most of a build from nothing was
# reading these. A source still names what it uses; with the option off, as clang-tidy and the address sanitizer have it,
# nothing else is there.
option(QUILLMERE_PRECOMPILE "Compile the headers that nearly every source includes once, not once a source" ON)

set(QUILLMERE_HEADERS_standard <algorithm> <array> <chrono> <cmath> <cstdint> <functional> <map> <memory> <mutex>
  <optional> <set> <string> <string_view> <utility> <vector>)
set(QUILLMERE_HEADERS_json <nlohmann/json.hpp>)
set(QUILLMERE_HEADERS_system <gio/gio.h> <pipewire/pipewire.h>)
set(QUILLMERE_HEADERS_test <gmock/gmock.h> <gtest/gtest.h>)
set(QUILLMERE_HEADERS_qt <QtQml/qqmlprivate.h> <QtQml/qqmlregistration.h> <QtQml/qjsprimitivevalue.h> <QtCore/qrandom.h>
  <QAbstractListModel> <QColor> <QCoreApplication> <QGuiApplication> <QObject> <QPainter> <QPointer> <QQuickItem>
  <QQuickWindow> <QString> <QStringList> <QUrl> <QVariant>)

# quillmere_precompile(<target> <kinds>... [WITH <name>])
# Targets with the same kinds and the same name share one; what they are compiled with must be the same then, and whatever
# is defined for the first of them must be for all. What few sources of a target include is left to these: a big header
# costs each source half a second, precompiled or not, for the templates that it leaves to the end.
function(quillmere_precompile target)
  cmake_parse_arguments(ARG "" "WITH" "" ${ARGN})
  # Whoever shares these headers must agree on the toolkit's keywords; nobody here writes them.
  if(qt IN_LIST ARG_UNPARSED_ARGUMENTS)
    target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS)
  endif()
  if(NOT QUILLMERE_PRECOMPILE OR QUILLMERE_COMPILE_ONLY)
    return()
  endif()
  # Without it a compiler cache can't see into them, and passes such sources by.
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
  # Out of a precompiled header GCC no longer keeps to itself what it believes of the library's own strings, once it has
  # inlined them. Builds without one still look for these.
  target_compile_options(${target} PRIVATE
    $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds$<SEMICOLON>-Wno-stringop-overflow$<SEMICOLON>-Wno-restrict>)
  if(ARG_WITH)
    string(MAKE_C_IDENTIFIER "QUILLMERE_PRECOMPILED_${ARG_WITH}_${ARG_UNPARSED_ARGUMENTS}" key)
    get_property(owner GLOBAL PROPERTY ${key})
    if(owner)
      target_precompile_headers(${target} REUSE_FROM ${owner})
      return()
    endif()
    set_property(GLOBAL PROPERTY ${key} ${target})
  endif()
  foreach(kind IN LISTS ARG_UNPARSED_ARGUMENTS)
    target_precompile_headers(${target} PRIVATE ${QUILLMERE_HEADERS_${kind}})
  endforeach()
endfunction()

# Compiles a target's sources six at a time, as tests' are: half of what one costs is the templates of the framework and of
# the library, and those are made once for all of them then. More at a time would save little, and cost whoever changes one.
function(quillmere_join_sources target)
  if(NOT QUILLMERE_PRECOMPILE OR QUILLMERE_COMPILE_ONLY)
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE BATCH UNITY_BUILD_BATCH_SIZE 6)
  # Of types without linkage in headers: to the compiler, sources that are joined are headers.
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endfunction()
