// The IO block in nanoseconds a frame, steady and gliding, beside a copy of the same buffers and a plain loop.
// Each figure and its peer are measured in turn, many short rounds each, and reported as medians of the rounds.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "engine/IOProcessor.h"

namespace {

using namespace quillmere;

/// What the daemon's usual configuration has.
constexpr std::uint32_t usualFrames = 1024;
constexpr double sampleRateHz = 48000.0;
constexpr int roundCount = 101;
constexpr std::size_t framesARound = std::size_t{400} * usualFrames;

/// Makes the compiler believe that the memory is read and written here.
void touch(void* memory) { asm volatile("" : : "g"(memory) : "memory"); }

/// Two stereo buffers of up to so many frames, where a tap has them.
constexpr std::size_t mostFrames = 8192;
struct Samples {
  alignas(64) std::array<float, 2 * mostFrames> input{};
  alignas(64) std::array<float, 2 * mostFrames> output{};
};

struct Buffers {
  explicit Buffers(std::uint32_t frameCount)
      : frames(frameCount),
        in{2, frameCount * 8, samples->input.data()},
        out{2, frameCount * 8, samples->output.data()} {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> sample(-1.0F, 1.0F);
    for (auto& value : samples->input) value = sample(random);
  }

  std::size_t frames;
  std::unique_ptr<Samples> samples = std::make_unique<Samples>();
  AudioBuffer in;
  AudioBuffer out;
};

double nanosecondsAFrame(std::size_t frames, std::size_t calls, const std::function<void()>& call) {
  const auto start = std::chrono::steady_clock::now();
  for (std::size_t i = 0; i < calls; ++i) call();
  const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - start;
  return elapsed.count() / static_cast<double>(calls * frames);
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

struct Peer {
  std::string name;
  std::function<void()> call;
};

void print(const std::string& name, double our, const std::string& peer, double their, const char* target) {
  std::printf(R"({"name": "%s", "value": %.5f, "unit": "ns/frame", "peer": "%s", "peerValue": %.5f)", name.c_str(), our,
              peer.c_str(), their);
  if (target != nullptr) std::printf(R"(, "target": "%s")", target);
  std::printf("}\n");
}

void report(const std::string& name, std::size_t frames, const std::function<void()>& ours, const Peer& peer,
            const char* target) {
  std::vector<double> our;
  std::vector<double> their;
  for (int round = 0; round < roundCount; ++round) {
    our.push_back(nanosecondsAFrame(frames, framesARound / frames, ours));
    their.push_back(nanosecondsAFrame(frames, framesARound / frames, peer.call));
  }
  print(name, median(our), peer.name, median(their), target);
}

/// What one would write without thinking: the whole formula, frame by frame.
void plainLoop(const Buffers& buffers, IOWords& words) {
  const float coefficient = 0.0006942F;
  float gain = words.currentGain.load(std::memory_order_relaxed);
  const float target = words.targetGain.load(std::memory_order_relaxed);
  float peak = 0.0F;
  for (std::size_t i = 0; i < buffers.frames; ++i) {
    const float left = buffers.in.data[2 * i];
    const float right = buffers.in.data[2 * i + 1];
    gain += (target - gain) * coefficient;
    peak = std::max({peak, left < 0 ? -left : left, right < 0 ? -right : right});
    buffers.out.data[2 * i] = gain * left;
    buffers.out.data[2 * i + 1] = gain * right;
  }
  words.currentGain.store(gain, std::memory_order_relaxed);
  words.recentInputPeak.store(peak, std::memory_order_relaxed);
}

/// The gain's own three dependent operations and nothing else: no gliding block can be faster than this.
float bareChain(float gain, float target, float coefficient) {
  for (std::size_t i = 0; i < usualFrames; ++i) {
    gain = gain + (target - gain) * coefficient;
    asm volatile("" : "+x"(gain));
  }
  return gain;
}

/// The block and a copy of the same buffers.
struct Bench {
  explicit Bench(std::uint32_t frames) : buffers(frames) {}

  void process() {
    processIO({.buffers = {&buffers.in, 1}}, {.buffers = {&buffers.out, 1}}, coefficient, words);
    touch(buffers.out.data);
  }
  void copy() const {
    std::memcpy(buffers.out.data, buffers.in.data, buffers.frames * 8);
    touch(buffers.out.data);
  }
  Peer memcpyPeer() const {
    return {"memcpy", [this] { copy(); }};
  }
  void setGain(float current, float target) {
    words.targetGain = target;
    words.currentGain = current;
  }

  float coefficient = glideCoefficient(sampleRateHz);
  Buffers buffers;
  IOWords words;
};

void reportSteady(std::uint32_t frames) {
  Bench bench(frames);
  bench.setGain(0.5F, 0.5F);
  const auto size = frames == usualFrames ? std::string() : ", " + std::to_string(frames) + " frames a cycle";
  // In shorter cycles both are mostly their calls.
  const auto* target = frames < usualFrames ? nullptr : "ratio <= 1.5";
  report("IO block, steady gain" + size, frames, [&] { bench.process(); }, bench.memcpyPeer(), target);
  // A muted application: the gain has sunk as low as the filter takes it.
  bench.setGain(0.5F, 0.0F);
  for (std::size_t done = 0; done < 10 * static_cast<std::size_t>(sampleRateHz); done += frames) bench.process();
  report("IO block, muted and settled" + size, frames, [&] { bench.process(); }, bench.memcpyPeer(), target);
}

void reportGlides() {
  Bench bench(usualFrames);
  // Far from its target at every call, so that it glides through all of the buffer.
  const auto glide = [&] {
    bench.setGain(0.1F, 0.9F);
    bench.process();
  };
  const auto plain = [&] {
    plainLoop(bench.buffers, bench.words);
    touch(bench.buffers.out.data);
  };
  const auto plainGlide = [&] {
    bench.setGain(0.1F, 0.9F);
    plain();
  };
  const auto chain = [&] {
    float gain = bareChain(0.1F, 0.9F, 0.0006942F);
    touch(&gain);
  };
  report("IO block, gliding gain", usualFrames, glide, {"bare dependency chain", chain}, "ratio <= 1.15");
  report("IO block, gliding gain, beside memcpy", usualFrames, glide, bench.memcpyPeer(), nullptr);
  report("IO block, gliding gain, beside a plain loop", usualFrames, glide, {"plain loop", plainGlide}, nullptr);
  bench.setGain(0.5F, 0.5F);
  report(
      "IO block, steady gain, beside a plain loop", usualFrames, [&] { bench.process(); }, {"plain loop", plain},
      nullptr);
}

/// The dearest callback from full level to rest, each place of the glide by the best of many: a single callback is so
/// short that whatever interrupts one counts many times.
double dearestCallback(const std::function<void()>& start, const std::function<void()>& callback) {
  constexpr std::size_t callbacks = 200;
  std::vector<std::vector<double>> times(callbacks);
  for (int round = 0; round < 31; ++round) {
    start();
    for (auto& place : times) place.push_back(nanosecondsAFrame(usualFrames, 1, callback));
  }
  double dearest = 0;
  for (const auto& place : times) dearest = std::max(dearest, *std::min_element(place.begin(), place.end()));
  return dearest;
}

/// The way to silence ends among numbers that many processors are slow with.
void reportMuting() {
  Bench bench(usualFrames);
  const auto process = [&] { bench.process(); };
  const double muting = dearestCallback([&] { bench.setGain(1.0F, 0.0F); }, process);
  const double gliding = dearestCallback([] {},
                                         [&] {
                                           bench.setGain(0.1F, 0.9F);
                                           bench.process();
                                         });
  const double plain = dearestCallback([&] { bench.setGain(1.0F, 0.0F); },
                                       [&] {
                                         plainLoop(bench.buffers, bench.words);
                                         touch(bench.buffers.out.data);
                                       });
  print("IO block, dearest callback while muting", muting, "callback of any other glide", gliding, "ratio <= 2");
  print("IO block, dearest callback while muting, beside a plain loop", muting, "plain loop", plain, nullptr);
}

}  // namespace

int main() {
  for (const auto frames : {256U, usualFrames, 8192U}) reportSteady(frames);
  reportGlides();
  reportMuting();
  return 0;
}
