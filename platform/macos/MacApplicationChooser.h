// The system's open panel, at the folder of applications.
#pragma once

#include <memory>

#include "platform/ApplicationChooser.h"

namespace quillmere {

/// [main]
class MacApplicationChooser final : public ApplicationChooser {
 public:
  MacApplicationChooser();
  /// Closes a panel that is open, and answers nobody.
  ~MacApplicationChooser() override;
  MacApplicationChooser(const MacApplicationChooser&) = delete;
  MacApplicationChooser& operator=(const MacApplicationChooser&) = delete;

  void choose(const ApplicationQuestion& question, Reply reply) override;

 private:
  struct Panel;
  std::shared_ptr<Panel> panel_;
};

}  // namespace quillmere
