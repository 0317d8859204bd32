// The portal's dialogue for a file, opened on desktop entries; another one where there is no portal.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/ApplicationChooser.h"
#include "runtime/Runtime.h"

namespace quillmere {

namespace portal {
class Portal;
}

/// [main]
class LinuxApplicationChooser final : public ApplicationChooser {
 public:
  /// @param otherwise  what is asked where there is no portal; may be null, and then nothing is chosen there
  LinuxApplicationChooser(std::shared_ptr<portal::Portal> portal, const Runtime& runtime,
                          std::unique_ptr<ApplicationChooser> otherwise);
  ~LinuxApplicationChooser() override;

  void choose(const ApplicationQuestion& question, Reply reply) override;

 private:
  struct State;
  std::shared_ptr<portal::Portal> portal_;
  Runtime runtime_;
  std::shared_ptr<State> state_;
};

}  // namespace quillmere
