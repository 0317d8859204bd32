// The first run.
#include "views/onboarding/OnboardingPresenter.h"

#include "state/MixerState.h"

namespace quillmere {

OnboardingPresenter::OnboardingPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent), state_(services.state), onFinish_(services.intents.onboardingFinished), permissions_(services) {}

void OnboardingPresenter::setVisible(bool visible) { permissions_.setVisible(visible); }

void OnboardingPresenter::back() {
  if (canGoBack()) setStep(static_cast<Step>(step_ - 1));
}

void OnboardingPresenter::next() {
  if (step_ + 1 < stepCount()) {
    setStep(static_cast<Step>(step_ + 1));
    return;
  }
  state_->completeOnboarding();
  ask(onFinish_);
}

void OnboardingPresenter::setStep(Step step) {
  step_ = step;
  Q_EMIT stepChanged();
}

}  // namespace quillmere
