// The node of a detour and its links. [loop]
#pragma once

#include <spa/utils/hook.h>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "AudioThread.h"
#include "Detour.h"
#include "DetourMix.h"
#include "Loop.h"
#include "OwnLink.h"
#include "runtime/Logger.h"

struct pw_core;
struct pw_filter;
struct spa_io_position;

namespace quillmere::pipewire {

/// A node without a class: neither mixers nor the session manager see more in it than in any other JACK client.
class DetourNode final : public Detour {
 public:
  /// `name` is unique; `channels` are the device's, in its order. `changed` is told on the loop when something that can
  /// be asked here may have changed.
  DetourNode(Loop& loop, pw_core* core, const std::string& name, const std::vector<std::string>& channels, Logger log,
             std::function<void()> changed);
  ~DetourNode() override;
  DetourNode(const DetourNode&) = delete;
  DetourNode& operator=(const DetourNode&) = delete;

  [[nodiscard]] std::optional<GlobalID> node() const override;
  [[nodiscard]] bool hasFailed() const override { return hasFailed_; }
  void link(const std::vector<DetourLink>& wanted) override;
  [[nodiscard]] bool isLinked() const override;
  void setOpen(bool isOpen) override;
  [[nodiscard]] bool isClosed() const override;

 private:
  struct Callbacks;
  /// Serials of a link's two ports: ids are given again at once.
  using Ends = std::pair<std::string, std::string>;
  struct Made {
    DetourLink::Part part = DetourLink::Part::source;
    bool isWanted = true;
    std::unique_ptr<OwnLink> link;
  };
  [[nodiscard]] std::unique_ptr<OwnLink> make(const DetourLink& link);
  /// Whether a link that somebody has taken away may be made once more.
  [[nodiscard]] bool mayTryAgain();
  QUILLMERE_REALTIME void process(const spa_io_position& position);

  pw_core* core_;
  Logger log_;
  std::function<void()> changed_;
  DetourMix mix_;
  const AudioThread::Use thread_;
  pw_filter* filter_ = nullptr;
  spa_hook listener_{};
  bool hasFailed_ = false;
  std::map<Ends, Made> links_;
  int trials_ = 0;
  std::chrono::steady_clock::time_point lastTrial_;
  LoopTimer closing_;
  std::chrono::steady_clock::time_point closingSince_;
  bool isOpen_ = false;

  // Ports, made once: `data` as the library gives it.
  std::vector<void*> inputs_;
  std::vector<void*> inverses_;
  void* left_ = nullptr;
  void* right_ = nullptr;
  // The buffers of a cycle, one for each of these ports.
  std::vector<const float*> inputBuffers_;
  std::vector<float*> inverseBuffers_;
};

}  // namespace quillmere::pipewire
