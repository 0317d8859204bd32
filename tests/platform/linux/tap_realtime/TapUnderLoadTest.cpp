// The whole of what a tap does in a cycle, as the daemon's library calls it, a million times, while another thread
// turns everything that can be turned: memory and lock functions are counted, system calls are caught.
//
// What is measured is a node's process() with the IO block of a live subgraph; the audio thread runs a loop of the
// library between the cycles, through which ports, buffers and formats change as they do in the real graph.
#include <gtest/gtest.h>
#include <pipewire/pipewire.h>
#include <spa/node/command.h>
#include <spa/node/io.h>
#include <spa/node/node.h>
#include <spa/node/utils.h>
#include <spa/param/audio/format-utils.h>
#include <spa/param/param.h>
#include <spa/pod/builder.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

#include "GraphPort.h"
#include "TrappedCalls.h"
#include "TrappedSystemCalls.h"
#include "engine/ProcessTapSubgraph.h"
#include "platform/linux/pipewire/TapFollower.h"
#include "platform/linux/pipewire/TapNodeInterface.h"
#include "platform/linux/pipewire/TapParams.h"
#include "platform/linux/pipewire/TapRealtime.h"
#include "platform/memory/MemoryAudioHardware.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere::pipewire {
namespace {

constexpr std::uint64_t wantedCycles = 1'000'000;
constexpr int wantedTurns = 200;

/// A loop of the library, which one thread enters and others have work done on.
struct AudioLoop {
  AudioLoop() {
    pw_init(nullptr, nullptr);
    raw = pw_loop_new(nullptr);
  }
  ~AudioLoop() {
    pw_loop_destroy(raw);
    pw_deinit();
  }
  AudioLoop(const AudioLoop&) = delete;
  AudioLoop& operator=(const AudioLoop&) = delete;

  pw_loop* raw = nullptr;
};

/// A live subgraph on the in-memory machine, for its IO block.
struct Subgraph {
  VirtualTime time;
  RecordingLogSink log;
  MemoryAudioHardware hardware{time.main(), time};
  std::unique_ptr<ProcessTapSubgraph> live;
  IOBlock block;

  Subgraph() {
    hardware.setDefaultOutput(hardware.addDevice({.uid = "speakers", .name = "Speakers"}));
    live = std::make_unique<ProcessTapSubgraph>(hardware, time, "org.example.Player", std::vector<AudioObjectID>{7},
                                                Logger(log, "ProcessTapEngine"));
    EXPECT_EQ(live->activate(0.5F, std::nullopt), ProcessTapSubgraph::Progress::live);
    block = hardware.ioBlock(hardware.aggregates().front());
  }
};

/// A tap's node and the ports that a graph would plug into it.
struct TapUnderLoad : testing::Test {
  static constexpr std::array<std::uint32_t, 4> pluggedInputs{0, 1, 3, 5};

  AudioLoop loop;
  Subgraph subgraph;
  TapRealtime realtime;
  TapNodeInterface node{realtime, loop.raw, pw_properties_new(nullptr, nullptr), 0.7F, [] {}};
  spa_node* raw = node.implementation();
  spa_io_position position{};
  std::array<GraphPort, 4> captured{GraphPort(0.25F), GraphPort(-0.5F), GraphPort(0.1F), GraphPort(1e-3F)};
  std::array<GraphPort, 2> played{GraphPort(0.0F), GraphPort(0.0F)};
  std::shared_ptr<std::atomic<float>> followed = std::make_shared<std::atomic<float>>(0.5F);
  TapFollower follower{followed, 48000.0};
  bool isMono = false;

  // What the audio thread has seen.
  std::atomic<std::uint64_t> cycles{0};
  std::uint64_t soundingCycles = 0;
  int trappedCalls = 0;
  const char* firstTrapped = nullptr;
  int systemCalls = 0;
  int lastSystemCall = -1;
  bool canTrapSystemCalls = false;

  TapUnderLoad() {
    position.clock.rate = {1, 48000};
    position.clock.duration = 64;
    spa_node_set_io(raw, SPA_IO_Position, &position, sizeof(position));
    configure();
    const auto start = SPA_NODE_COMMAND_INIT(SPA_NODE_COMMAND_Start);
    spa_node_send_command(raw, &start);
    realtime.startPlain(&subgraph.block);
  }

  // The graph's part: what the daemon tells a node.

  /// Makes all ports anew and plugs in.
  void configure() {
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder = SPA_POD_BUILDER_INIT(memory.data(), memory.size());
    const auto* config = static_cast<const spa_pod*>(spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_ParamPortConfig, SPA_PARAM_PortConfig, SPA_PARAM_PORT_CONFIG_direction,
        SPA_POD_Id(SPA_DIRECTION_INPUT), SPA_PARAM_PORT_CONFIG_mode, SPA_POD_Id(SPA_PARAM_PORT_CONFIG_MODE_dsp)));
    ASSERT_EQ(spa_node_set_param(raw, SPA_PARAM_PortConfig, 0, config), 0);
    for (std::size_t place = 0; place < captured.size(); ++place)
      plug(SPA_DIRECTION_INPUT, pluggedInputs.at(place), captured.at(place));
    plugOutputs();
  }
  void plugOutputs() {
    plug(SPA_DIRECTION_OUTPUT, 0, played[0]);
    if (!isMono) plug(SPA_DIRECTION_OUTPUT, 1, played[1]);
  }
  void plug(spa_direction direction, std::uint32_t id, GraphPort& port) {
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder = SPA_POD_BUILDER_INIT(memory.data(), memory.size());
    ASSERT_EQ(spa_node_port_set_param(raw, direction, id, SPA_PARAM_Format, 0, params::portFormat(builder)), 0);
    auto buffers = port.buffers();
    ASSERT_EQ(spa_node_port_use_buffers(raw, direction, id, 0, buffers.data(), 3), 0);
    ASSERT_EQ(spa_node_port_set_io(raw, direction, id, SPA_IO_Buffers, &port.io, sizeof(port.io)), 0);
  }
  void unplug(spa_direction direction, std::uint32_t id) {
    ASSERT_EQ(spa_node_port_set_io(raw, direction, id, SPA_IO_Buffers, nullptr, 0), 0);
    ASSERT_EQ(spa_node_port_use_buffers(raw, direction, id, 0, nullptr, 0), 0);
  }

  // The audio thread.

  /// Cycles as fast as they go, until there were as many as wanted and nobody turns anything any more.
  void play(const std::atomic<bool>& isTurning) {
    canTrapSystemCalls = TrappedSystemCalls::prepareThread();
    pw_loop_enter(loop.raw);
    std::uint64_t done = 0;
    while (done < wantedCycles || isTurning) {
      if (done % 8 == 0) pw_loop_iterate(loop.raw, 0);
      cycle(done % 997 == 0 ? 2048 : 16U << (done % 4));
      cycles = ++done;
    }
    pw_loop_leave(loop.raw);
    systemCalls = TrappedSystemCalls::count();
    lastSystemCall = TrappedSystemCalls::last();
  }
  void cycle(std::uint32_t frames) {
    position.clock.duration = frames;
    for (auto& port : captured) port.handOver(frames);
    for (auto& port : played) port.io.status = SPA_STATUS_NEED_DATA;
    {
      const TrappedCalls calls;
      const TrappedSystemCalls system;
      spa_node_process(raw);
    }
    trappedCalls += TrappedCalls::count();
    if (firstTrapped == nullptr) firstTrapped = TrappedCalls::first();
    if (played[0].io.status == SPA_STATUS_HAVE_DATA && played[0].at(frames - 1) != 0.0F) ++soundingCycles;
  }

  // The control thread.

  int turned = 0;
  /// One thing or another, as the engine and the daemon do it.
  void turn(std::mt19937& random) {
    constexpr std::array<float, 5> gains{0.0F, 0.3F, 0.8F, 1.0F, 0.0F};
    const float gain = gains.at(random() % gains.size());
    ++turned;
    switch (random() % 12) {
      case 0:
        realtime.stop(gain);
        break;
      case 1:
        realtime.stop(gain);
        realtime.hold();
        break;
      case 2:
        realtime.startFrom(&subgraph.block, gain);
        break;
      case 3:
        realtime.startFromRelease(follower.block());
        break;
      case 4:
        realtime.startPlain(&subgraph.block);
        break;
      case 5:
        realtime.setRate(random() % 2 == 0 ? 44100 : 48000);
        break;
      case 6:
        unplug(SPA_DIRECTION_INPUT, pluggedInputs.at(random() % 4));
        break;
      case 7:
        isMono = !isMono;
        node.setMono(isMono);
        plugOutputs();
        break;
      case 8:
        configure();
        break;
      default:
        *followed = gain;
        subgraph.live->setTargetGain(gain);
        break;
    }
    // Enough cycles for a gain to glide, now and then.
    const auto until = cycles + (random() % 50 == 0 ? 20'000 : random() % 200);
    while (cycles < until) std::this_thread::yield();
  }
};

TEST_F(TapUnderLoad, AMillionCyclesAllocateNothingLockNothingAndEnterNoSystemCall) {
  const char* given = std::getenv("QUILLMERE_SEED");
  const auto seed = given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device{}();
  SCOPED_TRACE(testing::Message() << "QUILLMERE_SEED=" << seed << " replays what is turned");
  std::mt19937 random(seed);
  std::atomic<bool> isTurning = true;
  std::thread audio([&] { play(isTurning); });
  while (cycles < wantedCycles || turned < wantedTurns) turn(random);
  isTurning = false;
  audio.join();

  EXPECT_EQ(trappedCalls, 0) << firstTrapped;
  if (!canTrapSystemCalls) {
    GTEST_SKIP() << "the kernel catches no system calls for a program here: only memory and locks were watched";
  }
  EXPECT_EQ(systemCalls, 0) << "the last one was number " << lastSystemCall;
  EXPECT_GT(soundingCycles, wantedCycles / 20) << "or nothing was done in all those cycles";
  std::printf("%llu cycles, %llu of them sounding, %d things turned\n", static_cast<unsigned long long>(cycles.load()),
              static_cast<unsigned long long>(soundingCycles), turned);
}

TEST_F(TapUnderLoad, TheTrapsCatchABlockThatAllocatesLocksOrCallsTheSystem) {
  std::mutex mutex;
  int kind = 0;
  const IOBlock careless = [&](const AudioBufferList&, const AudioBufferList&) {
    if (kind == 0) {
      const auto word = std::make_unique<int>(1);
      // Or the compiler is free to leave the allocation out.
      asm volatile("" : : "g"(word.get()) : "memory");
    } else if (kind == 1) {
      mutex.lock();
      mutex.unlock();
    } else if (kind == 2) {
      syscall(SYS_getpid);
    }
  };
  realtime.startPlain(&careless);
  canTrapSystemCalls = TrappedSystemCalls::prepareThread();
  cycle(64);
  EXPECT_GE(trappedCalls, 1);
  EXPECT_STREQ(firstTrapped, "malloc");
  const int before = trappedCalls;
  kind = 1;
  cycle(64);
  EXPECT_EQ(trappedCalls, before + 1);
  kind = 2;
  const int callsBefore = TrappedSystemCalls::count();
  cycle(64);
  if (!canTrapSystemCalls) GTEST_SKIP() << "the kernel catches no system calls for a program here";
  EXPECT_EQ(TrappedSystemCalls::count(), callsBefore + 1);
  EXPECT_EQ(TrappedSystemCalls::last(), SYS_getpid);
}

}  // namespace
}  // namespace quillmere::pipewire
