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

constexpr std::size_t frameCount = 1024;
constexpr double sampleRateHz = 48000.0;
constexpr int roundCount = 101;
constexpr int callsARound = 400;

/// Makes the compiler believe that the memory is read and written here.
void touch(void* memory) { asm volatile("" : : "g"(memory) : "memory"); }

/// Two stereo buffers, as far from a cache line's start as allocators put them.
struct Buffers {
  Buffers() : input(2 * frameCount + 16), output(2 * frameCount + 16) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> sample(-1.0F, 1.0F);
    for (auto& value : input) value = sample(random);
    in = {2, frameCount * 8, align(input)};
    out = {2, frameCount * 8, align(output)};
  }
  static float* align(std::vector<float>& samples) {
    void* start = samples.data();
    std::size_t space = samples.size() * sizeof(float);
    return static_cast<float*>(std::align(16, frameCount * 8, start, space));
  }

  std::vector<float> input;
  std::vector<float> output;
  AudioBuffer in;
  AudioBuffer out;
};

double nanosecondsAFrame(const std::function<void()>& call) {
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < callsARound; ++i) call();
  const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - start;
  return elapsed.count() / (static_cast<double>(callsARound) * frameCount);
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

void report(const std::string& name, const std::function<void()>& ours, const Peer& peer, const char* target) {
  std::vector<double> our;
  std::vector<double> their;
  for (int round = 0; round < roundCount; ++round) {
    our.push_back(nanosecondsAFrame(ours));
    their.push_back(nanosecondsAFrame(peer.call));
  }
  std::printf(R"({"name": "%s", "value": %.5f, "unit": "ns/frame", "peer": "%s", "peerValue": %.5f)", name.c_str(),
              median(our), peer.name.c_str(), median(their));
  if (target != nullptr) std::printf(R"(, "target": "%s")", target);
  std::printf("}\n");
}

/// What one would write without thinking: the whole formula, frame by frame.
void plainLoop(const Buffers& buffers, IOWords& words) {
  const float coefficient = 0.0006942F;
  float gain = words.currentGain.load(std::memory_order_relaxed);
  const float target = words.targetGain.load(std::memory_order_relaxed);
  float peak = 0.0F;
  for (std::size_t i = 0; i < frameCount; ++i) {
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
  for (std::size_t i = 0; i < frameCount; ++i) {
    gain = gain + (target - gain) * coefficient;
    asm volatile("" : "+x"(gain));
  }
  return gain;
}

}  // namespace

int main() {
  Buffers buffers;
  IOWords words;
  const float coefficient = glideCoefficient(sampleRateHz);
  const auto process = [&] {
    processIO({.buffers = {&buffers.in, 1}}, {.buffers = {&buffers.out, 1}}, coefficient, words);
    touch(buffers.out.data);
  };
  const auto copy = [&] {
    std::memcpy(buffers.out.data, buffers.in.data, frameCount * 8);
    touch(buffers.out.data);
  };
  const auto plain = [&] {
    plainLoop(buffers, words);
    touch(buffers.out.data);
  };
  // Far from its target at every call, so that it glides through all of the buffer.
  const auto startGlide = [&] {
    words.targetGain = 0.9F;
    words.currentGain = 0.1F;
  };
  const auto glide = [&] {
    startGlide();
    process();
  };
  const auto plainGlide = [&] {
    startGlide();
    plain();
  };
  const auto chain = [&] {
    float gain = bareChain(0.1F, 0.9F, 0.0006942F);
    touch(&gain);
  };

  words.targetGain = 0.5F;
  words.currentGain = 0.5F;
  report("IO block, steady gain", process, {"memcpy", copy}, "ratio <= 1.5");
  report("IO block, steady gain, beside a plain loop", process, {"plain loop", plain}, nullptr);
  report("IO block, gliding gain", glide, {"bare dependency chain", chain}, "ratio <= 1.15");
  report("IO block, gliding gain, beside memcpy", glide, {"memcpy", copy}, nullptr);
  report("IO block, gliding gain, beside a plain loop", glide, {"plain loop", plainGlide}, nullptr);

  // A muted application: the gain has sunk as low as the filter takes it.
  words.targetGain = 0.0F;
  words.currentGain = 0.5F;
  for (int call = 0; call < 20000; ++call) process();
  report("IO block, muted and settled", process, {"memcpy", copy}, nullptr);
  return 0;
}
