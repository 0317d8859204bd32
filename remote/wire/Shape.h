// Whether bytes have the shape of a message, before anybody takes them apart. Pure: [any].
#pragma once

#include <cstddef>
#include <string_view>

namespace quillmere::wire {

/// How deep lists and objects may lie in one another. Ours stay far below it.
inline constexpr std::size_t deepest = 64;

/// Whether the bytes are one whole CBOR value as encodeMessage() writes them: no deeper than `deepest`, without tags,
/// with each length told beforehand and no greater than what there is. A reader calls itself for each level, and for
/// each piece of a text that comes in pieces: bytes that were made for it would take all of its stack.
[[nodiscard]] bool hasShapeOfMessage(std::string_view bytes);

}  // namespace quillmere::wire
