// Records the left channel of what a device plays, at its monitor.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace quillmere::test {

class MonitorRecorder {
 public:
  /// By hand it is linked to a device that the session manager gives to nobody else.
  enum class Linked { bySessionManager, byHand };
  /// Begins at once; `device` is a node.name. `latency` is frames/rate.
  explicit MonitorRecorder(const std::string& device, const std::string& latency = "1024/48000",
                           Linked linked = Linked::bySessionManager);
  ~MonitorRecorder();
  MonitorRecorder(const MonitorRecorder&) = delete;
  MonitorRecorder& operator=(const MonitorRecorder&) = delete;

  [[nodiscard]] std::size_t size() const;
  /// A copy of the samples from `first` on.
  [[nodiscard]] std::vector<float> samples(std::size_t first = 0) const;
  /// Largest magnitude of the next `frames` samples; waits for them.
  [[nodiscard]] float nextPeak(std::size_t frames = 2048) const;

 private:
  struct Recording;
  std::unique_ptr<Recording> recording_;
};

}  // namespace quillmere::test
