// Between two lines: the browser's pipes, and the mixer's socket while there is one.
#include "platform/linux/LinuxTabHost.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "tabs/Frames.h"
#include "tabs/Greetings.h"
#include "tabs/MeetingPlace.h"
#include "tabs/MixerWatch.h"

namespace quillmere {

namespace {

using namespace tabs;

/// Bytes that a browser which doesn't read is kept; what is asked of it then is lost.
constexpr std::size_t mostForBrowser = 65'536;
/// Bytes that a mixer which doesn't read is kept; then it is given up. More than any list has.
constexpr std::size_t mostForMixer = std::size_t{20} << 20U;
constexpr int longestPause = 64;

enum class Written { all, some, failed };

class TabHost {
 public:
  TabHost(const LinuxTabHostOptions& options, Clocks& clocks, LogSink& log)
      : options_(options),
        clocks_(clocks),
        log_(log, "TabHost"),
        watch_(options.runtimeFolder),
        socketPath_(meetingFolder(options.runtimeFolder) + '/' + socketName),
        pause_(options.pause) {
    for (const int pipe : {options_.input, options_.output})
      ::fcntl(pipe, F_SETFL, ::fcntl(pipe, F_GETFL) | O_NONBLOCK);
  }
  ~TabHost() {
    if (mixer_ >= 0) ::close(mixer_);
  }
  TabHost(const TabHost&) = delete;
  TabHost& operator=(const TabHost&) = delete;

  int run() {
    companionDeadline_ = clocks_.monotonicNow() + options_.patience;
    tellBrowser(greeting("host", options_.version));
    watch_.begin();
    lookForMixer();
    while (!result_) {
      std::array<pollfd, 4> watched{{{options_.input, POLLIN, 0},
                                     {forBrowser_.empty() ? -1 : options_.output, POLLOUT, 0},
                                     {mixer_, static_cast<short>(forMixer_.empty() ? POLLIN : POLLIN | POLLOUT), 0},
                                     {watch_.descriptor(), POLLIN, 0}}};
      if (::poll(watched.data(), watched.size(), timeout()) < 0) continue;
      if (watched[1].revents != 0) flushToBrowser();
      if (watched[2].revents != 0) serveMixer(watched[2].revents);
      if (watched[0].revents != 0) readBrowser();
      if (watched[3].revents != 0) {
        // A mixer that has just come: what kept the last one from listening says nothing of it.
        pause_ = options_.pause;
        watch_.begin();
        lookForMixer();
      }
      checkTimes();
    }
    return *result_;
  }

 private:
  void fail(const std::string& why) {
    log_.error(why);
    result_ = 1;
  }

  // The browser's side.

  void tellBrowser(std::string_view message) {
    forBrowser_ += framed(message);
    flushToBrowser();
  }

  void flushToBrowser() {
    while (!forBrowser_.empty()) {
      const auto count = ::write(options_.output, forBrowser_.data(), forBrowser_.size());
      if (count > 0) {
        forBrowser_.erase(0, static_cast<std::size_t>(count));
      } else if (count == 0 || errno == EAGAIN || errno == EWOULDBLOCK) {
        return;
      } else if (errno != EINTR) {
        result_ = 0;
        return;
      }
    }
  }

  void readBrowser() {
    const auto count = ::read(options_.input, buffer_.data(), buffer_.size());
    if (count <= 0) {
      if (count == 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR)) result_ = 0;
      return;
    }
    fromBrowser_.append({buffer_.data(), static_cast<std::size_t>(count)});
    while (!result_) {
      auto message = fromBrowser_.next();
      if (!message) break;
      companionDeadline_.reset();
      takeFromCompanion(std::move(*message));
    }
    if (const auto length = fromBrowser_.impossibleLength()) {
      fail("the browser sends a message of " + std::to_string(*length) + " bytes");
    } else if (companion_ && !companionDeadline_ && fromBrowser_.hasPart()) {
      companionDeadline_ = clocks_.monotonicNow() + options_.patience;
    }
  }

  void takeFromCompanion(std::string message) {
    if (companion_) {
      if (isHeard_) tellMixer(message);
      return;
    }
    const auto version = readGreeting("companion", message);
    if (!version) {
      fail("this is no companion's first word");
      return;
    }
    checkVersion("companion", *version);
    companion_ = std::move(message);
    startTelling();
  }

  void checkVersion(const std::string& who, const std::string& version) {
    if (version == options_.version) return;
    log_.standard("the " + who + " is of version " + version + ", this host program of " + options_.version);
  }

  // The mixer's side.

  void lookForMixer() {
    if (mixer_ >= 0) return;
    retryAt_.reset();
    const int socket = connectTo(socketPath_);
    if (socket < 0) {
      // It listens, but has no place for one more now: nothing will appear that the watch could tell.
      if (errno == EAGAIN) askLater();
      return;
    }
    const auto peer = peerOf(socket);
    if (!peer || peer->userID != ::geteuid()) {
      log_.error("the mixer's socket is another user's");
      ::close(socket);
      return;
    }
    watch_.end();
    mixer_ = socket;
    fromMixer_ = FrameReader();
  }

  /// A mixer that goes away comes back with a new socket, which the watch tells. One that closes the line and goes on
  /// is asked again after a pause.
  void loseMixer() {
    ::close(mixer_);
    mixer_ = -1;
    forMixer_.clear();
    mixerDeadline_.reset();
    isGreeted_ = false;
    if (std::exchange(isHeard_, false)) tellBrowser(listenMessage(false));
    watch_.begin();
    askLater();
  }

  void askLater() {
    retryAt_ = clocks_.monotonicNow() + pause_;
    pause_ = std::min(2 * pause_, longestPause * options_.pause);
  }

  void serveMixer(short events) {
    if ((events & POLLOUT) != 0 && flushToMixer() == Written::failed) {
      loseMixer();
      return;
    }
    if ((events & (POLLIN | POLLHUP | POLLERR)) != 0) readMixer();
  }

  void readMixer() {
    const auto count = ::recv(mixer_, buffer_.data(), buffer_.size(), MSG_DONTWAIT);
    if (count <= 0) {
      if (count == 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR)) loseMixer();
      return;
    }
    fromMixer_.append({buffer_.data(), static_cast<std::size_t>(count)});
    while (mixer_ >= 0) {
      const auto message = fromMixer_.next();
      if (!message) break;
      takeFromMixer(*message);
    }
    if (mixer_ >= 0 && fromMixer_.impossibleLength()) loseMixer();
  }

  void takeFromMixer(const std::string& message) {
    const bool isFirst = !std::exchange(isGreeted_, true);
    if (isFirst) {
      const auto version = readGreeting("mixer", message);
      if (!version) {
        loseMixer();
        return;
      }
      checkVersion("mixer", *version);
    }
    if (forBrowser_.size() < mostForBrowser) tellBrowser(message);
    if (isFirst) startTelling();
  }

  /// Once both ends have said who they are.
  void startTelling() {
    if (!isGreeted_ || !companion_ || isHeard_) return;
    isHeard_ = true;
    tellMixer(greeting("host", options_.version));
    tellMixer(*companion_);
    // It may have gone at the first word: then the companion has been told to be quiet.
    if (isHeard_) tellBrowser(listenMessage(true));
  }

  void tellMixer(std::string_view message) {
    if (mixer_ < 0) return;
    forMixer_ += framed(message);
    const auto written = flushToMixer();
    if (written == Written::failed || forMixer_.size() > mostForMixer) {
      loseMixer();
    } else if (written == Written::some && !mixerDeadline_) {
      mixerDeadline_ = clocks_.monotonicNow() + options_.patience;
    }
  }

  Written flushToMixer() {
    while (!forMixer_.empty()) {
      const auto count = ::send(mixer_, forMixer_.data(), forMixer_.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
      if (count > 0) {
        forMixer_.erase(0, static_cast<std::size_t>(count));
        mixerDeadline_.reset();
      } else if (count == 0 || errno == EAGAIN || errno == EWOULDBLOCK) {
        return Written::some;
      } else if (errno != EINTR) {
        return Written::failed;
      }
    }
    return Written::all;
  }

  // Times.

  int timeout() const {
    std::optional<MonotonicTime> next;
    for (const auto& each : {companionDeadline_, mixerDeadline_, retryAt_}) {
      if (each && (!next || *each < *next)) next = each;
    }
    if (!next) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*next - clocks_.monotonicNow()).count();
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, 3'600'000));
  }

  void checkTimes() {
    const auto now = clocks_.monotonicNow();
    if (companionDeadline_ && *companionDeadline_ <= now && !result_) {
      fail(companion_ ? "the browser doesn't end a message that it has begun" : "the browser says nothing");
    }
    if (mixerDeadline_ && *mixerDeadline_ <= now) loseMixer();
    if (retryAt_ && *retryAt_ <= now) lookForMixer();
  }

  const LinuxTabHostOptions options_;
  Clocks& clocks_;
  const Logger log_;
  MixerWatch watch_;
  const std::string socketPath_;
  std::optional<int> result_;
  std::array<char, 65'536> buffer_{};

  FrameReader fromBrowser_;
  std::string forBrowser_;
  /// The companion's first word, which every mixer gets.
  std::optional<std::string> companion_;
  std::optional<MonotonicTime> companionDeadline_;

  int mixer_ = -1;
  FrameReader fromMixer_;
  std::string forMixer_;
  bool isGreeted_ = false;
  /// Whether the companion tells: both have said who they are.
  bool isHeard_ = false;
  std::optional<MonotonicTime> mixerDeadline_;
  std::optional<MonotonicTime> retryAt_;
  Duration pause_;
};

}  // namespace

int runTabHost(const LinuxTabHostOptions& options, Clocks& clocks, LogSink& log) {
  return TabHost(options, clocks, log).run();
}

std::string tabHostRuntimeFolder() { return sessionRuntimeFolder(); }

}  // namespace quillmere
