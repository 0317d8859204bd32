// Now playing and media keys against a bus of the test's own with players of all manners.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "platform/linux/MprisMediaKeys.h"
#include "platform/linux/MprisNowPlaying.h"
#include "platform/linux/mpris/PlayerWatcher.h"
#include "runtime/LoopExecutor.h"
#include "runtime/ThreadPoolExecutor.h"
#include "support/FakePlayer.h"
#include "support/PrivateBus.h"
#include "support/RecordingLogSink.h"
#include "support/TemporaryFolder.h"
#include "tests/platform/contract/NowPlayingContract.h"

namespace quillmere {
namespace {

using support::FakePlayer;
using support::PrivateBus;
using Calls = std::vector<std::string>;

/// A bus, a main thread, and the adapters on them.
class MprisMachine {
 public:
  MprisMachine() : mainThread_([this] { main_.run(); }) {}
  ~MprisMachine() {
    keys_.reset();
    source_.reset();
    watcher_.reset();
    main_.stop();
    mainThread_.join();
  }

  void watch(std::optional<std::string> address = std::nullopt, MprisNowPlaying::ProcessResolver resolve = {}) {
    mpris::PlayerWatcherOptions options;
    options.address = address ? *address : bus_.address();
    options.answerTimeout = std::chrono::milliseconds(600);
    options.retryPeriod = std::chrono::milliseconds(50);
    watcher_ = std::make_shared<mpris::PlayerWatcher>(clocks_, log_, options);
    const Runtime runtime{main_, background_, clocks_, log_, makeThreadSerialQueue};
    source_ = std::make_unique<MprisNowPlaying>(runtime, watcher_, std::move(resolve));
    keys_ = std::make_unique<MprisMediaKeys>(watcher_);
  }

  template <typename T>
  struct Answer {
    std::mutex mutex;
    std::condition_variable changed;
    bool hasCome = false;
    bool wasOnMain = false;
    T value;
  };
  template <typename T, typename Ask>
  T ask(const Ask& question) {
    auto answer = std::make_shared<Answer<T>>();
    question([this, answer](T value) {
      const std::lock_guard lock(answer->mutex);
      answer->value = std::move(value);
      answer->wasOnMain = main_.isCurrent();
      answer->hasCome = true;
      answer->changed.notify_all();
    });
    std::unique_lock lock(answer->mutex);
    EXPECT_TRUE(answer->changed.wait_for(lock, std::chrono::seconds(20), [&] { return answer->hasCome; }));
    repliesCameOnMain_ = repliesCameOnMain_ && answer->wasOnMain;
    return answer->value;
  }
  std::optional<NowPlayingInfo> info() {
    return ask<std::optional<NowPlayingInfo>>([this](const auto& reply) { source_->nowPlayingInfo(reply); });
  }
  std::optional<std::int32_t> pid() {
    return ask<std::optional<std::int32_t>>([this](const auto& reply) { source_->nowPlayingApplicationPID(reply); });
  }
  std::string title() {
    const auto told = info();
    if (!told || !told->contains(nowplaying::title)) return "";
    return std::get<std::string>(told->at(nowplaying::title));
  }
  double rate() {
    const auto told = info();
    return told ? std::get<double>(told->at(nowplaying::playbackRate)) : -1.0;
  }
  /// On the main thread, as the program does.
  void press(std::int32_t key, mediakey::Purpose purpose = mediakey::Purpose::person) {
    ask<bool>([&](const auto& reply) {
      main_.post([this, key, purpose, reply] {
        keys_->press(key, purpose);
        reply(true);
      });
    });
  }
  void pause() { press(mediakey::play, mediakey::Purpose::pause); }
  void resume() { press(mediakey::play, mediakey::Purpose::resume); }

  static ::testing::AssertionResult becomes(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < deadline) {
      if (condition()) return ::testing::AssertionSuccess();
      ::usleep(2000);
    }
    return ::testing::AssertionFailure() << "not within twenty seconds";
  }
  /// Everything that was sent before on this connection has been handled once this returns.
  void settle(FakePlayer& player) {
    static std::atomic<int> number = 0;
    const auto marker = "marker " + std::to_string(++number);
    player.change("Metadata", "{'xesam:title': <'" + marker + "'>}");
    ASSERT_TRUE(becomes([&] { return title() == marker; }));
  }

  bool repliesCameOnMain_ = true;
  PrivateBus bus_;
  support::RecordingLogSink log_;
  SystemClocks clocks_;
  LoopExecutor main_;
  ThreadPoolExecutor background_{2};
  std::thread mainThread_;
  std::shared_ptr<mpris::PlayerWatcher> watcher_;
  std::unique_ptr<MprisNowPlaying> source_;
  std::unique_ptr<MprisMediaKeys> keys_;
};

/// A place where a bus should listen: whoever comes is let in and shown out at once, and counted.
class ClosedDoor {
 public:
  ClosedDoor() : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const auto path = folder_.path("bus");
    sockaddr_un place{};
    place.sun_family = AF_UNIX;
    path.copy(place.sun_path, sizeof(place.sun_path) - 1);
    EXPECT_EQ(::bind(socket_, reinterpret_cast<const sockaddr*>(&place), sizeof(place)), 0);
    EXPECT_EQ(::listen(socket_, 16), 0);
    keeper_ = std::thread([this] {
      for (int caller = -1; (caller = ::accept(socket_, nullptr, nullptr)) >= 0;) {
        ::close(caller);
        ++callers_;
      }
    });
  }
  ~ClosedDoor() {
    ::shutdown(socket_, SHUT_RDWR);
    keeper_.join();
    ::close(socket_);
  }
  ClosedDoor(const ClosedDoor&) = delete;
  ClosedDoor& operator=(const ClosedDoor&) = delete;

  [[nodiscard]] std::string address() const { return "unix:path=" + folder_.path("bus"); }
  [[nodiscard]] int callerCount() const { return callers_; }

 private:
  support::TemporaryFolder folder_;
  int socket_;
  std::atomic<int> callers_ = 0;
  std::thread keeper_;
};

class Mpris : public ::testing::Test, protected MprisMachine {
 protected:
  ~Mpris() override { EXPECT_TRUE(repliesCameOnMain_); }
};

TEST_F(Mpris, WithoutPlayersThereIsNothing) {
  watch();
  EXPECT_EQ(info(), std::nullopt);
  EXPECT_EQ(pid(), std::nullopt);
}

TEST_F(Mpris, APlayerThatWasThereBeforeIsTold) {
  FakePlayer player(bus_.address(), "one");
  player.set("PlaybackStatus", "'Playing'");
  player.set("Metadata",
             "{'xesam:title': <'So What'>, 'xesam:artist': <['Miles Davis']>, 'xesam:album': <'Kind of Blue'>, "
             "'mpris:length': <int64 562500000>}");
  player.set("Position", "int64 60000000");
  watch();
  ASSERT_TRUE(becomes([&] { return title() == "So What"; }));
  const auto told = *info();
  EXPECT_EQ(std::get<std::string>(told.at(nowplaying::artist)), "Miles Davis");
  EXPECT_EQ(std::get<std::string>(told.at(nowplaying::album)), "Kind of Blue");
  EXPECT_EQ(std::get<double>(told.at(nowplaying::duration)), 562.5);
  EXPECT_EQ(std::get<double>(told.at(nowplaying::playbackRate)), 1.0);
  const auto elapsed = std::get<double>(told.at(nowplaying::elapsedTime));
  EXPECT_GE(elapsed, 60.0);
  EXPECT_LE(elapsed, 562.5);
}

TEST_F(Mpris, APlayerThatComesLaterIsToldAndForgottenWhenItGoes) {
  watch();
  EXPECT_EQ(info(), std::nullopt);
  {
    FakePlayer player(bus_.address(), "one");
    player.setTrack("Later", "Playing");
    EXPECT_TRUE(becomes([&] { return title() == "Later" && rate() == 1.0; }));
  }
  EXPECT_TRUE(becomes([&] { return !info(); }));
}

TEST_F(Mpris, TheProcessIsThatOfTheBusName) {
  FakePlayer player(bus_.address(), "one");
  player.set("PlaybackStatus", "'Playing'");
  watch();
  EXPECT_TRUE(becomes([&] { return pid() == static_cast<std::int32_t>(::getpid()); }));
}

TEST_F(Mpris, TheResolverHasTheLastWordOnTheProcess) {
  FakePlayer player(bus_.address(), "one");
  player.set("PlaybackStatus", "'Playing'");
  player.set("DesktopEntry", "'org.example.Player'");
  std::atomic<bool> sawEntry = false;
  watch(std::nullopt, [&](std::int32_t process, const std::string& entry) {
    if (process == ::getpid() && entry == "org.example.Player") sawEntry = true;
    return 4711;
  });
  EXPECT_TRUE(becomes([&] { return pid() == 4711 && sawEntry; }));
}

TEST_F(Mpris, TheDesktopEntryIsCutAndCleaned) {
  FakePlayer player(bus_.address(), "one");
  player.set("PlaybackStatus", "'Playing'");
  player.set("DesktopEntry", R"(' org.example\n)" + std::string(300000, 'x') + "'");
  std::mutex mutex;
  std::string seen;
  watch(std::nullopt, [&](std::int32_t process, const std::string& entry) {
    const std::lock_guard lock(mutex);
    if (!entry.empty()) seen = entry;
    return process;
  });
  const auto entry = [&] {
    const std::lock_guard lock(mutex);
    return seen;
  };
  EXPECT_TRUE(becomes([&] { return pid().has_value() && !entry().empty(); }));
  EXPECT_EQ(entry(), "org.example " + std::string(255 - 12, 'x'));
}

TEST_F(Mpris, PausedMeansRateZero) {
  FakePlayer player(bus_.address(), "one");
  player.setTrack("Song", "Playing");
  watch();
  ASSERT_TRUE(becomes([&] { return rate() == 1.0; }));
  player.change("PlaybackStatus", "'Paused'");
  EXPECT_TRUE(becomes([&] { return rate() == 0.0; }));
  EXPECT_EQ(title(), "Song");
}

TEST_F(Mpris, OfSeveralPlayersThePlayingOneCountsElseTheLast) {
  FakePlayer one(bus_.address(), "one");
  FakePlayer two(bus_.address(), "two");
  watch();
  one.setTrack("One", "Playing");
  two.setTrack("Two", "Paused");
  EXPECT_TRUE(becomes([&] { return title() == "One"; }));
  two.change("PlaybackStatus", "'Playing'");
  one.change("PlaybackStatus", "'Paused'");
  EXPECT_TRUE(becomes([&] { return title() == "Two"; }));
  two.change("PlaybackStatus", "'Paused'");
  EXPECT_TRUE(becomes([&] { return rate() == 0.0; }));
  EXPECT_EQ(title(), "Two");
}

TEST_F(Mpris, AMirrorOfOtherPlayersIsLeftOut) {
  FakePlayer mirror(bus_.address(), "playerctld");
  FakePlayer real(bus_.address(), "real");
  mirror.setTrack("Mirror", "Playing");
  real.setTrack("Real", "Paused");
  watch();
  EXPECT_TRUE(becomes([&] { return title() == "Real"; }));
}

TEST_F(Mpris, APlayerThatNeverAnswersDoesNotHideTheOthers) {
  FakePlayer silent(bus_.address(), "silent", FakePlayer::Manner::holds);
  FakePlayer real(bus_.address(), "real");
  real.set("PlaybackStatus", "'Paused'");
  real.set("Metadata", "{'xesam:title': <'Real'>}");
  watch();
  EXPECT_TRUE(becomes([&] { return title() == "Real"; }));
  EXPECT_TRUE(becomes([&] { return silent.questionCount() > 0; })) << "each is asked on its own connection";
}

TEST_F(Mpris, APlayerThatAnswersLateIsToldThen) {
  FakePlayer late(bus_.address(), "late", FakePlayer::Manner::holds);
  late.set("PlaybackStatus", "'Playing'");
  late.set("Metadata", "{'xesam:title': <'Late'>}");
  watch();
  ASSERT_TRUE(becomes([&] { return late.questionCount() > 0; }));
  EXPECT_EQ(info(), std::nullopt);
  late.release();
  EXPECT_TRUE(becomes([&] { return title() == "Late"; }));
}

TEST_F(Mpris, APlayerThatRefusedIsAskedAgain) {
  FakePlayer player(bus_.address(), "one", FakePlayer::Manner::refuses);
  player.set("PlaybackStatus", "'Playing'");
  player.set("Metadata", "{'xesam:title': <'At last'>}");
  watch();
  ASSERT_TRUE(becomes([&] { return player.questionCount() > 1; }));
  EXPECT_EQ(info(), std::nullopt);
  player.release();
  EXPECT_TRUE(becomes([&] { return title() == "At last"; }));
}

TEST_F(Mpris, AnAnswerOfAWrongTypeIsNoAnswer) {
  FakePlayer player(bus_.address(), "one");
  player.set("*", "('nonsense', 5)");
  FakePlayer real(bus_.address(), "real");
  real.setTrack("Real", "Paused");
  watch();
  EXPECT_TRUE(becomes([&] { return title() == "Real"; }));
}

TEST_F(Mpris, WrongTypesChangeNothingButThatTrack) {
  FakePlayer player(bus_.address(), "one");
  watch();
  player.change("PlaybackStatus", "'Playing'");
  player.change("Metadata", "{'xesam:title': <5>, 'xesam:album': <'Album'>, 'mpris:length': <'long'>}");
  EXPECT_TRUE(becomes([&] {
    const auto told = info();
    return told && told->contains(nowplaying::album);
  }));
  const auto told = *info();
  EXPECT_FALSE(told.contains(nowplaying::title));
  EXPECT_FALSE(told.contains(nowplaying::duration));
  EXPECT_EQ(std::get<double>(told.at(nowplaying::playbackRate)), 1.0);
  player.change("Metadata", "'no dictionary'");
  EXPECT_TRUE(becomes([&] { return !info()->contains(nowplaying::album); }));
  player.emitRaw("('org.mpris.MediaPlayer2.Player', 5)");
  player.emitRaw("('org.mpris.MediaPlayer2.Player', {'PlaybackStatus': <{'a': 1}>}, @as [])");
  player.change("Metadata", "{'xesam:title': <'Well again'>}");
  player.change("PlaybackStatus", "'Playing'");
  EXPECT_TRUE(becomes([&] { return title() == "Well again" && rate() == 1.0; }));
}

TEST_F(Mpris, AnEndlessTitleIsCut) {
  FakePlayer player(bus_.address(), "one");
  watch();
  player.setTrack(std::string(300000, 'x'), "Playing");
  EXPECT_TRUE(becomes([&] { return title() == std::string(1024, 'x'); }));
}

TEST_F(Mpris, AnInvalidatedPropertyIsAskedFor) {
  FakePlayer player(bus_.address(), "one");
  watch();
  settle(player);
  player.set("Metadata", "{'xesam:title': <'Asked for'>}");
  player.invalidate("Metadata");
  EXPECT_TRUE(becomes([&] { return title() == "Asked for"; }));
}

TEST_F(Mpris, ThePositionIsAskedForAndASeekIsFollowed) {
  FakePlayer player(bus_.address(), "one");
  player.set("PlaybackStatus", "'Paused'");
  player.set("Metadata", "{'xesam:title': <'Song'>}");
  watch();
  ASSERT_TRUE(becomes([&] { return title() == "Song"; }));
  player.emitSeeked(90000000);
  EXPECT_TRUE(becomes([&] {
    const auto told = info();
    return told && told->contains(nowplaying::elapsedTime) &&
           std::get<double>(told->at(nowplaying::elapsedTime)) == 90.0;
  }));
  player.set("Position", "int64 200000000");
  player.change("PlaybackStatus", "'Playing'");
  EXPECT_TRUE(becomes([&] { return std::get<double>(info()->at(nowplaying::elapsedTime)) >= 200.0; }));
}

TEST_F(Mpris, WithoutABusAnswersAreAbsent) {
  watch("");
  EXPECT_EQ(info(), std::nullopt);
  EXPECT_EQ(pid(), std::nullopt);
  press(mediakey::play);
  EXPECT_TRUE(becomes([&] { return log_.count("out of reach") == 1; }));
}

TEST_F(Mpris, ABusThatTurnsEveryoneAwayIsTriedAgainAndToldOnce) {
  ClosedDoor door;
  watch(door.address());
  EXPECT_TRUE(becomes([&] {
    EXPECT_EQ(info(), std::nullopt);
    EXPECT_EQ(pid(), std::nullopt);
    press(mediakey::play);
    return door.callerCount() >= 4;
  }));
  EXPECT_EQ(log_.count("out of reach"), 1);
}

TEST_F(Mpris, ABusThatComesBackIsFound) {
  bus_.stop();
  watch();
  EXPECT_EQ(info(), std::nullopt);
  bus_.start();
  FakePlayer player(bus_.address(), "one");
  player.set("PlaybackStatus", "'Playing'");
  player.set("Metadata", "{'xesam:title': <'Back'>}");
  EXPECT_TRUE(becomes([&] { return title() == "Back"; }));
}

TEST_F(Mpris, ABusThatGoesTakesItsPlayersAlong) {
  FakePlayer player(bus_.address(), "one");
  player.setTrack("Song", "Playing");
  watch();
  ASSERT_TRUE(becomes([&] { return title() == "Song"; }));
  bus_.stop();
  EXPECT_TRUE(becomes([&] { return !info(); }));
}

TEST_F(Mpris, AKeyPausesAndResumes) {
  FakePlayer player(bus_.address(), "one");
  player.obey();
  watch();
  player.setTrack("Song", "Playing");
  ASSERT_TRUE(becomes([&] { return title() == "Song" && rate() == 1.0; }));
  pause();
  ASSERT_TRUE(becomes([&] { return rate() == 0.0; }));
  resume();
  EXPECT_TRUE(becomes([&] { return rate() == 1.0; }));
  EXPECT_EQ(player.calls(), (Calls{"Pause", "Play"}));
}

TEST_F(Mpris, APauseMadeWhileATrackWasToldIsResumedThoughItsTitleGoesMeanwhile) {
  FakePlayer player(bus_.address(), "one");
  player.obey();
  watch();
  player.setTrack("Song", "Playing");
  ASSERT_TRUE(becomes([&] { return title() == "Song" && rate() == 1.0; }));
  pause();
  ASSERT_TRUE(becomes([&] { return rate() == 0.0; }));
  player.change("Metadata", "@a{sv} {}");
  ASSERT_TRUE(becomes([&] { return title().empty(); }));
  resume();
  EXPECT_TRUE(becomes([&] { return player.calls() == Calls{"Pause", "Play"}; }));
}

TEST_F(Mpris, APauseThatSomebodyElseHasMadeIsNotUndone) {
  FakePlayer player(bus_.address(), "one");
  player.obey();
  watch();
  player.setTrack("Song", "Playing");
  ASSERT_TRUE(becomes([&] { return title() == "Song" && rate() == 1.0; }));
  player.change("PlaybackStatus", "'Paused'");
  ASSERT_TRUE(becomes([&] {
    const auto current = watcher_->current();
    return current && !current->isPlaying();
  })) << "the watcher knows, the program has not been told yet";
  pause();
  resume();
  // The watcher's thread takes one after the other: once this has arrived, nothing of the above is under way.
  press(mediakey::next);
  ASSERT_TRUE(becomes([&] { return !player.calls().empty(); }));
  EXPECT_EQ(player.calls(), Calls{"Next"});
  EXPECT_EQ(rate(), 0.0);
}

TEST_F(Mpris, TwoQuickPressesOfAPersonAreTwoPresses) {
  FakePlayer player(bus_.address(), "one");
  player.obey();
  watch();
  player.setTrack("Song", "Playing");
  ASSERT_TRUE(becomes([&] { return title() == "Song" && rate() == 1.0; }));
  press(mediakey::play);
  press(mediakey::play);
  EXPECT_TRUE(becomes([&] { return player.calls() == Calls{"PlayPause", "PlayPause"}; }));
  settle(player);
  EXPECT_EQ(rate(), 1.0) << "stopped and gone on";
}

TEST_F(Mpris, APersonsPressIsForTheTrackThatIsShown) {
  FakePlayer shown(bus_.address(), "one");
  FakePlayer other(bus_.address(), "two");
  watch();
  shown.setTrack("Shown", "Playing");
  ASSERT_TRUE(becomes([&] { return title() == "Shown"; }));
  other.setTrack("Other", "Playing");
  ASSERT_TRUE(becomes([&] {
    const auto current = watcher_->current();
    return current && current->track.title == "Other";
  })) << "the watcher knows, the program has not been told yet";
  press(mediakey::play);
  ASSERT_TRUE(becomes([&] { return title() == "Other"; }));
  press(mediakey::play);
  EXPECT_TRUE(becomes([&] { return other.calls() == Calls{"PlayPause"}; }));
  EXPECT_EQ(shown.calls(), Calls{"PlayPause"});
}

TEST_F(Mpris, NextAndPreviousReachThePlayer) {
  FakePlayer player(bus_.address(), "one");
  watch();
  settle(player);
  press(mediakey::next);
  press(mediakey::previous);
  EXPECT_TRUE(becomes([&] { return player.calls() == Calls{"Next", "Previous"}; }));
}

TEST_F(Mpris, AKeyForAHangingPlayerHoldsNobodyUp) {
  FakePlayer player(bus_.address(), "one", FakePlayer::Manner::holds);
  watch();
  ASSERT_TRUE(becomes([&] { return player.questionCount() > 0; }));
  player.setTrack("Song", "Playing");
  ASSERT_TRUE(becomes([&] { return title() == "Song" && rate() == 1.0; }));
  pause();
  press(mediakey::next);
  EXPECT_TRUE(becomes([&] { return player.calls() == Calls{"Pause", "Next"}; }));
  EXPECT_EQ(title(), "Song");
}

TEST_F(Mpris, EndingWithQuestionsUnderWayIsClean) {
  FakePlayer player(bus_.address(), "one", FakePlayer::Manner::holds);
  watch();
  ASSERT_TRUE(becomes([&] { return player.questionCount() > 0; }));
}

TEST_F(Mpris, ManyPlayersAreTooMany) {
  std::vector<std::unique_ptr<FakePlayer>> players;
  for (int index = 0; index < 70; ++index) {
    players.push_back(std::make_unique<FakePlayer>(bus_.address(), "p" + std::to_string(index)));
    players.back()->set("PlaybackStatus", "'Paused'");
  }
  watch();
  EXPECT_TRUE(becomes([&] { return log_.count("there are too many") == 6; }));
  EXPECT_TRUE(becomes([&] { return info().has_value(); }));
}

TEST_F(Mpris, IsStaleWhileSomebodyHasToAskAndTellsByItselfOtherwise) {
  watch();
  EXPECT_TRUE(becomes([&] { return source_->changes().staleAt() == std::nullopt; })) << "nobody plays";
  FakePlayer player(bus_.address(), "asked");
  player.setTrack("Song", "Playing");
  EXPECT_TRUE(becomes([&] { return title() == "Song" && source_->changes().staleAt() == MonotonicTime::min(); }))
      << "its position moves";
  player.setTrack("Song", "Paused");
  EXPECT_TRUE(becomes([&] { return rate() == 0.0 && source_->changes().staleAt() == std::nullopt; }));
}

class MprisHost : private MprisMachine {
 public:
  MprisHost() { watch(); }
  using MprisMachine::info;
  using MprisMachine::pid;
  void play(const std::string& wanted, bool isPlaying) {
    if (!player_) player_ = std::make_unique<FakePlayer>(bus_.address(), "contract");
    player_->setTrack(wanted, isPlaying ? "Playing" : "Paused");
    EXPECT_TRUE(becomes([&] { return title() == wanted && (rate() > 0.01) == isPlaying && pid() == playerPID(); }));
  }
  void end() {
    player_.reset();
    EXPECT_TRUE(becomes([&] { return !info(); }));
  }
  [[nodiscard]] NowPlayingSource& source() { return *source_; }
  [[nodiscard]] std::int32_t playerPID() const { return static_cast<std::int32_t>(::getpid()); }
  [[nodiscard]] bool repliesCameOnMain() const { return repliesCameOnMain_; }

 private:
  std::unique_ptr<FakePlayer> player_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, NowPlayingContract, MprisHost);

}  // namespace
}  // namespace quillmere
