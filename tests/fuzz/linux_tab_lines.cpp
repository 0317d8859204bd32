// What comes over the mixer's socket for browsers' host programs: a host that says anything at all.
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/tabs/Frames.h"
#include "platform/linux/tabs/Greetings.h"
#include "platform/linux/tabs/HostListener.h"
#include "platform/linux/tabs/MeetingPlace.h"
#include "platform/linux/tabs/TabBook.h"
#include "runtime/Clocks.h"

namespace {

using namespace quillmere;

class Silence final : public LogSink {
 public:
  void write(LogLevel, std::string_view, std::string_view, std::string_view) override {}
};

/// A listener in a folder of its own, which goes with the process.
class World {
 public:
  World() {
    std::signal(SIGPIPE, SIG_IGN);
    std::string name = (std::filesystem::temp_directory_path() / "quillmere-fuzz-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) std::abort();
    folder_ = name;
    tabs::HostListenerOptions options;
    options.runtimeFolder = folder_;
    options.version = "1";
    options.identify = [](std::int32_t, const auto& found) { found({"b", "b"}); };
    listener_.emplace(std::move(options), clocks_, log_);
  }
  ~World() { std::filesystem::remove_all(folder_); }
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  /// Says the bytes, and waits until the listener has read them all or has hung up.
  void hear(std::string_view bytes) {
    const int socket = tabs::connectTo(folder_ + "/quillmere/tabs");
    if (socket < 0) std::abort();
    while (!bytes.empty()) {
      const auto count = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (count > 0) {
        bytes.remove_prefix(static_cast<std::size_t>(count));
        continue;
      }
      pollfd watched{socket, POLLOUT, 0};
      if (count == 0 || errno != EAGAIN || ::poll(&watched, 1, -1) < 0 || (watched.revents & (POLLERR | POLLHUP)) != 0)
        break;
    }
    ::shutdown(socket, SHUT_WR);
    std::array<char, 256> rest;
    for (pollfd watched{socket, POLLIN, 0}; ::poll(&watched, 1, -1) >= 0;) {
      if (::recv(socket, rest.data(), rest.size(), 0) <= 0) break;
    }
    ::close(socket);
  }

  std::string query() { return listener_->query("b"); }

 private:
  std::string folder_;
  Silence log_;
  SystemClocks clocks_;
  std::optional<tabs::HostListener> listener_;
};

bool isClean(const std::string& text) { return tabs::withoutControls(text) == text; }

/// The same bytes without a socket, where everything that is kept can be looked at.
void keep(std::string_view bytes) {
  tabs::FrameReader reader;
  tabs::TabBook book;
  reader.append(bytes);
  while (const auto message = reader.next()) {
    if (const auto version = tabs::readGreeting("host", *message); version && !isClean(*version)) std::abort();
    std::string problem;
    auto news = tabs::readTabNews(*message, problem);
    if (!news && problem.empty()) std::abort();
    if (!news) continue;
    for (const auto& [id, tab] : news->tabs) {
      if (!isClean(tab.title) || !isClean(tab.url)) std::abort();
      if (tab.title.size() > tabs::longestTitle || tab.url.size() > tabs::longestUrl) std::abort();
    }
    static_cast<void>(book.take(std::move(*news)));
    if (book.textBytes() > tabs::TabBook::mostText || book.windows().size() > tabs::TabBook::mostWindows) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  keep(bytes);
  world.hear(bytes);
  // And as what comes after a host has said who it is.
  world.hear(tabs::framed(R"({"host":"1"})") + tabs::framed(R"({"companion":"1"})") + std::string(bytes));
  static_cast<void>(world.query());
  return 0;
}
