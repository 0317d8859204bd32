// A bus connection whose owner sees every message before GDBus does, on GDBus's thread.
#pragma once

#include <gio/gio.h>

#include <functional>
#include <memory>
#include <string>

namespace quillmere::support {

inline constexpr const char* portal = "org.freedesktop.portal.Desktop";
inline constexpr const char* properties = "org.freedesktop.DBus.Properties";

/// As text, without types; nothing for null.
[[nodiscard]] std::string printed(GVariant* value);

/// A test fails where it can't connect; `connection()` is null then.
class FilteredBus {
 public:
  /// Takes an incoming message over: the message itself lets it go on, null keeps it.
  using Filter = std::function<GDBusMessage*(GDBusMessage* message)>;

  explicit FilteredBus(const std::string& address);
  /// Once it returns, nobody is in the filter.
  ~FilteredBus();
  FilteredBus(const FilteredBus&) = delete;
  FilteredBus& operator=(const FilteredBus&) = delete;

  /// Called once. What the filter needs must be there.
  void listen(Filter filter);
  [[nodiscard]] GDBusConnection* connection() const { return connection_; }

 private:
  /// GDBus may be in the filter on its own thread while the owner goes.
  struct Link;

  std::shared_ptr<Link> link_;
  GDBusConnection* connection_ = nullptr;
  guint filter_ = 0;
};

}  // namespace quillmere::support
