// The manifests by which browsers start the program that tells their tabs, whoever wrote them.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "support/Require.h"
#include "tabs/HostManifest.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillmere::tabs;
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (const auto program = programInManifest(text)) {
    QUILLMERE_REQUIRE(program->starts_with('/') && program->find('\0') == std::string::npos);
    // What is read is what a manifest of ours for that program says.
    QUILLMERE_REQUIRE(programInManifest(manifestText(*program)) == program);
  }
  // Ours can be read, whatever the program is called, and says nothing of another.
  const auto own = manifestText("/" + text);
  const auto back = programInManifest(own);
  QUILLMERE_REQUIRE(back.has_value() == (text.find('\0') == std::string::npos));
  return 0;
}
