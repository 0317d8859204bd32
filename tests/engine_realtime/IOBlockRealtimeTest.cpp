// Proof that the IO block of a live subgraph allocates nothing, locks nothing and enters no system call.
//
// Three proofs, each with a counter-proof that the trap works:
//  - the C library's memory and lock functions are counted while the block runs;
//  - a child process runs the block under a kernel filter that kills it at any system call but the one that ends it;
//  - the object files of the block name no function outside a short list (a test of its own, see CMakeLists.txt here).
#include <gtest/gtest.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

#include "TrappedCalls.h"
#include "engine/ProcessTapSubgraph.h"
#include "platform/memory/MemoryAudioHardware.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

constexpr int survived = 42;

/// From here on the kernel kills this process at every system call but exit_group.
bool forbidSystemCalls() {
  sock_filter program[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_exit_group, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
  };
  const sock_fprog filter{static_cast<unsigned short>(std::size(program)), program};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

/// Runs `work` in a child that may make no system call; how the child ended.
template <typename Work>
int runWithoutSystemCalls(Work work) {
  const pid_t child = fork();
  if (child == 0) {
    if (!forbidSystemCalls()) _exit(1);
    work();
    syscall(SYS_exit_group, survived);
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return status;
}

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
    EXPECT_TRUE(subgraph->activate(0.5F, std::nullopt));
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

TEST_F(IOBlockRealtime, NoSystemCallIsEntered) {
  const int status = runWithoutSystemCalls([this] { everyKindOfCycle(); });
  ASSERT_FALSE(WIFSIGNALED(status)) << "killed by signal " << WTERMSIG(status);
  ASSERT_NE(WEXITSTATUS(status), 1) << "the kernel takes no filter here";
  EXPECT_EQ(WEXITSTATUS(status), survived);
}

TEST_F(IOBlockRealtime, TheKernelFilterKillsAtTheSmallestSystemCall) {
  const int status = runWithoutSystemCalls([] { syscall(SYS_getpid); });
  ASSERT_TRUE(WIFSIGNALED(status)) << "ended with code " << WEXITSTATUS(status);
  EXPECT_EQ(WTERMSIG(status), SIGSYS);
}

}  // namespace
}  // namespace quillmere
