// Where changes of the session manager's metadata are sent.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quillmere::pipewire {

/// [loop] throughout.
class MetadataWriter {
 public:
  virtual ~MetadataWriter() = default;
  /// Absent value: deletes the key. Without a session manager it does nothing.
  virtual void write(std::uint32_t subject, const std::string& key, const std::string& type,
                     const std::optional<std::string>& value) = 0;
};

}  // namespace quillmere::pipewire
