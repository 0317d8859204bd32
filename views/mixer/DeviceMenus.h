// The output devices as entries of a menu: where sound goes, for the whole machine or for one application.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "engine/AudioOutputDevice.h"
#include "views/shared/MenuModel.h"

namespace quillmere {

/// One entry a device, by name; the one of `checkedUID` is marked, if it is there.
[[nodiscard]] std::vector<MenuEntry> deviceEntries(const std::vector<AudioOutputDevice>& devices,
                                                   const std::optional<std::string>& checkedUID,
                                                   const std::function<void(std::string uid)>& choose);

/// "System default", which stands for no device and is marked if there is none, a divider, and the devices.
[[nodiscard]] std::vector<MenuEntry> routeEntries(const std::vector<AudioOutputDevice>& devices,
                                                  const std::optional<std::string>& routedUID,
                                                  const std::function<void(std::optional<std::string> uid)>& route);

}  // namespace quillmere
