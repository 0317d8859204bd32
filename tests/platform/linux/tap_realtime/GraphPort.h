// What the graph gives a port of a tap: a place to hand buffers over, and some.
#pragma once

#include <spa/buffer/buffer.h>
#include <spa/node/io.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/linux/pipewire/TapRealtime.h"

namespace quillmere::pipewire {

struct GraphPort {
  static constexpr std::uint32_t longest = 2048;
  struct Slot {
    std::vector<float> samples = std::vector<float>(longest);
    spa_chunk chunk{};
    spa_data data{};
    spa_buffer buffer{};
  };
  spa_io_buffers io{SPA_STATUS_NEED_DATA, SPA_ID_INVALID};
  std::array<Slot, 3> slots;

  /// Its buffers are full of that.
  explicit GraphPort(float level) {
    for (auto& slot : slots) {
      slot.samples.assign(longest, level);
      slot.data.data = slot.samples.data();
      slot.data.maxsize = longest * sizeof(float);
      slot.data.chunk = &slot.chunk;
      slot.buffer.n_datas = 1;
      slot.buffer.datas = &slot.data;
    }
  }
  GraphPort(const GraphPort&) = delete;
  GraphPort& operator=(const GraphPort&) = delete;

  [[nodiscard]] std::array<spa_buffer*, 3> buffers() { return {&slots[0].buffer, &slots[1].buffer, &slots[2].buffer}; }
  void plugInto(TapPort& port, std::size_t count = 3) {
    const auto all = buffers();
    port.io = &io;
    TapRealtime::setBuffers(port, std::span(all).first(count));
  }
  void handOver(std::uint32_t frames, std::uint32_t slot = 0) {
    slots.at(slot).chunk = {0, frames * static_cast<std::uint32_t>(sizeof(float)), sizeof(float), 0};
    io = {SPA_STATUS_HAVE_DATA, slot};
  }
  [[nodiscard]] const Slot& handedOver() const { return slots.at(io.buffer_id); }
  [[nodiscard]] float at(std::size_t frame) const { return handedOver().samples.at(frame); }
};

}  // namespace quillmere::pipewire
