#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Base/Time.h"
#include "BrowserCore/Addresses/URL.h"
#include "Desktop/Windows.h"
#include "Engine/Navigation.h"

namespace orvel {

class BrowserStore;

// The controller of the main window.
class MainWindowController {
 public:
  virtual ~MainWindowController() = default;
  virtual void show() = 0;
  virtual DesktopWindow& window() = 0;
};

// An address from outside: the command line, another program.
struct ExternalAddress {
  URL url;
  SchemeSource schemeSource = SchemeSource::Given;  // whether its scheme was written

  friend bool operator==(const ExternalAddress&, const ExternalAddress&) = default;
};

// The order of the program's beginning and end, apart from any toolkit.
class ApplicationLifecycle {
 public:
  // What the steps need of the floors above; an empty one is passed over.
  struct Steps {
    std::string appVersion;     // for example "1.2"
    std::string systemVersion;  // for example "Debian GNU/Linux 12"
    std::function<void()> subscribeDiagnostics;
    // Makes the main window, which becomes the store's interface, and shows nothing yet.
    std::function<std::unique_ptr<MainWindowController>()> makeWindowController;
    std::function<void()> startUpdates;
    std::function<void()> installUpdateIfReady;
  };

  // How long the end of the program waits for the disk.
  static constexpr Duration kDrainDeadline = 2s;

  ApplicationLifecycle(std::shared_ptr<BrowserStore> store, Steps steps);

  BrowserStore& store() const { return *store_; }

  void didFinishLaunching();
  // Makes the main window if there is none, and brings it forward.
  void showWindow();
  void open(const std::vector<ExternalAddress>& addresses);
  // The user started the program again or clicked its icon: what is there comes forward.
  enum class VisibleWindows { None, Some };
  void handleReopen(VisibleWindows visible);
  // A result of the desktop's search was chosen. Returns whether it was one of this program's.
  bool continueActivity(const std::string& identifier);
  // Brings everything to the disk; blocks for at most `kDrainDeadline`.
  void willTerminate();

 private:
  const std::shared_ptr<BrowserStore> store_;
  const Steps steps_;
  std::unique_ptr<MainWindowController> windowController_;
};

}  // namespace orvel
