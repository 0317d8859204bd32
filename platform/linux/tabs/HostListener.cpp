// Accepting, reading, dropping, and the numbers that a query gives out.
#include "tabs/HostListener.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <mutex>
#include <utility>

#include "loop/DescriptorWatch.h"
#include "loop/HostLoop.h"
#include "loop/HostTimer.h"
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

class HostListener::Core : public std::enable_shared_from_this<Core> {
 public:
  Core(HostLoop& loop, HostListenerOptions options, Clocks& clocks, LogSink& log)
      : loop_(loop),
        options_(std::move(options)),
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
  }

  /// [any]
  void begin() {
    if (listening_ < 0) return;
    loop_.perform([this] {
      clock_.emplace(loop_, [this] { lookAtTimes(); });
      knocks_.emplace(loop_, listening_, readable, [this](GIOCondition) { accept(); });
    });
  }

  /// Nothing comes any more. [any]
  void end() {
    loop_.perform([this] {
      clock_.reset();
      knocks_.reset();
      const std::scoped_lock lock(mutex_);
      for (const auto& host : hosts_) {
        host->watch.reset();
        ::close(host->socket);
      }
      hosts_.clear();
    });
    // The name stays: a mixer that has started meanwhile may own it already, and a host that finds nobody there waits.
    if (listening_ >= 0) ::close(listening_);
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
    std::optional<MonotonicTime> deadline{};
    FrameReader reader{};
    BrowserFacts browser{};
    std::optional<std::string> hostVersion{};
    std::optional<std::string> companionVersion{};
    TabBook book{};
    /// What the socket has not taken yet; under the mutex for every thread.
    std::string waiting{};
    /// The loop's own: why it is to be dropped.
    std::string fault{};
    /// The loop's own: the other end has closed.
    bool isGone = false;
    /// The loop's own; absent until its browser is known.
    std::optional<DescriptorWatch> watch{};

    [[nodiscard]] bool isGreeted() const { return hostVersion && companionVersion; }
    [[nodiscard]] bool isToGo() const { return isGone || !fault.empty(); }
  };

  /// Where a window was at a query.
  struct Place {
    std::uint64_t host;
    WindowID window;
    std::vector<TabID> tabs;
  };

  /// Under the mutex: the loop hands it over.
  void send(Host& host, const std::string& message) {
    host.waiting += framed(message);
    loop_.post([weak = weak_from_this(), number = host.number] {
      const auto self = weak.lock();
      auto* asked = self ? self->find(number) : nullptr;
      if (asked != nullptr && asked->watch) self->serve(*asked, G_IO_OUT);
    });
  }

  /// Null where it has gone. [host]
  Host* find(std::uint64_t number) {
    const auto host = std::ranges::find(hosts_, number, [](const auto& each) { return each->number; });
    return host == hosts_.end() ? nullptr : host->get();
  }

  // What follows is [host].

  /// Hands over what the socket takes now; true if more waits.
  bool flush(Host& host) {
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
        return false;
      }
    }
    if (host.waiting.size() > mostWaiting) host.fault = "it doesn't read what it is asked";
    return !host.waiting.empty();
  }

  /// May drop the host.
  void serve(Host& host, GIOCondition come) {
    if ((come & G_IO_OUT) != 0) host.watch->want(flush(host) ? readableOrWritable : readable);
    if ((come & (G_IO_IN | G_IO_HUP | G_IO_ERR)) != 0) read(host);
    settle();
  }

  void lookAtTimes() {
    const auto now = clocks_.monotonicNow();
    for (const auto& host : hosts_) {
      if (!host->deadline || *host->deadline > now || host->isToGo()) continue;
      host->fault = host->isGreeted() ? "it doesn't end what it has begun" : "it doesn't say who it is";
    }
    if (pausesUntil_ && *pausesUntil_ <= now) {
      pausesUntil_.reset();
      knocks_->want(readable);
    }
    settle();
  }

  /// Ends what has to end, and looks ahead.
  void settle() {
    dropThoseToGo();
    auto next = pausesUntil_;
    for (const auto& host : hosts_) {
      if (host->deadline && (!next || *host->deadline < *next)) next = host->deadline;
    }
    if (next) {
      clock_->set(*next - clocks_.monotonicNow());
    } else {
      clock_->set(std::nullopt);
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
      host->watch.reset();
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
      if (errno != EAGAIN && errno != EINTR && errno != ECONNABORTED) {
        pausesUntil_ = clocks_.monotonicNow() + options_.patience;
        knocks_->want(GIOCondition{});
        settle();
      }
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
    {
      const std::scoped_lock lock(mutex_);
      hosts_.push_back(std::make_unique<Host>(Host{.socket = socket, .number = ++last_, .peer = *peer}));
    }
    // Which browser it is may have to be looked for on the disk, for which nothing else waits.
    options_.identify(peer->pid, [weak = weak_from_this(), held = std::weak_ptr(loop_.shared_from_this()),
                                  number = last_](BrowserFacts facts) {
      const auto loop = held.lock();
      if (!loop) return;
      loop->post([weak, number, facts = std::move(facts)] {
        const auto self = weak.lock();
        auto* host = self ? self->find(number) : nullptr;
        if (host != nullptr) self->begin(*host, facts);
      });
    });
  }

  void begin(Host& host, const BrowserFacts& facts) {
    host.deadline = clocks_.monotonicNow() + options_.patience;
    host.watch.emplace(loop_, host.socket, readable, [this, &host](GIOCondition come) { serve(host, come); });
    {
      const std::scoped_lock lock(mutex_);
      host.browser = facts;
      // The mixer speaks first: a host tells nothing to a mixer that hangs.
      host.waiting = framed(greeting("mixer", options_.version));
    }
    serve(host, G_IO_OUT);
  }

  HostLoop& loop_;
  const HostListenerOptions options_;
  const std::uint32_t userID_;
  Clocks& clocks_;
  const Logger log_;
  int listening_ = -1;
  // What follows is the loop's own, but for what is told otherwise.
  std::optional<DescriptorWatch> knocks_;
  std::optional<HostTimer> clock_;
  std::uint64_t last_ = 0;
  bool hasChanged_ = false;
  /// Nobody is let in until then.
  std::optional<MonotonicTime> pausesUntil_;
  std::array<char, 65'536> buffer_{};
  /// Changes on the loop alone, and under the mutex; so does what others read of a host.
  mutable std::mutex mutex_;
  std::vector<std::unique_ptr<Host>> hosts_;
  /// Under the mutex.
  std::map<std::string, std::vector<Place>> numbered_;
};

HostListener::HostListener(HostListenerOptions options, Clocks& clocks, LogSink& log)
    : loop_(HostLoop::ofProcess()), core_(std::make_shared<Core>(*loop_, std::move(options), clocks, log)) {
  core_->begin();
}

HostListener::~HostListener() { core_->end(); }

std::string HostListener::query(const std::string& identifier) { return core_->query(identifier); }

HostListener::Activation HostListener::activate(const std::string& identifier, std::int64_t window, std::int64_t tab) {
  return core_->activate(identifier, window, tab);
}

std::vector<ConnectedCompanion> HostListener::companions() const { return core_->companions(); }

}  // namespace quillmere::tabs
