// Native messages: bytes as a browser's pipe brings them, in whatever pieces.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/linux/tabs/Frames.h"

namespace {

using quillmere::tabs::FrameReader;

struct Read {
  std::vector<std::string> messages;
  bool isImpossible = false;
  bool hasPart = false;

  friend bool operator==(const Read&, const Read&) = default;
};

/// Reads the bytes in pieces of this size.
Read readInPieces(std::string_view bytes, std::size_t piece) {
  Read read;
  FrameReader reader;
  while (!bytes.empty()) {
    const auto count = std::min(piece, bytes.size());
    reader.append(bytes.substr(0, count));
    bytes.remove_prefix(count);
    while (auto message = reader.next()) read.messages.push_back(std::move(*message));
  }
  read.isImpossible = reader.impossibleLength().has_value();
  read.hasPart = reader.hasPart();
  return read;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillmere::tabs;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto whole = readInPieces(bytes, size + 1);
  // How the bytes come makes no difference.
  if (readInPieces(bytes, 1) != whole || readInPieces(bytes, 3) != whole) std::abort();
  if (whole.isImpossible && whole.hasPart) std::abort();
  // What was read is what was written, but for what is left over.
  std::string again;
  for (const auto& message : whole.messages) again += framed(message);
  if (!bytes.starts_with(again) || (!whole.isImpossible && whole.hasPart != (again.size() < size))) std::abort();
  return 0;
}
