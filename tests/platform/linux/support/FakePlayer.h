// A media player on a bus that behaves as a test wants: well, late, never, or wrongly.
#pragma once

#include <gio/gio.h>

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "FilteredBus.h"

namespace quillmere::support {

class FakePlayer {
 public:
  enum class Manner { answers, holds, refuses };

  /// Takes the name org.mpris.MediaPlayer2.<name>.
  FakePlayer(const std::string& address, const std::string& name, Manner manner = Manner::answers);
  FakePlayer(const FakePlayer&) = delete;
  FakePlayer& operator=(const FakePlayer&) = delete;

  /// Values as GVariant text, such as "'Playing'" or "<int64 5>"; whoever asks later gets them.
  void set(const std::string& property, const std::string& text);
  /// set(), and tells everybody.
  void change(const std::string& property, const std::string& text);
  void setTrack(const std::string& title, const std::string& status);
  /// Tells that a property has changed without its value.
  void invalidate(const std::string& property);
  void emitSeeked(std::int64_t micros);
  /// Sends any body as PropertiesChanged.
  void emitRaw(const std::string& body);
  /// Answers what was held back, with what is set now, and from now on at once.
  void release();
  /// On Pause, Play and PlayPause the status follows, as in a real player.
  void obey();

  /// Methods of the player interface that were called, in order.
  [[nodiscard]] std::vector<std::string> calls() const;
  [[nodiscard]] int questionCount() const;

 private:
  GDBusMessage* filter(GDBusMessage* message);
  void answer(GDBusMessage* question);
  void emit(const char* interface, const char* signal, GVariant* body);
  GVariant* value(const std::string& property) const;

  mutable std::mutex mutex_;
  Manner manner_;
  bool obeys_ = false;
  std::map<std::string, std::string> properties_;
  struct Unref {
    void operator()(GDBusMessage* message) const { g_object_unref(message); }
  };
  std::vector<std::unique_ptr<GDBusMessage, Unref>> held_;
  std::vector<std::string> calls_;
  int questions_ = 0;
  /// Declared last: once it has gone, nobody is in the filter.
  FilteredBus bus_;
};

}  // namespace quillmere::support
