// The other side of a launcher's line, for its tests: says every message again, and ends in the ways that it is told
// to.
#include <csignal>
#include <cstdlib>
#include <future>
#include <memory>
#include <mutex>
#include <string>

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
    channelOnceOpened.get()->send(message);
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
