// The IO algorithm. Runs on [audio] throughout.
#include "engine/IOProcessor.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "io/FaintGain.h"
#include "io/SteadyGain.h"

namespace quillmere {

namespace {

struct Layout {
  /// As the buffer says, possibly 0.
  std::uint32_t rawChannels = 0;
  /// At least 1.
  std::size_t channels = 1;
  std::size_t frames = 0;
};

Layout layoutOf(const AudioBuffer& buffer) {
  const std::size_t channels = std::max(buffer.channelCount, 1U);
  return {buffer.channelCount, channels, buffer.byteCount / (channels * sizeof(float))};
}

/// One step of the one-pole filter. The order of operations is part of the contract: three roundings a frame.
float glide(float gain, float target, float coefficient) { return gain + (target - gain) * coefficient; }

float larger(float peak, float sample) {
  const float magnitude = std::fabs(sample);
  return magnitude > peak ? magnitude : peak;
}

struct Result {
  float gain = 0.0F;
  float peak = 0.0F;
};

/// Whether a gain is on the last of its way to silence. It is looked for once in so many frames.
constexpr std::size_t framesBetweenLooks = 256;
bool fadesFaintly(float gain, float target) { return target == 0.0F && !std::signbit(gain) && io::isFaint(gain); }

/// Frames until the gain has come to rest; all of them where it hasn't.
io::Fade glideStereo(const float* input, float* output, std::size_t frames, float gain, float target, float coefficient,
                     float peak) {
  float peakLeft = peak;
  float peakRight = peak;
  std::size_t frame = 0;
  for (; frame < frames; ++frame) {
    const float next = glide(gain, target, coefficient);
    if (std::bit_cast<std::uint32_t>(next) == std::bit_cast<std::uint32_t>(gain)) break;
    gain = next;
    const float left = input[2 * frame];
    const float right = input[2 * frame + 1];
    peakLeft = larger(peakLeft, left);
    peakRight = larger(peakRight, right);
    output[2 * frame] = gain * left;
    output[2 * frame + 1] = gain * right;
  }
  return {gain, peakRight > peakLeft ? peakRight : peakLeft, frame};
}

/// Stereo to stereo, which is what a tap gives. The gain is a function of its own last value alone, so once a step
/// leaves its bits unchanged no later one can change them, and the rest of the buffer is a plain multiply.
Result renderStereo(const float* input, float* output, std::size_t frames, float gain, float target,
                    float coefficient) {
  Result result{gain, 0.0F};
  std::size_t done = 0;
  for (bool moves = true; moves && done < frames;) {
    const bool isFaint = fadesFaintly(result.gain, target);
    const auto wanted = isFaint ? frames - done : std::min(frames - done, framesBetweenLooks);
    const auto part =
        isFaint
            ? io::fadeFaint(input + 2 * done, output + 2 * done, wanted, result.gain, coefficient, result.peak)
            : glideStereo(input + 2 * done, output + 2 * done, wanted, result.gain, target, coefficient, result.peak);
    // Taken over only where it has moved: what is known to be unchanged need not be waited for.
    if (part.frames > 0) result = {part.gain, part.peak};
    done += part.frames;
    moves = part.frames == wanted;
  }
  const auto steady = io::isFaint(result.gain) ? io::steadyFaintGain : io::steadyGain;
  result.peak = steady(input + 2 * done, output + 2 * done, 2 * (frames - done), result.gain, result.peak);
  return result;
}

/// Any other pair of layouts: no tap gives one, so it is only right, not fast.
Result renderAny(const float* input, const Layout& in, float* output, const Layout& out, std::size_t frames, float gain,
                 float target, float coefficient) {
  float peak = 0.0F;
  for (std::size_t frame = 0; frame < frames; ++frame) {
    const float left = input[frame * in.channels];
    const float right = in.rawChannels >= 2 ? input[frame * in.channels + 1] : left;
    gain = glide(gain, target, coefficient);
    peak = larger(larger(peak, left), right);
    output[frame * out.channels] = gain * left;
    output[frame * out.channels + 1] = gain * right;
    for (std::size_t channel = 2; channel < out.channels; ++channel) output[frame * out.channels + channel] = 0.0F;
  }
  return {gain, peak};
}

}  // namespace

float glideCoefficient(double sampleRateHz) {
  const double rate = std::max(8000.0, sampleRateHz);
  const double alpha = std::exp(-1.0 / (rate * 0.03));
  return static_cast<float>(1.0 - alpha);
}

void processIO(const AudioBufferList& input, const AudioBufferList& output, float coefficient, IOWords& words) {
  if (input.buffers.empty() || input.buffers.front().data == nullptr) return;
  if (output.buffers.empty() || output.buffers.front().data == nullptr) return;
  const AudioBuffer& source = input.buffers.front();
  const AudioBuffer& sink = output.buffers.front();
  const Layout in = layoutOf(source);
  const Layout out = layoutOf(sink);
  const std::size_t frames = std::min(in.frames, out.frames);

  Result result{words.currentGain.load(std::memory_order_relaxed), 0.0F};
  if (frames > 0) {
    if (out.rawChannels < 2) preconditionFailure("the IO block was given an output of fewer than two channels");
    const float target = words.targetGain.load(std::memory_order_relaxed);
    const bool isStereo = in.rawChannels == 2 && out.rawChannels == 2;
    result = isStereo ? renderStereo(source.data, sink.data, frames, result.gain, target, coefficient)
                      : renderAny(source.data, in, sink.data, out, frames, result.gain, target, coefficient);
  }

  words.currentGain.store(result.gain, std::memory_order_relaxed);
  const float decayed = words.recentInputPeak.load(std::memory_order_relaxed) * std::bit_cast<float>(0x3f666666U);
  words.recentInputPeak.store(result.peak > decayed ? result.peak : decayed, std::memory_order_relaxed);
  // The only writer: no read-modify-write is needed.
  words.peaksWritten.store(words.peaksWritten.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

}  // namespace quillmere
