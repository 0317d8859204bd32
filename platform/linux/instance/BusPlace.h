// The place of the only instance as a name on the session bus, with org.freedesktop.Application, so that desktops can
// activate the program as well.
#pragma once

#include <functional>
#include <future>
#include <optional>
#include <string>

#include "Outcome.h"
#include "bus/BusConnection.h"
#include "platform/ActivationRequest.h"
#include "runtime/Logger.h"

namespace quillmere::instance {

/// [main], but for what is marked otherwise.
class BusPlace {
 public:
  /// `activated` is called on [host] with what others ask. Nothing is asked for yet.
  BusPlace(std::optional<std::string> address, LogSink& log, std::function<void(const ActivationRequest&)> activated);
  /// The place is free again.
  ~BusPlace();
  BusPlace(const BusPlace&) = delete;
  BusPlace& operator=(const BusPlace&) = delete;

  /// Asks for the place, once; where another instance has it, that one is asked for what `request` says. Waits for two
  /// seconds at most. From then on, unless it is another one's, the place is taken again whenever the bus comes back.
  [[nodiscard]] Outcome take(const std::optional<ActivationRequest>& request);

 private:
  // All on [host].
  void connected();
  void disconnected();
  void requestName(int round);
  void askOther(int round);
  void settle(Outcome outcome);
  static void methodCalled(GDBusConnection* connection, const char* sender, const char* path, const char* interface,
                           const char* method, GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self);

  Logger log_;
  const std::function<void(const ActivationRequest&)> activated_;
  std::optional<ActivationRequest> request_;
  std::promise<Outcome> outcome_;
  bool isSettled_ = false;
  /// Whether there is nothing more to do: another instance has the place.
  bool isOver_ = false;
  Duration pause_;
  bus::BusConnection bus_;
};

}  // namespace quillmere::instance
