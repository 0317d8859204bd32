// The pair of streams behind a tap: one that applications are moved to, one that plays in their place.
// All calls with the loop locked, or on the loop.
#pragma once

#include <spa/utils/hook.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "TapPath.h"
#include "TapRealtime.h"
#include "runtime/Logger.h"

struct pw_core;
struct spa_io_position;
struct spa_pod;

namespace quillmere::pipewire {

class TapStreams final : public TapPath {
 public:
  /// `name` is unique; `output` is the serial of the node to play on, for good: when that goes, the streams have
  /// failed. Absent: wherever the session manager links them. `stateChanged` is told on the loop when isConnected() or
  /// hasFailed() may have changed.
  TapStreams(pw_core* core, const std::string& name, const std::optional<std::string>& output, Logger log,
             std::function<void()> stateChanged);
  ~TapStreams() override;
  TapStreams(const TapStreams&) = delete;
  TapStreams& operator=(const TapStreams&) = delete;

  [[nodiscard]] bool isConnected() const override;
  [[nodiscard]] bool hasFailed() const override { return failed_; }
  [[nodiscard]] std::uint32_t captureNode() const override;
  [[nodiscard]] std::uint32_t playbackNode() const override;
  void startPlain(const IOBlock* block) override { realtime_.startPlain(block); }
  void startFrom(const IOBlock* block, float gain) override { realtime_.startFrom(block, gain); }
  void startFromRelease(const IOBlock* block) override { realtime_.startFromRelease(block); }
  void stop(float appliedGain) override { realtime_.stop(appliedGain); }
  void hold() override { realtime_.hold(); }
  [[nodiscard]] std::uint64_t quietMoment() const override;
  void wakeUp() override { setAlwaysProcess(true); }
  void calmDown() override { setAlwaysProcess(false); }
  [[nodiscard]] std::uint64_t cycles() const override { return realtime_.cycles(); }
  [[nodiscard]] bool isAtUnity() const override { return realtime_.isAtUnity(); }
  [[nodiscard]] float releaseGain() const override { return realtime_.releaseGain(); }

 private:
  struct Side {
    TapStreams* owner = nullptr;
    pw_stream* stream = nullptr;
    spa_hook listener{};
    bool ready = false;
    bool isStreaming = false;
  };
  void open(Side& side, pw_core* core, bool isCapture, const std::optional<std::string>& output);
  void setAlwaysProcess(bool isOn);
  static void onIOChanged(void* data, std::uint32_t id, void* area, std::uint32_t size);
  void onStateChanged(Side& side, int state, const char* error);
  void onParamChanged(Side& side, std::uint32_t id, const spa_pod* param);

  std::string name_;
  Logger log_;
  std::function<void()> stateChanged_;
  bool failed_ = false;
  TapRealtime realtime_;
  /// Where the graph tells the time of its cycles; null before the first and after the last.
  const spa_io_position* position_ = nullptr;
  Side playback_;
  Side capture_;
};

}  // namespace quillmere::pipewire
