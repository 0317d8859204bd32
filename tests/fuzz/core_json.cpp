// The stored forms of the records: any text is read or refused, and what was read is written and read again unchanged.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/Json.h"

namespace {

template <typename Decode>
void check(std::string_view text, Decode decode) {
  std::string problem;
  const auto value = decode(text, &problem);
  if (!value) {
    // A refusal says why, in one line.
    if (problem.empty() || problem.find('\n') != std::string::npos) std::abort();
    return;
  }
  const auto written = quillmere::json::encode(*value);
  if (!written) return;  // A float that overflowed to infinity has no stored form.
  const auto again = decode(*written, &problem);
  if (!again || !(*again == *value)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  check(text, quillmere::json::decodeAudioApps);
  check(text, quillmere::json::decodeProfiles);
  check(text, quillmere::json::decodeDuckRule);
  check(text, quillmere::json::decodeTexts);
  return 0;
}
