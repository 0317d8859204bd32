// The program from its start to its end: puts machine, engine, state, status item and windows together on a main loop.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "runtime/Runtime.h"

namespace quillmere {

class AppState;
class MainLoop;
class ProgramWindows;
class SessionWatch;
class SingleInstance;
class StatusItem;
class Updater;
class WindowsLauncher;
struct Machine;
struct WindowsIntents;

/// What a host gives the program. What may be absent says so.
struct Host {
  std::function<std::unique_ptr<LogSink>()> makeLogSink;
  /// The main thread's loop, made before all else. Absent: one of the program's own, which knows no toolkit.
  std::function<std::unique_ptr<MainLoop>()> makeMainLoop;
  std::function<Machine(const Runtime& runtime)> makeMachine;
  std::function<std::unique_ptr<SingleInstance>(const Runtime& runtime)> makeSingleInstance;
  /// What the desktop gave this start to come to the front with; empty if nothing. Called once.
  std::function<std::string()> takeActivationToken;
  std::function<std::unique_ptr<StatusItem>(const Runtime& runtime)> makeStatusItem;
  /// What draws the windows is one of these two: a process of its own,
  /// null, and a line on standard error, for a program that is not whole: it doesn't start;
  std::function<std::unique_ptr<WindowsLauncher>(const Runtime& runtime)> makeWindowsLauncher;
  /// or this process, whose windows see the state itself.
  std::function<std::unique_ptr<ProgramWindows>(const std::shared_ptr<AppState>& state, const Runtime& runtime,
                                                WindowsIntents intents)>
      makeWindows;
  /// Absent on a host where the session's end ends the loop.
  std::function<std::unique_ptr<SessionWatch>(const Runtime& runtime)> makeSessionWatch;
  /// The host's own way to a newer version, started with the program; absent where the machine's release feed, or
  /// nothing, tells of one. `announced` is what that feed tells; null where there is none.
  std::function<std::unique_ptr<Updater>(Machine& machine, Updater* announced)> makeUpdater;
};

/// Runs the program; returns its exit code. Where another instance runs, that one is asked to show itself, and no
/// machine is made. Called once, on the main thread.
int runApplication(int argc, char** argv, const Host& host);

}  // namespace quillmere
