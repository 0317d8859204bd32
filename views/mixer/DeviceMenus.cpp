// The output devices as entries of a menu.
#include "views/mixer/DeviceMenus.h"

#include <QCoreApplication>

namespace quillmere {

std::vector<MenuEntry> deviceEntries(const std::vector<AudioOutputDevice>& devices,
                                     const std::optional<std::string>& checkedUID,
                                     const std::function<void(std::string uid)>& choose) {
  std::vector<MenuEntry> entries;
  entries.reserve(devices.size());
  for (const auto& device : devices) {
    entries.push_back({QString::fromStdString(device.name), checkedUID == device.uid, false,
                       [choose, uid = device.uid] { choose(uid); }});
  }
  return entries;
}

std::vector<MenuEntry> routeEntries(const std::vector<AudioOutputDevice>& devices,
                                    const std::optional<std::string>& routedUID,
                                    const std::function<void(std::optional<std::string> uid)>& route) {
  std::vector<MenuEntry> entries{
      {QCoreApplication::translate("AppRow", "System default"), !routedUID, false, [route] { route(std::nullopt); }},
      MenuEntry::divider()};
  for (auto& entry : deviceEntries(devices, routedUID, [route](std::string uid) { route(std::move(uid)); })) {
    entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace quillmere
