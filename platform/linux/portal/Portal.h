// The desktop's portal: what it offers, and questions that a user answers. On the host's loop, over a connection that
// is made with the first question.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "../bus/BusConnection.h"
#include "../bus/Handles.h"

namespace quillmere::portal {

inline constexpr const char* service = "org.freedesktop.portal.Desktop";
inline constexpr const char* objectPath = "/org/freedesktop/portal/desktop";

/// How a question ended.
enum class Response : std::uint32_t {
  given = 0,      ///< The user has agreed.
  cancelled = 1,  ///< The user has not.
  ended = 2,      ///< The dialogue went in another way.
  absent = 3,     ///< There is no such portal, or no bus.
};

/// Replies come on [host], and not at all once this object has gone; that also ends what is open on the screen.
class Portal {
 public:
  /// `results` is of type a{sv} where the response is `given`, and null otherwise.
  using Reply = std::function<void(Response response, GVariant* results)>;
  /// Makes the question's arguments, with `token` as the option "handle_token".
  using Arguments = std::function<GVariant*(const char* token)>;

  /// `address` absent means the session's bus. Nothing is connected yet. [any]
  explicit Portal(std::optional<std::string> address);
  ~Portal();
  Portal(const Portal&) = delete;
  Portal& operator=(const Portal&) = delete;

  /// Runs the work on [host], with the connection, or null where there is none. [any]
  void use(std::function<void(bus::BusConnection* connected)> work);
  /// Puts a question to the user, however long that takes. The portal is started for it where it can be. [any]
  void request(const char* interface, const char* method, Arguments arguments, Reply reply);

 private:
  struct Question;
  void connected();
  void disconnected();
  void ask(bus::BusConnection* bus, const std::shared_ptr<Question>& question);
  void watch(const std::shared_ptr<Question>& question, const std::string& handle);
  void finish(const std::shared_ptr<Question>& question, Response response, GVariant* results);

  const std::optional<std::string> address_;
  std::mutex mutex_;
  std::unique_ptr<bus::BusConnection> bus_;
  // What follows is for [host] alone.
  std::vector<std::function<void(bus::BusConnection*)>> waiting_;
  std::vector<std::shared_ptr<Question>> open_;
  std::uint64_t lastNumber_ = 0;
};

}  // namespace quillmere::portal
