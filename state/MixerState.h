// The mixer as views and menus know it: fields to observe, and operations. Who stands behind it may be in this process
// or in another. What there is stands in state/MixerFields.def and state/MixerOperations.def: a line there, and for an
// operation its implementation in AppState, is all that a new one takes.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/AudioApp.h"
#include "core/Date.h"
#include "core/DuckRule.h"
#include "core/Profile.h"
#include "core/Uuid.h"
#include "engine/AudioOutputDevice.h"
#include "integrations/BrowserTab.h"
#include "integrations/NowPlayingTrack.h"
#include "platform/BrowserCompanions.h"
#include "runtime/Observable.h"
#include "state/PomodoroPhase.h"

namespace quillmere {

/// Open tabs by browser.
using BrowserTabs = std::map<std::string, std::vector<BrowserTab>>;

/// [main] throughout. Gains are linear, 0 to 1 by convention; nothing is clamped here, the engine clamps. Operations
/// return nothing and fail silently: an unknown identifier is ignored. They take texts and ids by value, because what
/// names an application may be the very element of a field that goes while the operation changes the field.
class MixerState {
 public:
  virtual ~MixerState() = default;
  MixerState(const MixerState&) = delete;
  MixerState& operator=(const MixerState&) = delete;

  // Fields, to be read and observed.
#define FIELD(type, name, ...) \
  [[nodiscard]] const Observable<type>& name() const { return name##_; }
#include "state/MixerFields.def"

  // Operations.
#define OPERATION(name, parameters, arguments) virtual void name parameters = 0;
#include "state/MixerOperations.def"

  /// Calls `visit(name, field)` for each field.
  template <typename Visitor>
  void visitFields(const Visitor& visit) const {
#define FIELD(type, name, ...) visit(#name, name##_);
#include "state/MixerFields.def"
  }

  /// Calls `visit(name, operation)` for each operation, a pointer to the member.
  template <typename Visitor>
  static void visitOperations(const Visitor& visit) {
#define OPERATION(name, parameters, arguments) visit(#name, &MixerState::name);
#include "state/MixerOperations.def"
  }

 protected:
  MixerState() = default;

  template <typename Visitor>
  void visitOwnFields(const Visitor& visit) {
#define FIELD(type, name, ...) visit(#name, name##_);
#include "state/MixerFields.def"
  }

#define FIELD(type, name, ...) Observable<type> name##_{__VA_ARGS__};
#include "state/MixerFields.def"
};

}  // namespace quillmere
