#include "TapFeeder.h"

#include <algorithm>

namespace quillmere::pipewire {

void TapFeeders::claim(const std::string& application, const Destination& route, const Destination& destination,
                       const std::string& serial) {
  for (auto* feeder : feeders_) feeder->claim(application, route, destination, serial);
}

void TapFeeders::release(const std::string& application, const Destination& destination) {
  for (auto* feeder : feeders_) feeder->release(application, destination);
}

void TapFeeders::forgetWishes(const std::string& application) {
  for (auto* feeder : feeders_) feeder->forgetWishes(application);
}

void TapFeeders::forget() {
  for (auto* feeder : feeders_) feeder->forget();
}

void TapFeeders::settle() {
  for (auto* feeder : feeders_) feeder->settle();
}

std::set<Destination> TapFeeders::destinations(const std::string& application, const Destination& route) const {
  std::set<Destination> found;
  for (const auto* feeder : feeders_) found.merge(feeder->destinations(application, route));
  return found;
}

bool TapFeeders::hasRunningStream(const std::string& application, const Destination& route,
                                  const Destination& destination) const {
  return std::any_of(feeders_.begin(), feeders_.end(),
                     [&](const auto* feeder) { return feeder->hasRunningStream(application, route, destination); });
}

bool TapFeeders::hasTappedStream(const std::string& application, const Destination& route,
                                 const Destination& destination) const {
  return std::any_of(feeders_.begin(), feeders_.end(),
                     [&](const auto* feeder) { return feeder->hasTappedStream(application, route, destination); });
}

}  // namespace quillmere::pipewire
