// The other side of a launcher's line, for its tests: says every message again, and ends in the ways that it is told
// to.
#include <sys/socket.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "platform/linux/LinuxWindowsLauncher.h"

int main() {
  using namespace quillmere;
  std::promise<void> over;
  std::promise<Channel*> opened;
  auto channelOnceOpened = opened.get_future().share();
  bool stays = false;
  ChannelEvents events;
  events.received = [&](const std::string& message) {
    if (message == "crash") std::abort();
    if (message == "end") std::_Exit(7);
    if (message == "stay") stays = true;
    if (message == "linger") {
      // Its line ends a while before it does.
      ::shutdown(3, SHUT_RDWR);
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
      std::_Exit(7);
    }
    channelOnceOpened.get()->send(message);
    if (message == "stop") ::raise(SIGSTOP);
  };
  events.closed = [&] {
    // One that doesn't notice the end of its line.
    if (!stays) over.set_value();
  };
  const auto channel = openInheritedChannel(std::move(events));
  if (!channel) return 9;
  opened.set_value(channel.get());
  over.get_future().wait();
  return 0;
}
