// Whether the program starts with the session.
#include "views/preferences/LaunchAtLoginPresenter.h"

#include "integrations/DesktopServices.h"
#include "integrations/LaunchAtLogin.h"

namespace quillmere {

LaunchAtLoginPresenter::LaunchAtLoginPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent),
      service_(services.desktop.launchAtLogin()),
      subscription_(service_.isOn().observe([this](bool) { Q_EMIT onChanged(); })) {
  refresh();
}

bool LaunchAtLoginPresenter::isOn() const { return *service_.isOn(); }

void LaunchAtLoginPresenter::setOn(bool on) { service_.setEnabled(on); }

void LaunchAtLoginPresenter::refresh() { service_.refresh(); }

}  // namespace quillmere
