#include "Models/Store/ApplicationLifecycle.h"

#include <algorithm>

#include "Base/Log.h"

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
  run(steps_.installMainMenu);
  showWindow();
  store_->services().desktop.application.activate();
  store_->applyQuickBarKey();
  run(steps_.startUpdates);
}

void ApplicationLifecycle::showWindow() {
  if (!windowController_ && steps_.makeWindowController)
    windowController_ = steps_.makeWindowController();
  if (!windowController_) return;
  windowController_->show();
  windowController_->window().present();
}

void ApplicationLifecycle::open(const std::vector<URL>& urls) {
  bool wantsWindow = false;
  for (const URL& url : urls) wantsWindow = store_->openExternal(url) || wantsWindow;
  if (wantsWindow || !windowController_) showWindow();
}

void ApplicationLifecycle::handleReopen(VisibleWindows visible) {
  if (visible == VisibleWindows::None)
    showWindow();
  else
    store_->services().desktop.application.activate();
}

bool ApplicationLifecycle::continueActivity(const std::string& identifier) {
  return store_->openSpotlightItem(identifier);
}

void ApplicationLifecycle::willTerminate() {
  Log::app.notice("Quitting");
  const Services& services = store_->services();
  const Instant end = services.scheduler.instant() + kDrainDeadline;
  const auto drain = [&] {
    services.files.drain(std::max(end - services.scheduler.instant(), Duration::zero()),
                         services.paths.session());
  };
  store_->save();
  // A slow disk costs positions on pages before it costs the session.
  drain();
  store_->saveTabStates(BrowserStore::StateWriting::Now);
  drain();
  run(steps_.installUpdateIfReady);
}

}  // namespace orvel
