// The program from its start to its end: puts machine, engine, state and windows together on Qt's event loop.
#pragma once

#include <functional>
#include <memory>

#include "runtime/Runtime.h"
#include "shell/Views.h"

namespace quillmere {

struct Machine;
class SingleInstance;

/// What a host gives the program.
struct Host {
  std::function<std::unique_ptr<LogSink>()> makeLogSink;
  std::function<Machine(const Runtime& runtime)> makeMachine;
  std::function<std::unique_ptr<SingleInstance>(const Runtime& runtime)> makeSingleInstance;
  MakeViews makeViews;
};

/// Runs the program; returns its exit code. Called once, on the main thread.
int runApplication(int argc, char** argv, const Host& host);

}  // namespace quillmere
