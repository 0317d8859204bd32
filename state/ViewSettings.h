// The two settings that belong to the views alone, observable, written through at once.
// They pass through no other store.
#pragma once

#include <array>

#include "platform/UserDefaults.h"
#include "runtime/HomeThread.h"
#include "runtime/Observable.h"

namespace quillmere {

/// [main] throughout.
class ViewSettings {
 public:
  static constexpr const char* scrollKey = "scrollOverRowAdjustsVolume";
  static constexpr const char* bannerKey = "showDuckBanner";
  static constexpr std::array keys{scrollKey, bannerKey};

  /// Reads both keys once; an absent key or one of another type counts as true. `defaults` outlives this object.
  explicit ViewSettings(UserDefaults& defaults);

  /// Whether scrolling anywhere over a row moves its level.
  [[nodiscard]] const Observable<bool>& scrollOverRowAdjustsVolume() const { return scrollOverRowAdjustsVolume_; }
  /// Whether a running duck is announced by a banner.
  [[nodiscard]] const Observable<bool>& showDuckBanner() const { return showDuckBanner_; }
  void setScrollOverRowAdjustsVolume(bool adjusts);
  void setShowDuckBanner(bool shows);

 private:
  HomeThread home_;
  UserDefaults& defaults_;
  Observable<bool> scrollOverRowAdjustsVolume_;
  Observable<bool> showDuckBanner_;
};

}  // namespace quillmere
