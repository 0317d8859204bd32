// Brings the sound of applications to their taps and takes it away again. [loop]
#pragma once

#include <set>
#include <string>
#include <vector>

#include "Destination.h"

namespace quillmere::pipewire {

/// One for each way in which clients are linked.
class TapFeeder {
 public:
  virtual ~TapFeeder() = default;

  /// From now on what the application plays and is bound for `destination`, now and in future, belongs on the node of
  /// this serial. `route` is where all of it is bound unless another mixer says otherwise; absent: each for where it
  /// asks to be.
  virtual void claim(const std::string& application, const Destination& route, const Destination& destination,
                     const std::string& serial) = 0;
  /// What is on the node that had been claimed for that destination goes back to where it was.
  virtual void release(const std::string& application, const Destination& destination) = 0;
  /// Where the user has had sound of the application moved by another mixer counts no longer: it is routed anew.
  virtual void forgetWishes(const std::string& application) = 0;
  /// Drops everything without a word to the session manager, which is gone.
  virtual void forget() = 0;
  /// Brings everything where it belongs. To be called after any change of the graph.
  virtual void settle() = 0;

  /// Where what the application plays is bound for, as far as it may be moved.
  [[nodiscard]] virtual std::set<Destination> destinations(const std::string& application,
                                                           const Destination& route) const = 0;
  /// Whether something that is bound there, and would be moved, is playing now.
  [[nodiscard]] virtual bool hasRunningStream(const std::string& application, const Destination& route,
                                              const Destination& destination) const = 0;
  /// Whether some of that plays through a tap already.
  [[nodiscard]] virtual bool hasTappedStream(const std::string& application, const Destination& route,
                                             const Destination& destination) const = 0;
};

/// Several as one.
class TapFeeders final : public TapFeeder {
 public:
  /// They outlive this.
  explicit TapFeeders(std::vector<TapFeeder*> feeders) : feeders_(std::move(feeders)) {}

  void claim(const std::string& application, const Destination& route, const Destination& destination,
             const std::string& serial) override;
  void release(const std::string& application, const Destination& destination) override;
  void forgetWishes(const std::string& application) override;
  void forget() override;
  void settle() override;
  [[nodiscard]] std::set<Destination> destinations(const std::string& application,
                                                   const Destination& route) const override;
  [[nodiscard]] bool hasRunningStream(const std::string& application, const Destination& route,
                                      const Destination& destination) const override;
  [[nodiscard]] bool hasTappedStream(const std::string& application, const Destination& route,
                                     const Destination& destination) const override;

 private:
  std::vector<TapFeeder*> feeders_;
};

}  // namespace quillmere::pipewire
