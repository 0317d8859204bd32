// Takes the figures of docs/pipewire.md in a private session.
//   pipewire_probe handover MOVES QUANTUM    samples lost, doubled or silenced at start and release; latency added
//   pipewire_probe hold APPLICATION GAIN [OUTPUT]    taps and waits to be killed
//   pipewire_probe recovery TIMES            kill -9 while a tap is live: how long until the player is back
//   pipewire_probe restart TIMES             daemon and session manager restarted: how long until the tap is back
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "support/ChildProcess.h"
#include "support/CounterTrace.h"
#include "support/Machine.h"
#include "support/MonitorRecorder.h"
#include "support/Session.h"

namespace quillmere::test {
namespace {

std::string selfPath() {
  std::string path(4096, '\0');
  const auto length = readlink("/proc/self/exe", path.data(), path.size());
  path.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
  return path;
}

void rest(int millis) { std::this_thread::sleep_for(std::chrono::milliseconds(millis)); }

void describe(const char* what, const std::vector<Break>& breaks, int moves) {
  std::size_t silent = 0;
  long moved = 0;
  std::size_t longest = 0;
  for (const auto& entry : breaks) {
    silent += entry.silence;
    moved += std::labs(entry.lost);
    longest = std::max(longest, entry.silence);
  }
  std::cout << what << ": " << breaks.size() << " of " << moves << " with a break, longest silence " << longest
            << " samples, all silence " << silent << ", source samples lost or doubled " << moved << "\n";
  for (const auto& entry : breaks) {
    std::cout << "    at " << entry.at << ": silence " << entry.silence << ", source " << entry.lost << "\n";
  }
}

int handover(int moves, int quantum) {
  const auto latency = std::to_string(quantum) + "/48000";
  auto player = playSignal({"--app-id", "test.counter", "--signal", "counter", "--latency", latency});
  Machine machine;
  MonitorRecorder monitor(session::sinkA, latency);
  if (!machine.waitForSound("test.counter")) return 1;
  rest(200);
  std::vector<Break> starts;
  std::vector<Break> ends;
  std::mt19937 random(1);
  std::uniform_int_distribution<int> pause(0, 60);
  int whole = 0;
  for (int move = 0; move < moves; ++move) {
    auto from = monitor.size();
    auto tap = std::make_unique<TapUnderTest>(machine, "test.counter", 1.0F);
    if (!eventually([&] { return tap->calls() > 4; })) {
      std::cout << "move " << move << ": no sound in the tap\n"
                << machine.log.all() << run({"pw-link", "-l"}) << run({"pw-metadata"}) << run({"pw-cli", "ls", "Node"})
                << std::flush;
      return 1;
    }
    rest(100 + pause(random));
    auto breaks = breaksIn(monitor.samples(from));
    // No sample more or less between direct and tapped sound: the tap delays nothing.
    if (breaks.empty()) ++whole;
    starts.insert(starts.end(), breaks.begin(), breaks.end());
    from = monitor.size();
    tap->end();
    rest(250 + pause(random));
    breaks = breaksIn(monitor.samples(from));
    ends.insert(ends.end(), breaks.begin(), breaks.end());
  }
  describe("start", starts, moves);
  describe("release", ends, moves);
  std::cout << "latency: " << whole << " handovers without a break, each with the source's place in time unchanged\n"
            << machine.log.all();
  return 0;
}

int hold(const std::string& application, float gain, const std::string& output) {
  Machine machine;
  const TapUnderTest tap(machine, application, gain, output);
  while (true) rest(1000);
}

int recovery(int times) {
  auto player = playSignal({"--app-id", "test.player"});
  MonitorRecorder monitor(session::sinkA);
  Machine machine;
  if (!machine.waitForSound("test.player")) return 1;
  std::mt19937 random(2);
  std::uniform_int_distribution<int> moment(0, 400);
  std::size_t worst = 0;
  for (int i = 0; i < times; ++i) {
    ChildProcess holder({selfPath(), "hold", "test.player", "0.5"});
    eventually([&] { return std::fabs(monitor.nextPeak(1024) - 0.25F) < 0.01F; });
    rest(moment(random));
    const auto from = monitor.size();
    holder.kill();
    const bool isBack = eventually([&] { return std::fabs(monitor.nextPeak(512) - 0.5F) < 0.01F; });
    const auto samples = monitor.samples(from);
    std::size_t last = 0;
    for (std::size_t k = 0; k < samples.size(); ++k) {
      if (std::fabs(samples[k] - 0.5F) > 0.001F) last = k + 1;
    }
    worst = std::max(worst, last);
    const auto silent = std::count(samples.begin(), samples.end(), 0.0F);
    std::cout << "kill " << i << ": back " << isBack << " after " << static_cast<double>(last) / 48.0
              << " ms, silent samples " << silent << "\n";
  }
  std::cout << "worst: " << static_cast<double>(worst) / 48.0 << " ms\n";
  return 0;
}

int restart(int times) {
  Machine machine;
  auto player = std::make_unique<ChildProcess>(playSignal({"--app-id", "test.player"}));
  if (!machine.waitForSound("test.player")) return 1;
  const TapUnderTest tap(machine, "test.player", 0.5F);
  for (const std::string what : {"session manager", "daemon"}) {
    for (int i = 0; i < times; ++i) {
      eventually([calls = tap.calls(), &tap] { return tap.calls() > calls + 5; });
      player.reset();
      const double began = nowMillis();
      what == "daemon" ? session::control("restart", {"pipewire"}) : session::restartSessionManager();
      const double answered = nowMillis();
      player = std::make_unique<ChildProcess>(playSignal({"--app-id", "test.player"}));
      const auto calls = tap.calls();
      const bool isBack = eventually([&] { return tap.calls() > calls; }, std::chrono::seconds(10));
      std::cout << what << " " << i << ": tap live again " << isBack << ", " << nowMillis() - began
                << " ms after the restart began, " << nowMillis() - answered << " ms after the session was ready\n";
    }
  }
  std::cout << machine.log.all();
  return 0;
}

}  // namespace
}  // namespace quillmere::test

int main(int count, char** arguments) {
  using namespace quillmere::test;
  const std::vector<std::string> words(arguments + 1, arguments + count);
  const auto word = [&](std::size_t place, const char* otherwise) {
    return place < words.size() ? words[place] : otherwise;
  };
  if (!session::isPrivate()) {
    std::cerr << "run this with scripts/private-session --no-display -- ...\n";
    return 1;
  }
  if (word(0, "") == "handover") return handover(std::stoi(word(1, "40")), std::stoi(word(2, "1024")));
  if (word(0, "") == "hold") return hold(word(1, ""), std::stof(word(2, "1")), word(3, ""));
  if (word(0, "") == "recovery") return recovery(std::stoi(word(1, "10")));
  if (word(0, "") == "restart") return restart(std::stoi(word(1, "3")));
  std::cerr << "handover, hold, recovery or restart\n";
  return 1;
}
