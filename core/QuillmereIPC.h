// The name under which a driver service would be reached, and the shape it would have.
// Declarations of the library's surface only: the engine lives in this process.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

namespace quillmere {

struct QuillmereIPC {
  static constexpr const char* machServiceName = "app.quillmere.driver";
};

class QuillmereDriverXPC {
 public:
  using Reply = std::function<void(bool)>;
  using LevelsReply = std::function<void(std::map<std::string, float>)>;

  virtual ~QuillmereDriverXPC() = default;
  virtual void setGain(const std::string& bundleID, float gain, std::int64_t fadeMillis, Reply reply) = 0;
  virtual void setMute(const std::string& bundleID, bool muted, Reply reply) = 0;
  virtual void setRouting(const std::string& bundleID, const std::string& deviceUID, Reply reply) = 0;
  virtual void currentLevels(LevelsReply reply) = 0;
  virtual void reset(Reply reply) = 0;
};

}  // namespace quillmere
