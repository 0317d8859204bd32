// Accepting, reading, dropping, and the numbers that a query gives out.
#include "tabs/HostListener.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

#include "tabs/Frames.h"
#include "tabs/Greetings.h"
#include "tabs/MeetingPlace.h"
#include "tabs/TabBook.h"

namespace quillmere::tabs {

namespace {

/// Bytes that a host may leave unread before it is given up: activations of some minutes.
constexpr std::size_t mostWaiting = 65'536;

void appendRecord(std::string& text, std::size_t window, std::size_t tab, const ToldTab& told) {
  text += std::to_string(window);
  text += '\t';
  text += std::to_string(tab);
  text += told.isActive ? "\t1\t" : "\t0\t";
  text += told.title;
  text += '\t';
  text += told.url;
  text += '\n';
}

}  // namespace

class HostListener::Core {
 public:
  Core(HostListenerOptions options, Clocks& clocks, LogSink& log)
      : options_(std::move(options)),
        userID_(options_.userID.value_or(::geteuid())),
        clocks_(clocks),
        log_(log, "BrowserTabs") {
    if (options_.runtimeFolder.empty()) {
      log_.standard("no browser tabs: this session has no runtime folder");
      return;
    }
    std::string problem;
    listening_ = listenPrivately(meetingFolder(options_.runtimeFolder), socketName, problem);
    if (listening_ < 0) {
      log_.error("no browser tabs: " + problem);
      return;
    }
    wake_ = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    thread_ = std::thread([this] { run(); });
  }

  ~Core() {
    if (!thread_.joinable()) return;
    isEnding_ = true;
    wakeUp();
    thread_.join();
    for (const auto& host : hosts_) ::close(host->socket);
    // The name stays: a mixer that has started meanwhile may own it already, and a host that finds nobody there waits.
    ::close(listening_);
    ::close(wake_);
  }

  Core(const Core&) = delete;
  Core& operator=(const Core&) = delete;

  std::string query(const std::string& identifier) {
    const std::scoped_lock lock(mutex_);
    auto& places = numbered_[identifier];
    places.clear();
    std::string text;
    for (const auto& host : hosts_) {
      if (!host->isGreeted() || host->browser.identifier != identifier) continue;
      for (const auto& window : host->book.windows()) {
        places.push_back({host->number, window.id, window.tabs});
        for (std::size_t at = 0; at < window.tabs.size(); ++at) {
          static const ToldTab unknown;
          const auto* tab = host->book.tab(window.tabs[at]);
          appendRecord(text, places.size(), at + 1, tab != nullptr ? *tab : unknown);
        }
      }
    }
    return text;
  }

  Activation activate(const std::string& identifier, std::int64_t window, std::int64_t tab) {
    const std::scoped_lock lock(mutex_);
    const auto numbered = numbered_.find(identifier);
    if (numbered != numbered_.end() && window >= 1 && std::cmp_less_equal(window, numbered->second.size())) {
      const auto& place = numbered->second[static_cast<std::size_t>(window) - 1];
      const auto host = std::ranges::find(hosts_, place.host, [](const auto& each) { return each->number; });
      if (host == hosts_.end()) return Activation::nobodyThere;
      std::optional<TabID> wanted;
      if (tab >= 1 && std::cmp_less_equal(tab, place.tabs.size()))
        wanted = place.tabs[static_cast<std::size_t>(tab) - 1];
      send(**host, activateMessage(place.window, wanted));
      return Activation::asked;
    }
    const auto host = std::ranges::find_if(
        hosts_, [&](const auto& each) { return each->isGreeted() && each->browser.identifier == identifier; });
    if (host == hosts_.end()) return Activation::nobodyThere;
    send(**host, activateMessage(std::nullopt, std::nullopt));
    return Activation::asked;
  }

  std::vector<ConnectedCompanion> companions() const {
    const std::scoped_lock lock(mutex_);
    std::vector<ConnectedCompanion> connected;
    for (const auto& host : hosts_) {
      if (host->isGreeted()) connected.push_back({host->browser, *host->hostVersion, *host->companionVersion});
    }
    return connected;
  }

 private:
  struct Host {
    int socket;
    std::uint64_t number;
    Peer peer;
    /// Until when something has to be finished; absent while nothing is begun.
    std::optional<MonotonicTime> deadline;
    FrameReader reader{};
    BrowserFacts browser{};
    std::optional<std::string> hostVersion{};
    std::optional<std::string> companionVersion{};
    TabBook book{};
    /// What the socket has not taken yet; under the mutex for every thread.
    std::string waiting{};
    /// The thread's own: why it is to be dropped.
    std::string fault{};
    /// The thread's own: the other end has closed.
    bool isGone = false;

    [[nodiscard]] bool isGreeted() const { return hostVersion && companionVersion; }
    [[nodiscard]] bool isToGo() const { return isGone || !fault.empty(); }
  };

  /// Where a window was at a query.
  struct Place {
    std::uint64_t host;
    WindowID window;
    std::vector<TabID> tabs;
  };

  void wakeUp() const {
    const std::uint64_t one = 1;
    static_cast<void>(!::write(wake_, &one, sizeof one));
  }

  /// Under the mutex: the thread hands it over.
  void send(Host& host, const std::string& message) {
    host.waiting += framed(message);
    wakeUp();
  }

  /// Hands over what the socket takes now.
  void flush(Host& host) {
    const std::scoped_lock lock(mutex_);
    while (!host.waiting.empty()) {
      const auto count = ::send(host.socket, host.waiting.data(), host.waiting.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
      if (count > 0) {
        host.waiting.erase(0, static_cast<std::size_t>(count));
      } else if (count < 0 && errno == EINTR) {
        continue;
      } else if (count == 0 || errno == EAGAIN || errno == EWOULDBLOCK) {
        break;
      } else {
        host.isGone = true;
        return;
      }
    }
  }

  void checkWaiting(Host& host) {
    const std::scoped_lock lock(mutex_);
    if (host.waiting.size() > mostWaiting) host.fault = "it doesn't read what it is asked";
  }

  void run() {
    std::vector<pollfd> watched;
    while (!isEnding_) {
      watched.clear();
      watched.push_back({listening_, static_cast<short>(pausesUntil_ ? 0 : POLLIN), 0});
      watched.push_back({wake_, POLLIN, 0});
      {
        const std::scoped_lock lock(mutex_);
        for (const auto& host : hosts_) {
          const bool hasMore = !host->waiting.empty();
          watched.push_back({host->socket, static_cast<short>(hasMore ? POLLIN | POLLOUT : POLLIN), 0});
        }
      }
      if (::poll(watched.data(), watched.size(), timeout()) < 0) continue;
      std::uint64_t count = 0;
      if (watched[1].revents != 0) static_cast<void>(!::read(wake_, &count, sizeof count));
      for (std::size_t at = 2; at < watched.size(); ++at) serve(*hosts_[at - 2], watched[at].revents);
      dropThoseToGo();
      if (pausesUntil_ && *pausesUntil_ <= clocks_.monotonicNow()) pausesUntil_.reset();
      if (watched[0].revents != 0) accept();
    }
  }

  /// Milliseconds to the next deadline.
  int timeout() const {
    auto next = pausesUntil_;
    for (const auto& host : hosts_) {
      if (host->deadline && (!next || *host->deadline < *next)) next = host->deadline;
    }
    if (!next) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*next - clocks_.monotonicNow()).count();
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, 3'600'000));
  }

  void serve(Host& host, short events) {
    if ((events & POLLOUT) != 0) flush(host);
    checkWaiting(host);
    if ((events & (POLLIN | POLLHUP | POLLERR)) != 0) read(host);
    if (host.deadline && *host.deadline <= clocks_.monotonicNow() && !host.isToGo()) {
      host.fault = host.isGreeted() ? "it doesn't end what it has begun" : "it doesn't say who it is";
    }
  }

  /// A piece at a time: nobody who talks without end keeps the others from being heard.
  void read(Host& host) {
    const auto count = ::recv(host.socket, buffer_.data(), buffer_.size(), MSG_DONTWAIT);
    if (count <= 0) {
      if (count == 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR)) host.isGone = true;
      return;
    }
    host.reader.append({buffer_.data(), static_cast<std::size_t>(count)});
    while (!host.isToGo()) {
      const auto message = host.reader.next();
      if (!message) break;
      if (host.isGreeted()) {
        host.deadline.reset();
        takeNews(host, *message);
      } else {
        takeGreeting(host, *message);
      }
    }
    if (const auto length = host.reader.impossibleLength()) {
      host.fault = "a message of " + std::to_string(*length) + " bytes";
    } else if (host.isGreeted() && !host.deadline && host.reader.hasPart()) {
      host.deadline = clocks_.monotonicNow() + options_.patience;
    }
  }

  void takeGreeting(Host& host, const std::string& message) {
    auto version = readGreeting(host.hostVersion ? "companion" : "host", message);
    if (!version) {
      host.fault = "its first words are not a host's";
      return;
    }
    {
      const std::scoped_lock lock(mutex_);
      (host.hostVersion ? host.companionVersion : host.hostVersion) = std::move(*version);
    }
    if (!host.isGreeted()) return;
    host.deadline.reset();
    if (host.hostVersion != options_.version || host.companionVersion != options_.version) {
      log_.standard("the companion in " + host.browser.program + " is of version " + *host.companionVersion +
                    ", its host program of " + *host.hostVersion + ", this program of " + options_.version);
    }
    hasChanged_ = true;
    tellChange();
  }

  void takeNews(Host& host, const std::string& message) {
    std::string problem;
    auto news = readTabNews(message, problem);
    if (!news) {
      host.fault = std::move(problem);
      return;
    }
    {
      const std::scoped_lock lock(mutex_);
      if (auto fault = host.book.take(std::move(*news))) host.fault = std::move(*fault);
    }
    if (options_.told) options_.told();
  }

  void dropThoseToGo() {
    std::vector<std::unique_ptr<Host>> dropped;
    {
      const std::scoped_lock lock(mutex_);
      for (auto& host : hosts_) {
        if (host->isToGo()) dropped.push_back(std::move(host));
      }
      std::erase(hosts_, nullptr);
    }
    for (const auto& host : dropped) {
      if (!host->fault.empty()) logFault(host->peer, host->fault);
      ::close(host->socket);
      hasChanged_ = hasChanged_ || host->isGreeted();
    }
    tellChange();
  }

  void tellChange() {
    if (!std::exchange(hasChanged_, false)) return;
    if (options_.told) options_.told();
    if (options_.changed) options_.changed();
  }

  void logFault(const Peer& peer, const std::string& fault) {
    log_.standard("dropped the browser host of process " + std::to_string(peer.pid) + ": " + fault);
  }

  void accept() {
    const int socket = ::accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (socket < 0) {
      // Without a descriptor or memory left whoever knocks goes on knocking.
      if (errno != EAGAIN && errno != EINTR && errno != ECONNABORTED)
        pausesUntil_ = clocks_.monotonicNow() + options_.patience;
      return;
    }
    const auto peer = peerOf(socket);
    if (!peer || peer->userID != userID_) {
      logFault(peer.value_or(Peer{}), "it is another user's");
      ::close(socket);
      return;
    }
    if (hosts_.size() >= options_.mostHosts) {
      logFault(*peer, "there are too many already");
      ::close(socket);
      return;
    }
    auto host = std::make_unique<Host>(Host{
        .socket = socket, .number = ++last_, .peer = *peer, .deadline = clocks_.monotonicNow() + options_.patience});
    host->browser = options_.identify(peer->pid);
    const std::scoped_lock lock(mutex_);
    // The mixer speaks first: a host tells nothing to a mixer that hangs.
    send(*host, greeting("mixer", options_.version));
    hosts_.push_back(std::move(host));
  }

  const HostListenerOptions options_;
  const std::uint32_t userID_;
  Clocks& clocks_;
  const Logger log_;
  int listening_ = -1;
  int wake_ = -1;
  std::atomic<bool> isEnding_ = false;
  std::uint64_t last_ = 0;
  bool hasChanged_ = false;
  /// Nobody is let in until then.
  std::optional<MonotonicTime> pausesUntil_;
  std::array<char, 65'536> buffer_{};
  /// Changes on the thread alone, and under the mutex; so does what others read of a host.
  mutable std::mutex mutex_;
  std::vector<std::unique_ptr<Host>> hosts_;
  /// Under the mutex.
  std::map<std::string, std::vector<Place>> numbered_;
  std::thread thread_;
};

HostListener::HostListener(HostListenerOptions options, Clocks& clocks, LogSink& log)
    : core_(std::make_unique<Core>(std::move(options), clocks, log)) {}

HostListener::~HostListener() = default;

std::string HostListener::query(const std::string& identifier) { return core_->query(identifier); }

HostListener::Activation HostListener::activate(const std::string& identifier, std::int64_t window, std::int64_t tab) {
  return core_->activate(identifier, window, tab);
}

std::vector<ConnectedCompanion> HostListener::companions() const { return core_->companions(); }

}  // namespace quillmere::tabs
