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
  /// `isEager`: runs at once and not only when something is linked to it. `name` is unique; `target` is the node.name
  /// of the output, absent to follow the default. `stateChanged` is told on the loop when isConnected() may have
  /// changed.
  TapStreams(pw_core* core, const std::string& name, const std::optional<std::string>& target, bool isEager, Logger log,
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
  void calmDown() override;
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
  void open(Side& side, pw_core* core, bool isCapture, const std::optional<std::string>& target, bool isEager);
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
