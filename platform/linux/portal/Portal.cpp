// Questions and their answers, which come as signals of an object that is made for each.
#include "portal/Portal.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace quillmere::portal {

namespace {

constexpr const char* requestInterface = "org.freedesktop.portal.Request";
constexpr auto startTimeout = std::chrono::seconds(25);

/// Where the answer to a question will come from, which its sender can know beforehand.
std::string handleFor(GDBusConnection* connection, const std::string& token) {
  std::string sender = g_dbus_connection_get_unique_name(connection);
  sender.erase(0, 1);
  std::ranges::replace(sender, '.', '_');
  return std::string(objectPath) + "/request/" + sender + "/" + token;
}

}  // namespace

struct Portal::Question {
  const char* interface;
  const char* method;
  Arguments arguments;
  Reply reply;
  std::map<std::string, guint> subscriptions;
};

Portal::Portal(std::optional<std::string> address) : address_(std::move(address)) {}

Portal::~Portal() {
  if (bus_) bus_->end();
}

void Portal::use(std::function<void(bus::BusConnection*)> work) {
  {
    const std::scoped_lock lock(mutex_);
    if (!bus_) {
      bus_ = std::make_unique<bus::BusConnection>(
          address_,
          bus::BusConnection::Events{[this] { connected(); }, [this](const std::string&) { disconnected(); }});
    }
  }
  bus_->invoke([this, work = std::move(work)] {
    if (bus_->connection() != nullptr) {
      work(bus_.get());
      return;
    }
    waiting_.push_back(work);
    bus_->connect();
  });
}

void Portal::connected() {
  for (const auto& work : std::exchange(waiting_, {})) work(bus_.get());
}

void Portal::disconnected() {
  for (const auto& work : std::exchange(waiting_, {})) work(nullptr);
  for (const auto& question : std::exchange(open_, {})) question->reply(Response::absent, nullptr);
}

void Portal::request(const char* interface, const char* method, Arguments arguments, Reply reply) {
  const auto question = std::make_shared<Question>(interface, method, std::move(arguments), std::move(reply));
  use([this, question](bus::BusConnection* bus) { ask(bus, question); });
}

void Portal::ask(bus::BusConnection* bus, const std::shared_ptr<Question>& question) {
  if (bus == nullptr) {
    question->reply(Response::absent, nullptr);
    return;
  }
  open_.push_back(question);
  const auto token = "quillmere" + std::to_string(++lastNumber_);
  const auto handle = handleFor(bus->connection(), token);
  // Before the question: the answer may be quicker than the reply.
  watch(question, handle);
  bus->ask(service, objectPath, question->interface, question->method, question->arguments(token.c_str()), startTimeout,
           G_DBUS_CALL_FLAGS_NONE, [this, question, handle](GVariant* reply, const GError*) {
             if (!bus::isOfType(reply, "(o)")) {
               finish(question, Response::absent, nullptr);
               return;
             }
             const char* told = nullptr;
             g_variant_get(reply, "(&o)", &told);
             // Old portals choose a name of their own.
             if (handle != told) watch(question, told);
           });
}

void Portal::watch(const std::shared_ptr<Question>& question, const std::string& handle) {
  if (std::ranges::find(open_, question) == open_.end()) return;
  question->subscriptions[handle] = bus_->subscribe(
      requestInterface, "Response", handle.c_str(), nullptr,
      [this, weak = std::weak_ptr<Question>(question)](const std::string&, GVariant* parameters) {
        const auto asked = weak.lock();
        if (!asked || !bus::isOfType(parameters, "(ua{sv})")) return;
        const auto code = bus::Variant(g_variant_get_child_value(parameters, 0));
        const auto results = bus::Variant(g_variant_get_child_value(parameters, 1));
        const auto number = g_variant_get_uint32(code.get());
        const auto response = number == 0 ? Response::given : number == 1 ? Response::cancelled : Response::ended;
        finish(asked, response, response == Response::given ? results.get() : nullptr);
      });
}

void Portal::finish(const std::shared_ptr<Question>& question, Response response, GVariant* results) {
  if (std::erase(open_, question) == 0) return;
  // One of these may be the very call that this comes from, and must not lose what it stands on.
  bus_->invoke([this, subscriptions = std::exchange(question->subscriptions, {})] {
    for (const auto& [handle, subscription] : subscriptions) bus_->unsubscribe(subscription);
  });
  question->reply(response, results);
}

}  // namespace quillmere::portal
