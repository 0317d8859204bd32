include("${CMAKE_CURRENT_LIST_DIR}/OneLibrary.cmake")
quillmere_headers_of(nlohmann_json::nlohmann_json nlohmann)
set(nlohmann_json_FOUND TRUE)
