#include "Models/Store/ApplicationLifecycle.h"

#include <algorithm>

#include "Base/Log.h"
#include "Models/Commands/QuickBar.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/ComingFeatures.h"
#include "Models/Store/SessionFile.h"
#include "Models/Tab/Hibernation.h"
#include "Models/Windows/LittleWindows.h"

namespace orvel {

namespace {

void run(const std::function<void()>& step) {
  if (step) step();
}

}  // namespace

ApplicationLifecycle::ApplicationLifecycle(std::shared_ptr<BrowserStore> store, Steps steps)
    : store_(std::move(store)), steps_(std::move(steps)) {}

void ApplicationLifecycle::didFinishLaunching() {
  Log::app.notice("Orvel {} on {}", steps_.appVersion, steps_.systemVersion);
  run(steps_.subscribeDiagnostics);
  showWindow();
  store_->services().desktop.application.activate();
  store_->quickBar.applyQuickBarKey();
  run(steps_.startUpdates);
}

void ApplicationLifecycle::showWindow() {
  if (!windowController_ && steps_.makeWindowController)
    windowController_ = steps_.makeWindowController();
  if (!windowController_) return;
  windowController_->show();
  windowController_->window().present();
}

void ApplicationLifecycle::open(const std::vector<ExternalAddress>& addresses) {
  bool wantsWindow = false;
  for (const auto& [url, scheme] : addresses)
    wantsWindow = store_->littleWindows.openExternal(url, scheme) || wantsWindow;
  if (wantsWindow || !windowController_) showWindow();
}

void ApplicationLifecycle::handleReopen(VisibleWindows visible) {
  if (visible == VisibleWindows::None)
    showWindow();
  else
    store_->services().desktop.application.activate();
}

bool ApplicationLifecycle::continueActivity(const std::string& identifier) {
  return store_->coming.openSpotlightItem(identifier);
}

void ApplicationLifecycle::willTerminate() {
  Log::app.notice("Quitting");
  const Services& services = store_->services();
  const Instant end = services.scheduler.instant() + kDrainDeadline;
  const auto drain = [&] {
    services.files.drain(std::max(end - services.scheduler.instant(), Duration::zero()),
                         services.paths.session());
  };
  store_->session.save();
  // A slow disk costs positions on pages before it costs the session.
  drain();
  store_->hibernation.saveTabStates(Hibernation::StateWriting::Now);
  drain();
  run(steps_.installUpdateIfReady);
}

}  // namespace orvel
