// Where the session bus listens.
#include "bus/SessionBusAddress.h"

#include <gio/gio.h>
#include <sys/stat.h>

#include <cstdlib>

namespace quillmere {

std::string sessionBusAddress() {
  if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address != nullptr && *address != '\0') {
    return address;
  }
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  if (folder == nullptr || *folder != '/') return {};
  const auto socket = std::string(folder) + "/bus";
  struct stat facts{};
  if (::stat(socket.c_str(), &facts) != 0 || !S_ISSOCK(facts.st_mode)) return {};
  char* escaped = g_dbus_address_escape_value(socket.c_str());
  std::string address = std::string("unix:path=") + escaped;
  g_free(escaped);
  return address;
}

}  // namespace quillmere
