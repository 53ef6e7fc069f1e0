#pragma once

#include "Engine/Navigation.h"
#include "Engine/WebView.h"
#include "Models/Store/Services.h"

namespace orvel {

class BrowserTab;

// The addresses of one tab's page that belong to other applications.
class OtherApplications {
 public:
  OtherApplications(BrowserTab& tab, const Services& services) : tab_(tab), services_(services) {}

  // Any other scheme belongs to another application.
  [[nodiscard]] static bool isHandledInside(const URL& address);
  // Opens the action's address: at once for a click in the main frame, or else after asking.
  void open(const WebView& view, const NavigationAction& action);
  // Asks whether to open an address that belongs to another application; false for any other.
  bool handOver(const WebView& view, const NavigationAction& action);

 private:
  // Does nothing without an application for the address.
  void confirm(const WebView& view, const URL& address);

  BrowserTab& tab_;
  const Services& services_;
  bool isConfirming_ = false;
};

}  // namespace orvel
