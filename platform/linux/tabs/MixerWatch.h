// Notices that a mixer may have come, without looking again and again.
#pragma once

#include <string>

namespace quillmere::tabs {

/// Tells when something appears where the mixer's socket is to be. One thread. [any]
class MixerWatch {
 public:
  /// The user's runtime folder.
  explicit MixerWatch(std::string runtimeFolder);
  ~MixerWatch();
  MixerWatch(const MixerWatch&) = delete;
  MixerWatch& operator=(const MixerWatch&) = delete;

  /// Readable when something has appeared since begin(); never before it or after end().
  [[nodiscard]] int descriptor() const { return descriptor_; }
  /// Begins, or begins anew. What is there already it doesn't tell: look afterwards.
  void begin();
  void end();
  /// Takes what has come.
  void drain() const;

 private:
  [[nodiscard]] bool watch(const std::string& folder);

  const std::string runtimeFolder_;
  int descriptor_;
  int watched_ = -1;
};

}  // namespace quillmere::tabs
