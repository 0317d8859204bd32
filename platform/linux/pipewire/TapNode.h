// The node behind a tap: applications are moved to its inputs, its outputs are linked to the device they play on.
// [loop]
#pragma once

#include <spa/utils/hook.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "AudioThread.h"
#include "TapLinks.h"
#include "TapNodeInterface.h"
#include "TapPath.h"
#include "TapRealtime.h"
#include "runtime/Logger.h"

struct pw_context;
struct pw_core;
struct pw_loop;
struct pw_properties;
struct pw_proxy;

namespace quillmere::pipewire {

/// Hands buffers of single channels on as the graph has them: the library's converters, which would stand on both sides
/// of a stream, have nothing to do here.
class TapNode final : public TapPath {
 public:
  /// `name` is unique; `output` is the serial of the device to play on, for good: when that goes, the node has failed.
  /// Absent: it plays nowhere. `changed` is told on the loop when isConnected() or hasFailed() may have changed.
  TapNode(pw_core* core, const GraphModel& model, const std::string& name, const std::optional<std::string>& output,
          Logger log, std::function<void()> changed);
  ~TapNode() override;
  TapNode(const TapNode&) = delete;
  TapNode& operator=(const TapNode&) = delete;

  [[nodiscard]] bool isConnected() const override;
  [[nodiscard]] bool hasFailed() const override { return failed_ || (links_ && links_->haveFailed()); }
  [[nodiscard]] std::uint32_t node() const override { return id_; }
  void graphChanged() override;
  void startPlain(const IOBlock* block) override { realtime_.startPlain(block); }
  void startFrom(const IOBlock* block, float gain) override { realtime_.startFrom(block, gain); }
  void startFromRelease(const IOBlock* block) override { realtime_.startFromRelease(block); }
  void stop(float appliedGain) override { realtime_.stop(appliedGain); }
  void hold() override { realtime_.hold(); }
  [[nodiscard]] std::uint64_t quietMoment() const override;
  void wakeUp() override { setAlwaysProcess(true); }
  void calmDown() override { setAlwaysProcess(false); }
  [[nodiscard]] double rate() const override { return interface_->rate(); }
  [[nodiscard]] std::uint64_t cycles() const override { return realtime_.cycles(); }
  [[nodiscard]] bool isAtUnity() const override { return realtime_.isAtUnity(); }
  [[nodiscard]] float releaseGain() const override { return realtime_.releaseGain(); }

 private:
  void setAlwaysProcess(bool isOn);
  /// The loop that the library will run the node on, named in its properties.
  void acquireAudioLoop(pw_properties* properties);
  void releaseAudioLoop();

  pw_context* context_;
  const AudioThread::Use thread_;
  std::string name_;
  /// Null: the context's main loop.
  pw_loop* audioLoop_ = nullptr;
  Logger log_;
  std::function<void()> changed_;
  pw_proxy* proxy_ = nullptr;
  spa_hook proxyListener_{};
  std::uint32_t id_;
  bool failed_ = false;
  TapRealtime realtime_;
  std::optional<TapLinks> links_;
  std::optional<TapNodeInterface> interface_;
};

}  // namespace quillmere::pipewire
