// The main thread's loop of a program that draws its windows itself: the toolkit's.
#pragma once

#include <QApplication>

#include "runtime/MainLoop.h"
#include "windows/QtMainExecutor.h"

namespace quillmere {

/// Holds the application object, so it is made before anything that draws. [main]
class QtMainLoop final : public MainLoop {
 public:
  /// Both outlive it, as the toolkit demands.
  QtMainLoop(int& argc, char** argv);
  ~QtMainLoop() override;

  [[nodiscard]] Executor& executor() override { return executor_; }
  void run() override;
  void stop() override;

 private:
  QApplication application_;
  QtMainExecutor executor_;
};

}  // namespace quillmere
