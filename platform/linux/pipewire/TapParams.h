// What a tap's node tells of itself and its ports in the daemon's parameter format. [any]
#pragma once

#include <cstdint>

struct spa_latency_info;
struct spa_pod;
struct spa_pod_builder;

namespace quillmere::pipewire::params {

// Each builds one parameter in the builder's memory, and returns it.

/// Of a node or a stream: stereo, 32-bit floats, a channel a buffer, at `rate` Hz, or at any with 0. By this the
/// session manager knows a tap's node as audio, and it is what streams are made that have no layout yet; the ports
/// decide what is really exchanged.
[[nodiscard]] const spa_pod* stereoFormat(spa_pod_builder& builder, std::uint32_t rate);
/// Of every port: one channel of 32-bit floats.
[[nodiscard]] const spa_pod* portFormat(spa_pod_builder& builder);
[[nodiscard]] const spa_pod* portIO(spa_pod_builder& builder);
/// In plain memory, and large enough for the longest cycle that a daemon is configured for.
[[nodiscard]] const spa_pod* portBuffers(spa_pod_builder& builder);
[[nodiscard]] const spa_pod* latency(spa_pod_builder& builder, const spa_latency_info& info);

[[nodiscard]] bool isPortFormat(const spa_pod* format);

/// Whether a port configuration speaks of the inputs.
[[nodiscard]] bool configuresInputs(const spa_pod* portConfig);

}  // namespace quillmere::pipewire::params
