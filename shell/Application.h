// The program from its start to its end: puts machine, engine, state, status item and windows together on a main loop.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "runtime/Runtime.h"

namespace quillmere {

class SessionWatch;
class SingleInstance;
class StatusItem;
class WindowsLauncher;
struct Machine;

/// What a host gives the program.
struct Host {
  std::function<std::unique_ptr<LogSink>()> makeLogSink;
  std::function<Machine(const Runtime& runtime)> makeMachine;
  std::function<std::unique_ptr<SingleInstance>(const Runtime& runtime)> makeSingleInstance;
  /// What the desktop gave this start to come to the front with; empty if nothing. Called once.
  std::function<std::string()> takeActivationToken;
  std::function<std::unique_ptr<StatusItem>(const Runtime& runtime)> makeStatusItem;
  /// Null, and a line on standard error, for a program that is not whole: it doesn't start.
  std::function<std::unique_ptr<WindowsLauncher>(const Runtime& runtime)> makeWindowsLauncher;
  std::function<std::unique_ptr<SessionWatch>(const Runtime& runtime)> makeSessionWatch;
};

/// Runs the program; returns its exit code. Where another instance runs, that one is asked to show itself, and no
/// machine is made. Called once, on the main thread.
int runApplication(int argc, char** argv, const Host& host);

}  // namespace quillmere
