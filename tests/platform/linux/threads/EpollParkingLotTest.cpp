// Where idle threads wait on Linux, and what names its threads have.
#include "platform/linux/threads/EpollParkingLot.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <string>
#include <thread>

#include "platform/linux/LinuxThreads.h"
#include "tests/runtime/ParkingLotContract.h"

namespace quillmere {
namespace {

INSTANTIATE_TEST_SUITE_P(OfTheKernel, ParkingLotContract, ::testing::Values(makeEpollParkingLot));

std::string nameOf(const std::string& wanted) {
  std::array<char, 16> name{};
  std::thread([&] {
    linuxThreads().nameThread(wanted);
    pthread_getname_np(pthread_self(), name.data(), name.size());
  }).join();
  return name.data();
}

TEST(LinuxThreads, AShortNameIsWhole) { EXPECT_EQ(nameOf("engine"), "engine"); }

TEST(LinuxThreads, OfALongNameTheEndIsShown) { EXPECT_EQ(nameOf("app.quillmere.engine"), "uillmere.engine"); }

}  // namespace
}  // namespace quillmere
