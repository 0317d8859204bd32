// What a Mac's user has to agree to: the keyboard of all programs, and to know of a focus.
#pragma once

#include <functional>
#include <string>

#include "platform/Permissions.h"

namespace quillmere {

/// [main] throughout. Every question is answered from this process: the system keeps it up to date.
class MacPermissions final : public Permissions {
 public:
  [[nodiscard]] bool isProcessTrusted() override;
  void promptForTrust() override;
  [[nodiscard]] int focusAuthorization() override;
  void requestFocusAuthorization(std::function<void()> answered) override;
  bool openSettings(const std::string& anchor) override;
  /// Never called: the system tells nobody, and who shows the answers asks again.
  void onChanged(std::function<void()> /*callback*/) override {}
};

}  // namespace quillmere
