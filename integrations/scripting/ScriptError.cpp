// The words come from another program.
#include "scripting/ScriptError.h"

#include <cstddef>

#include "core/OneLine.h"
#include "core/Shortened.h"

namespace quillmere {

namespace {
/// Bytes.
constexpr std::size_t longestMessage = 1024;
}  // namespace

std::string messageOf(const TabScriptResult::Error& error) {
  return oneLine(shortened(error.message.value_or(error.description), longestMessage));
}

}  // namespace quillmere
