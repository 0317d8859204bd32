// Proof that the IO block of a live subgraph allocates nothing, locks nothing and enters no system call.
//
// Three proofs, each with a counter-proof that the trap works:
//  - the C library's memory and lock functions are counted while the block runs;
//  - a child process runs the block under a kernel filter that kills it at any system call but the one that ends it;
//  - the object files of the block name no function outside a short list (a test of its own, see CMakeLists.txt here).
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "TrappedCalls.h"
#include "WithoutSystemCalls.h"
#include "engine/ProcessTapSubgraph.h"
#include "platform/memory/MemoryAudioHardware.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

/// The block of a live subgraph, as a host gets it, and buffers of every kind it may be given.
struct IOBlockRealtime : testing::Test {
  VirtualTime time;
  RecordingLogSink log;
  MemoryAudioHardware hardware{time.main(), time};
  std::unique_ptr<ProcessTapSubgraph> subgraph;
  IOBlock block;
  std::vector<float> inputSamples = std::vector<float>(std::size_t{8} * 4096, 0.3F);
  std::vector<float> outputSamples = std::vector<float>(std::size_t{8} * 4096, 0.0F);

  IOBlockRealtime() {
    hardware.setDefaultOutput(hardware.addDevice({.uid = "speakers", .name = "Speakers"}));
    subgraph = std::make_unique<ProcessTapSubgraph>(hardware, time, "org.example.Player", std::vector<AudioObjectID>{7},
                                                    Logger(log, "ProcessTapEngine"));
    EXPECT_EQ(subgraph->activate(0.5F, std::nullopt), ProcessTapSubgraph::Progress::live);
    block = hardware.ioBlock(hardware.aggregates().front());
  }

  void cycle(std::uint32_t inChannels, std::uint32_t outChannels, std::uint32_t frames) {
    AudioBuffer in{inChannels, inChannels * frames * 4, inputSamples.data()};
    AudioBuffer out{outChannels, outChannels * frames * 4, outputSamples.data()};
    block({.buffers = {&in, 1}}, {.buffers = {&out, 1}});
  }

  /// Steady, gliding, coming to rest, muted until the gain has sunk as far as it goes; every shape; nothing at all.
  void everyKindOfCycle() {
    for (const float gain : {0.5F, 0.9F, 0.0F, 1.0F}) {
      subgraph->setTargetGain(gain);
      for (int i = 0; i < 300; ++i) cycle(2, 2, 1024);
      cycle(1, 2, 1000);
      cycle(2, 4, 1000);
      cycle(6, 8, 333);
      cycle(2, 2, 0);
      cycle(2, 2, 1);
      static_cast<void>(subgraph->recentInputPeak());
    }
    block({}, {});
  }
};

TEST_F(IOBlockRealtime, NothingIsAllocatedAndNothingIsLocked) {
  int count = 0;
  const char* first = nullptr;
  {
    const TrappedCalls trap;
    everyKindOfCycle();
    count = TrappedCalls::count();
    first = TrappedCalls::first();
  }
  EXPECT_EQ(count, 0) << first;
}

TEST_F(IOBlockRealtime, TheTrapCatchesAnAllocationAndALock) {
  std::mutex mutex;
  int afterAllocation = 0;
  int afterLock = 0;
  {
    const TrappedCalls trap;
    const auto word = std::make_unique<int>(1);
    // Or the compiler is free to leave the allocation out.
    asm volatile("" : : "g"(word.get()) : "memory");
    afterAllocation = TrappedCalls::count();
    mutex.lock();
    mutex.unlock();
    afterLock = TrappedCalls::count();
  }
  EXPECT_GT(afterAllocation, 0);
  EXPECT_GT(afterLock, afterAllocation);
}

/// Whoever runs these programs in an emulator says so, and by which name.
const char* emulator() { return std::getenv("QUILLMERE_EMULATOR"); }

TEST_F(IOBlockRealtime, NoSystemCallIsEntered) {
  if (emulator() != nullptr) GTEST_SKIP() << emulator() << " takes no filter for the system calls of what it runs";
  EXPECT_EQ(runWithoutSystemCalls([this] { everyKindOfCycle(); }), "survived");
}

TEST_F(IOBlockRealtime, TheKernelFilterKillsAtTheSmallestSystemCall) {
  if (emulator() != nullptr) GTEST_SKIP() << emulator() << " takes no filter for the system calls of what it runs";
  EXPECT_EQ(runWithoutSystemCalls([] { syscall(SYS_getpid); }), "killed by signal " + std::to_string(SIGSYS));
}

}  // namespace
}  // namespace quillmere
