// The profiles page.
#include "views/profiles/ProfilesCanvasPresenter.h"

#include <algorithm>
#include <utility>

#include "state/MixerState.h"
#include "views/shared/AppCount.h"
#include "views/shared/ProfileNames.h"

namespace quillmere {

ProfilesCanvasPresenter::ProfilesCanvasPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent),
      state_(services.state),
      profiles_(services.state),
      editor_(services),
      countBefore_(state_->profiles()->size()) {
  subscriptions_.push_back(state_->profiles().observe([this](const auto&) { followProfiles(); }));
  subscriptions_.push_back(state_->activeProfileID().observe([this](const auto&) { Q_EMIT heroChanged(); }));
  if (countBefore_ > 0) selectID(state_->profiles()->front().id);
}

const Profile* ProfilesCanvasPresenter::active() const {
  const auto& profiles = *state_->profiles();
  const auto found =
      std::ranges::find_if(profiles, [&](const Profile& each) { return *state_->activeProfileID() == each.id; });
  return found == profiles.end() ? nullptr : &*found;
}

bool ProfilesCanvasPresenter::anyActive() const { return active() != nullptr; }

QString ProfilesCanvasPresenter::heroTitle() const {
  const auto* profile = active();
  return profile == nullptr ? tr("No profile applied") : QString::fromStdString(profile->name);
}

QString ProfilesCanvasPresenter::heroDetail() const {
  const auto* profile = active();
  return profile == nullptr ? tr("Live mixer values are in effect.") : countedApps(profile->apps.size());
}

int ProfilesCanvasPresenter::selectedRow() const {
  if (!selected_) return -1;
  const auto& keys = profiles_.keys();
  const auto found = std::ranges::find(keys, selected_->text());
  return found == keys.end() ? -1 : static_cast<int>(found - keys.begin());
}

void ProfilesCanvasPresenter::select(int row) {
  if (const auto id = profiles_.idAt(row)) selectID(id);
}

void ProfilesCanvasPresenter::create() {
  // The state may be in another process: the profile comes when it comes.
  awaitsCreated_ = true;
  state_->addProfile(nextProfileName(state_->profiles()->size()).toStdString());
}

void ProfilesCanvasPresenter::followProfiles() {
  const auto& profiles = *state_->profiles();
  const auto countBefore = std::exchange(countBefore_, profiles.size());
  if (profiles.size() != countBefore) {
    auto wanted = selected_;
    const bool isThere = std::ranges::any_of(profiles, [&](const Profile& each) { return wanted == each.id; });
    if (!isThere) wanted.reset();
    if (!wanted && !profiles.empty()) wanted = profiles.front().id;
    if (profiles.size() > countBefore && std::exchange(awaitsCreated_, false)) wanted = profiles.back().id;
    selectID(wanted);
  }
  Q_EMIT heroChanged();
}

void ProfilesCanvasPresenter::selectID(std::optional<Uuid> id) {
  if (selected_ != id) {
    selected_ = id;
    editor_.edit(id);
    profiles_.setSelected(id);
  }
  // Its row may be another one though it is the same.
  Q_EMIT selectionChanged();
}

}  // namespace quillmere
