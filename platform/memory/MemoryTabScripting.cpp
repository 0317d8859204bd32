// Texts by browser, failures by match.
#include "platform/memory/MemoryTabScripting.h"

#include <utility>

namespace quillmere {

namespace {

struct Failure {
  MemoryTabScripting::Match match;
  TabScriptResult::Error error;
  int count = 0;
  int skip = 0;

  [[nodiscard]] bool fits(const TabRequest& request) const {
    return match.kind.value_or(request.kind) == request.kind &&
           match.bundleID.value_or(request.bundleID) == request.bundleID;
  }
};

/// The failure that a call meets, if any; counts it.
std::optional<TabScriptResult::Error> met(std::vector<Failure>& failures, const TabRequest& request) {
  for (auto& each : failures) {
    if (each.count == 0 || !each.fits(request)) continue;
    if (each.skip > 0) {
      --each.skip;
      continue;
    }
    --each.count;
    return each.error;
  }
  return std::nullopt;
}

}  // namespace

struct MemoryTabScripting::State {
  /// The error that a call meets, if any; the next one may meet another.
  std::optional<TabScriptResult::Error> error(std::vector<Failure>& failures, const TabRequest& request) {
    if (!failures.empty()) changes.raise();
    return met(failures, request);
  }

  mutable std::mutex mutex;
  ChangeSignal changes;
  bool tellsChanges = true;
  std::map<std::string, std::optional<std::string>> texts;
  std::vector<Failure> compileFailures;
  std::vector<Failure> executeFailures;
  std::vector<Script> compiled;
  std::vector<Script> executed;
};

struct MemoryTabScripting::Made final : TabScript {
  Made(std::shared_ptr<State> of, Script from) : state(std::move(of)), script(std::move(from)) {}

  TabScriptResult execute() override {
    const std::lock_guard lock(state->mutex);
    state->executed.push_back(script);
    TabScriptResult result;
    result.error = state->error(state->executeFailures, script.request);
    if (result.error || script.request.kind != TabRequest::Kind::query) return result;
    const auto text = state->texts.find(script.request.bundleID);
    result.text = text == state->texts.end() ? std::string() : text->second;
    return result;
  }

  std::shared_ptr<State> state;
  Script script;
};

MemoryTabScripting::MemoryTabScripting() : state_(std::make_shared<State>()) {}

MemoryTabScripting::~MemoryTabScripting() = default;

void MemoryTabScripting::setTellsChanges(bool tells) {
  const std::lock_guard lock(state_->mutex);
  state_->tellsChanges = tells;
}

const ChangeSignal& MemoryTabScripting::changes() const {
  const std::lock_guard lock(state_->mutex);
  return state_->tellsChanges ? state_->changes : ChangeSignal::absent();
}

std::unique_ptr<TabScript> MemoryTabScripting::compile(const TabRequest& request, std::string_view source) {
  const std::lock_guard lock(state_->mutex);
  Script script{request, std::string(source)};
  state_->compiled.push_back(script);
  if (state_->error(state_->compileFailures, request)) return nullptr;
  return std::make_unique<Made>(state_, std::move(script));
}

void MemoryTabScripting::setText(const std::string& bundleID, std::optional<std::string> text) {
  const std::lock_guard lock(state_->mutex);
  state_->texts[bundleID] = std::move(text);
  state_->changes.raise();
}

void MemoryTabScripting::failToCompile(Match match, int count, int skip) {
  const std::lock_guard lock(state_->mutex);
  state_->compileFailures.push_back({std::move(match), {}, count, skip});
  state_->changes.raise();
}

void MemoryTabScripting::failToExecute(Match match, TabScriptResult::Error error, int count, int skip) {
  const std::lock_guard lock(state_->mutex);
  state_->executeFailures.push_back({std::move(match), std::move(error), count, skip});
  state_->changes.raise();
}

std::vector<MemoryTabScripting::Script> MemoryTabScripting::compiled() const {
  const std::lock_guard lock(state_->mutex);
  return state_->compiled;
}

std::vector<MemoryTabScripting::Script> MemoryTabScripting::executed() const {
  const std::lock_guard lock(state_->mutex);
  return state_->executed;
}

std::vector<MemoryTabScripting::Script> MemoryTabScripting::activations() const {
  auto scripts = executed();
  std::erase_if(scripts, [](const Script& each) { return each.request.kind != TabRequest::Kind::activate; });
  return scripts;
}

void MemoryTabScripting::clearRecords() {
  const std::lock_guard lock(state_->mutex);
  state_->compiled.clear();
  state_->executed.clear();
}

}  // namespace quillmere
