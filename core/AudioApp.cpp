// Hashing of an application's record.
#include "core/AudioApp.h"

#include "detail/Hasher.h"

std::size_t std::hash<quillmere::AudioApp>::operator()(const quillmere::AudioApp& app) const noexcept {
  quillmere::detail::Hasher hasher;
  hasher.feed(std::string_view(app.bundleID));
  hasher.feed(std::string_view(app.name));
  hasher.feed(app.gain);
  hasher.feed(app.muted);
  hasher.feed(app.routedDeviceUID);
  return hasher.finish();
}
