// Brings the sound of JACK clients to taps. Their links are theirs, and nobody would make them again: they stay, and
// what they carry is cancelled where it arrives (docs/pipewire.md).
// Pure decisions: the graph comes in as a model, detours come from a factory. [loop]
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Detour.h"
#include "GraphModel.h"
#include "TapFeeder.h"
#include "runtime/Logger.h"

namespace quillmere::pipewire {

class JackFeeder final : public TapFeeder {
 public:
  /// Makes a detour around a device with these channels; null where there is no connection.
  using DetourFactory = std::function<std::unique_ptr<Detour>(const std::vector<std::string>& channels)>;

  JackFeeder(const GraphModel& model, DetourFactory makeDetour, Logger log);
  ~JackFeeder() override;

  void claim(const std::string& application, const Destination& route, const Destination& destination,
             const std::string& serial) override;
  void release(const std::string& application, const Destination& destination) override;
  /// No mixer moves JACK clients.
  void forgetWishes(const std::string&) override {}
  void forget() override;
  void settle() override;
  [[nodiscard]] std::set<Destination> destinations(const std::string& application,
                                                   const Destination& route) const override;
  [[nodiscard]] bool hasRunningStream(const std::string& application, const Destination& route,
                                      const Destination& destination) const override;
  [[nodiscard]] bool hasTappedStream(const std::string& application, const Destination& route,
                                     const Destination& destination) const override;

 private:
  struct Claim {
    Destination route;
    /// Serials of the nodes by what they play for.
    std::map<Destination, std::string> taps;
  };
  /// An application, and the serial of a device that clients of it are linked to.
  using Place = std::pair<std::string, std::string>;
  struct Path {
    std::unique_ptr<Detour> detour;
    /// Serials of the device's ports that it was made for.
    std::vector<std::string> ports;
    /// Of the tap that it leads to.
    std::string tap;
    bool isOpen = false;
  };
  /// What clients have linked to devices, by place.
  [[nodiscard]] std::map<Place, std::vector<LinkRecord>> clientLinks() const;
  /// Where a client that is linked to this device is bound for.
  [[nodiscard]] Destination bound(const std::string& device, const Destination& route) const;
  /// Serial of the tap that a place's sound belongs on; empty where there is none.
  [[nodiscard]] std::string tapOf(const Place& place) const;
  void lead(const Place& place, const std::string& tap, const std::vector<LinkRecord>& links);
  void close(const Place& place, Path& path);

  const GraphModel& model_;
  DetourFactory makeDetour_;
  Logger log_;
  std::map<std::string, Claim> claims_;
  std::map<Place, Path> paths_;
  /// On their way back.
  std::vector<std::pair<Place, std::unique_ptr<Detour>>> closing_;
  /// How often a detour was cut off.
  std::map<Place, int> cuts_;
};

}  // namespace quillmere::pipewire
