// The application sets of Auto-Duck's defaults, and hashing of a rule.
#include "core/DuckRule.h"

#include "detail/Hasher.h"

namespace quillmere {

const std::set<std::string>& DuckRule::defaultMeetingApps() {
  static const std::set<std::string> apps{
      "us.zoom.xos",     "com.microsoft.teams2", "com.microsoft.teams", "com.tinyspeck.slackmacgap",
      "com.hnc.Discord", "com.apple.FaceTime",   "com.google.Chrome",   "com.apple.Safari",
  };
  return apps;
}

const std::set<std::string>& DuckRule::browserApps() {
  static const std::set<std::string> apps{
      "com.google.Chrome",     "com.apple.Safari",  "company.thebrowser.Browser",
      "com.microsoft.edgemac", "com.brave.Browser", "org.mozilla.firefox",
  };
  return apps;
}

const std::set<std::string>& DuckRule::defaultMusicApps() {
  static const std::set<std::string> apps = [] {
    std::set<std::string> music{
        "com.spotify.client", "com.apple.Music",  "com.apple.Podcasts", "com.apple.iTunes",
        "com.tidal.desktop",  "com.amazon.Music", "tv.plex.player",     "com.deezer.deezer-desktop",
    };
    music.insert(browserApps().begin(), browserApps().end());
    return music;
  }();
  return apps;
}

}  // namespace quillmere

std::size_t std::hash<quillmere::DuckRule>::operator()(const quillmere::DuckRule& rule) const noexcept {
  quillmere::detail::Hasher hasher;
  hasher.feed(rule.triggerBundleIDs);
  hasher.feed(rule.duckedBundleIDs);
  hasher.feed(rule.targetGain);
  hasher.feedInteger(rule.fadeMillis);
  hasher.feedInteger(rule.restoreDelayMillis);
  return hasher.finish();
}
