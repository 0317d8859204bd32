# From the distribution's sources: the library itself is there for this machine's own processor only.
set(sources /usr/src/googletest)
if(NOT EXISTS "${sources}/CMakeLists.txt")
  message(FATAL_ERROR "${sources} isn't there: it is the package googletest")
endif()
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
# Its place is in no folder of ours.
add_subdirectory("${sources}" "${CMAKE_BINARY_DIR}/libraries/googletest" EXCLUDE_FROM_ALL SYSTEM)
foreach(each gtest gtest_main gmock gmock_main)
  if(NOT TARGET GTest::${each})
    add_library(GTest::${each} ALIAS ${each})
  endif()
endforeach()
set(GTest_FOUND TRUE)
