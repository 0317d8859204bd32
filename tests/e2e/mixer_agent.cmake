# The program without its face; also what the benchmarks drive.
add_executable(mixer_agent "${CMAKE_CURRENT_LIST_DIR}/mixer_agent.cpp")
target_link_libraries(mixer_agent PRIVATE QuillmereFlags QuillmereState QuillmereEngine QuillmereIntegrations
  QuillmereLinux QuillmerePorts QuillmereRuntime QuillmereCore nlohmann_json::nlohmann_json Threads::Threads)
