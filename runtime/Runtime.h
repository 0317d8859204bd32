// What every layer needs of the process it runs in: executors, queues, clocks, log.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "runtime/Clocks.h"
#include "runtime/Executor.h"
#include "runtime/Logger.h"
#include "runtime/SerialQueue.h"

namespace quillmere {

/// References to the process's services. They outlive everything that holds this record.
struct Runtime {
  Executor& main;
  Executor& background;
  Clocks& clocks;
  LogSink& log;
  /// Makes a serial queue with a label for debuggers.
  std::function<std::unique_ptr<SerialQueue>(std::string label)> makeSerialQueue;
};

}  // namespace quillmere
