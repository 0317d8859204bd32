// The editor of one profile.
#include "views/profiles/ProfileEditorPresenter.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

#include "state/MixerState.h"

namespace quillmere {

namespace {

/// The level of an application that is added by hand.
constexpr float addedGain = 0.7F;

}  // namespace

ProfileEditorPresenter::ProfileEditorPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent), state_(services.state), picker_(services) {
  connect(&entries_, &ProfileEntryModel::edited, this, &ProfileEditorPresenter::noteEdit);
  subscriptions_.push_back(state_->activeProfileID().observe([this](const auto&) { Q_EMIT activeChanged(); }));
}

void ProfileEditorPresenter::edit(std::optional<Uuid> id) {
  picker_.close();
  profileID_ = id;
  load();
  Q_EMIT activeChanged();
}

QString ProfileEditorPresenter::title() const { return draft_.name.empty() ? tr("Untitled") : name(); }

void ProfileEditorPresenter::setName(const QString& name) {
  if (name == this->name()) return;
  draft_.name = name.toStdString();
  noteEdit();
}

QString ProfileEditorPresenter::saveText() const { return isDirty_ ? tr("Save changes") : tr("Saved"); }

bool ProfileEditorPresenter::isActive() const { return profileID_ && *state_->activeProfileID() == profileID_; }

void ProfileEditorPresenter::syncFromMixer() {
  entries_.setApps(*state_->apps());
  noteEdit();
}

void ProfileEditorPresenter::addApp() {
  std::set<std::string> existing;
  for (const auto& app : entries_.apps()) existing.insert(app.bundleID);
  picker_.show(std::move(existing), [this](const InstalledApp& app) {
    entries_.append({app.bundleID, app.name, addedGain, false, std::nullopt});
  });
}

void ProfileEditorPresenter::fillRoutes(int row) {
  const auto route = entries_.route(row);
  std::vector<MenuEntry> entries;
  entries.push_back({tr("System default"), !route, false, [this, row] { entries_.setRoute(row, std::nullopt); }});
  entries.push_back(MenuEntry::divider());
  for (const auto& device : *state_->outputDevices()) {
    entries.push_back({QString::fromStdString(device.name), route == device.uid, false,
                       [this, row, uid = device.uid] { entries_.setRoute(row, uid); }});
  }
  routeMenu_.setEntries(std::move(entries));
}

void ProfileEditorPresenter::remove() {
  if (profileID_) state_->deleteProfile(*profileID_);
}

void ProfileEditorPresenter::discard() { load(); }

void ProfileEditorPresenter::apply() {
  if (profileID_) state_->applyProfile(*profileID_);
}

void ProfileEditorPresenter::save() {
  if (!isDirty_) return;
  auto profile = draft_;
  profile.apps = entries_.apps();
  state_->updateProfile(std::move(profile));
  setDirty(false);
}

void ProfileEditorPresenter::load() {
  const auto& profiles = *state_->profiles();
  const auto stored = std::ranges::find_if(profiles, [&](const Profile& each) { return profileID_ == each.id; });
  if (stored != profiles.end()) {
    draft_ = {stored->id, stored->name, {}, stored->focusModeID, stored->updatedAt};
    entries_.setApps(stored->apps);
  }
  setDirty(false);
  Q_EMIT draftChanged();
}

void ProfileEditorPresenter::setDirty(bool dirty) {
  if (std::exchange(isDirty_, dirty) != dirty) Q_EMIT dirtyChanged();
}

void ProfileEditorPresenter::noteEdit() {
  setDirty(true);
  Q_EMIT draftChanged();
}

}  // namespace quillmere
