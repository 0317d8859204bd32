// What the state's tests do with their machine and its disk. Compiled once for all of them.
// The machine's end too: the class of every single test has it in its own.
#include "StateFixture.h"

#include "core/Json.h"

namespace quillmere {

StateFixture::StateFixture() { power(); }
StateFixture::~StateFixture() = default;

void StateFixture::power() {
  box = std::make_unique<VirtualMachine>(disk);
  speakers = box->addSpeakers();
  box->audio.setDefaultOutput(speakers);
  settle();
}

void StateFixture::restart(const std::vector<std::pair<std::string, std::string>>& running) {
  power();
  for (const auto& [bundleID, name] : running) box->launch(bundleID, name);
  box->start();
}

void StateFixture::startWithThree() {
  box->launch(spotify, "Spotify");
  box->launch(zoom, "Zoom");
  box->launch(editor, "Editor");
  box->start();
  forget();
}

void StateFixture::forget() {
  box->engine->clearCalls();
  disk.clearWritten();
}

void StateFixture::settle() const { box->time.runUntilIdle(); }

void StateFixture::storeApps(const std::vector<AudioApp>& apps) {
  disk.set("quillmere.appsState", RecordingDefaults::bytes(json::encode(apps).value()));
}

std::vector<AudioApp> StateFixture::storedApps() const {
  return json::decodeAudioApps(disk.text("quillmere.appsState")).value_or(std::vector<AudioApp>{});
}

std::vector<Profile> StateFixture::storedProfiles() const {
  return json::decodeProfiles(disk.text("quillmere.profiles")).value_or(std::vector<Profile>{});
}

void StateFixture::microphone(const std::string& bundleID, bool listens) const {
  box->setListening(bundleID, listens);
  box->detect();
}

}  // namespace quillmere
