// What other programs write and this one reads: desktop entries, command lines, control groups, metadata, names.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/linux/applications/CommandLine.h"
#include "platform/linux/applications/DesktopEntry.h"
#include "platform/linux/applications/UnitName.h"
#include "platform/linux/pipewire/MetadataValue.h"
#include "platform/linux/text/CleanText.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillmere;
  const std::string text(reinterpret_cast<const char*>(data), size);

  std::string problem;
  const auto entry = applications::parseDesktopEntry("fuzzed", text, problem);
  if (!entry && problem.empty()) std::abort();

  const auto words = applications::wordsOfExec(text);
  static_cast<void>(applications::programOf(words));
  static_cast<void>(applications::flatpakIDOf(words));
  static_cast<void>(applications::identityOfUnit(text));
  static_cast<void>(applications::identityOfCgroup(text));

  const std::string clean = cleanText(text, 64);
  if (clean.size() > 64 || cleanText(clean, 64) != clean) std::abort();

  static_cast<void>(pipewire::nameFromMetadata(text));
  const auto back = pipewire::nameFromMetadata(pipewire::metadataFromName(text));
  if (!text.empty() && !back) std::abort();
  return 0;
}
