// One instance a user, as the system lists those that run.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/SingleInstance.h"

namespace quillmere {

/// [main] The system itself starts no second one of a bundle: it asks the first to open anew. One that was started in
/// another way is found in the list of what runs.
class MacSingleInstance final : public SingleInstance {
 public:
  MacSingleInstance();
  ~MacSingleInstance() override;
  MacSingleInstance(const MacSingleInstance&) = delete;
  MacSingleInstance& operator=(const MacSingleInstance&) = delete;

  /// Tells no section: the system's wish has none.
  void onActivationRequested(std::function<void(const ActivationRequest& request)> callback) override;
  /// The other instance is brought to the front, whatever the request says; it waits for nothing.
  [[nodiscard]] bool acquire(const std::optional<ActivationRequest>& request) override;

 private:
  struct Reopening;
  std::unique_ptr<Reopening> reopening_;
};

}  // namespace quillmere
