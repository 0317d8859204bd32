// The profile in use and the menu of all of them.
#include "views/popover/ProfilesPresenter.h"

#include <algorithm>
#include <utility>

#include "state/MixerState.h"
#include "views/shared/ProfileNames.h"

namespace quillmere {

ProfilesPresenter::ProfilesPresenter(std::shared_ptr<MixerState> state, std::function<void()> openWindow,
                                     QObject* parent)
    : QObject(parent), state_(std::move(state)), openWindow_(std::move(openWindow)) {
  subscriptions_.push_back(state_->profiles().observe([this](const auto&) { refresh(); }));
  subscriptions_.push_back(state_->activeProfileID().observe([this](const auto&) { refresh(); }));
  refresh();
}

QString ProfilesPresenter::activeName() const {
  const auto& profiles = *state_->profiles();
  const auto active =
      std::ranges::find_if(profiles, [&](const Profile& profile) { return *state_->activeProfileID() == profile.id; });
  return active == profiles.end() ? tr("Default") : QString::fromStdString(active->name);
}

void ProfilesPresenter::saveCurrent() { state_->addProfile(nextProfileName(state_->profiles()->size()).toStdString()); }

void ProfilesPresenter::refresh() {
  std::vector<MenuEntry> entries;
  for (const auto& profile : *state_->profiles()) {
    entries.push_back({QString::fromStdString(profile.name), *state_->activeProfileID() == profile.id, false,
                       [this, id = profile.id] { state_->applyProfile(id); }});
  }
  entries.push_back(MenuEntry::divider());
  entries.push_back({tr("Save current as new profile…"), false, false, [this] { saveCurrent(); }});
  entries.push_back({tr("Open quillmere window…"), false, false, openWindow_});
  menu_.setEntries(std::move(entries));
  Q_EMIT changed();
}

}  // namespace quillmere
