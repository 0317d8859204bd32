include("${CMAKE_CURRENT_LIST_DIR}/OneLibrary.cmake")
quillmere_headers_of(GTest::gmock gtest gmock)
add_library(GTest::gtest_main INTERFACE IMPORTED GLOBAL)
set(GTest_FOUND TRUE)
