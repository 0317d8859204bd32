// The scale of the desktop's own volume sliders: the cube root of the linear volume. Pure: [any].
#pragma once

#include <span>
#include <vector>

namespace quillmere::pipewire {

/// Slider position of a linear volume, limited to 0..1; NaN gives 0.
[[nodiscard]] float scalarFromLinear(float linear);
/// Linear volume of a slider position, which is limited to 0..1; NaN gives 0.
[[nodiscard]] float linearFromScalar(float scalar);
/// The loudest channel stands for the device, as in the desktop's sliders. Empty gives 0.
[[nodiscard]] float loudest(std::span<const float> linear);
/// `linear` brought to a new loudest channel with the balance kept; from silence all channels become equal.
[[nodiscard]] std::vector<float> withLoudest(std::span<const float> linear, float newLoudest);

}  // namespace quillmere::pipewire
