// Hashing of a profile.
#include "core/Profile.h"

#include "detail/Hasher.h"

std::size_t std::hash<quillmere::Profile>::operator()(const quillmere::Profile& profile) const noexcept {
  quillmere::detail::Hasher hasher;
  for (const auto byte : profile.id.bytes) hasher.feedByte(byte);
  hasher.feed(std::string_view(profile.name));
  hasher.feedInteger(profile.apps.size());
  for (const auto& app : profile.apps) hasher.feedInteger(std::hash<quillmere::AudioApp>{}(app));
  hasher.feed(profile.focusModeID);
  hasher.feed(profile.updatedAt.secondsSinceReference);
  return hasher.finish();
}
