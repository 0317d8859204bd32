// A socket between the program and the daemon, on which a test can say what no daemon says.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quillmere::test {

/// Hands on what both sides say, without descriptors: enough for all that is only told.
class Relay {
 public:
  /// Listens under `name` among the session's sockets.
  explicit Relay(const std::string& name);
  ~Relay();
  Relay(const Relay&) = delete;
  Relay& operator=(const Relay&) = delete;

  /// Connections that were accepted so far.
  [[nodiscard]] int accepted() const { return accepted_; }
  /// Connections that stand.
  [[nodiscard]] int standing() const { return standing_; }
  /// Says this to the program once, on the connection of this place among those that stand, when the daemon has nothing
  /// to say: between two of its messages.
  void say(std::vector<std::uint8_t> message, std::size_t place);
  /// True: what comes in is accepted, told `message`, and never handed to the daemon.
  void answerEverybodyWith(std::vector<std::uint8_t> message);

 private:
  struct Pair {
    int program = -1;
    int daemon = -1;
  };
  void run();
  void accept();
  bool handOn(int from, int to);
  void close(Pair& pair);

  std::string path_;
  std::string daemonPath_;
  int listener_ = -1;
  int wake_ = -1;
  std::atomic<int> accepted_{0};
  std::atomic<int> standing_{0};
  std::atomic<bool> isEnding_{false};
  std::mutex mutex_;
  std::vector<std::uint8_t> toSay_;
  std::size_t placeToSayIt_ = 0;
  std::vector<std::uint8_t> answer_;
  std::vector<Pair> pairs_;
  std::thread thread_;
};

/// Not a message of any version of the daemon's protocol.
[[nodiscard]] std::vector<std::uint8_t> garbage();
/// The daemon reports an error of its core and goes on.
[[nodiscard]] std::vector<std::uint8_t> reportOfError(int result);

}  // namespace quillmere::test
