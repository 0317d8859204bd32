// Lengths and what follows them.
#include "tabs/Frames.h"

#include <cstdint>

namespace quillmere::tabs {

namespace {

using Length = std::uint32_t;

}  // namespace

std::string framed(std::string_view message) {
  const auto length = static_cast<Length>(message.size());
  std::string bytes(reinterpret_cast<const char*>(&length), sizeof length);
  return bytes += message;
}

void FrameReader::append(std::string_view bytes) {
  if (impossible_) return;
  // What has been handed out goes before more is kept.
  bytes_.erase(0, at_);
  at_ = 0;
  bytes_ += bytes;
}

std::optional<std::string> FrameReader::next() {
  if (impossible_ || bytes_.size() - at_ < sizeof(Length)) return std::nullopt;
  Length length = 0;
  bytes_.copy(reinterpret_cast<char*>(&length), sizeof length, at_);
  if (length > largestFrame) {
    impossible_ = length;
    bytes_.clear();
    at_ = 0;
    return std::nullopt;
  }
  if (bytes_.size() - at_ - sizeof length < length) return std::nullopt;
  auto message = bytes_.substr(at_ + sizeof length, length);
  at_ += sizeof length + length;
  return message;
}

}  // namespace quillmere::tabs
