// A log that nobody reads; but every line says something.
#pragma once

#include "runtime/Logger.h"
#include "support/Require.h"

namespace quillmere::fuzz {

class Silence final : public LogSink {
 public:
  void write(LogLevel, std::string_view, std::string_view, std::string_view message) override {
    QUILLMERE_REQUIRE(!message.empty());
    ++lines;
  }
  int lines = 0;
};

}  // namespace quillmere::fuzz
