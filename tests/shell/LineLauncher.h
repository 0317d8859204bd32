// Stands in for what starts the windows' process: each of its processes is only its line.
#pragma once

#include <cstddef>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "remote/SendMessage.h"
#include "shell/WindowsProcess.h"

namespace quillmere {

/// [main]
class LineLauncher final : public WindowsLauncher {
 public:
  struct Line {
    ChannelEvents events;
    /// By the mixer, which says nothing that can't be read.
    std::vector<nlohmann::json> sent;
    std::size_t waiting = 0;
    bool isOpen = true;
    bool isGivenUp = false;
  };

  std::unique_ptr<Channel> launch(ChannelEvents events) override {
    if (fails) return nullptr;
    lines.push_back(std::make_shared<Line>());
    lines.back()->events = std::move(events);
    if (!greeting.is_null()) lines.back()->events.received(encodeMessage(greeting));
    return std::make_unique<End>(lines.back());
  }

  /// In the order in which they were started.
  std::vector<std::shared_ptr<Line>> lines;
  bool fails = false;
  /// What each process says first; null for nothing.
  nlohmann::json greeting;

 private:
  class End final : public Channel {
   public:
    explicit End(std::shared_ptr<Line> line) : line_(std::move(line)) {}
    ~End() override { line_->isOpen = false; }
    End(const End&) = delete;
    End& operator=(const End&) = delete;
    void send(const std::string& message) override { line_->sent.push_back(decodeMessage(message).value()); }
    [[nodiscard]] std::size_t waitingBytes() const override { return line_->waiting; }
    void giveUp() override { line_->isGivenUp = true; }

   private:
    std::shared_ptr<Line> line_;
  };
};

}  // namespace quillmere
