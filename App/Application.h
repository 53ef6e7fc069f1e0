#pragma once

#include <adwaita.h>

#include <memory>
#include <optional>
#include <string>

#include "App/Browser.h"
#include "App/InstanceLock.h"
#include "App/StartOptions.h"

namespace orvel {

// The program among others: one instance a user, addresses from the command line and from D-Bus,
// and an orderly end by the user, by signal and by the session.
class Application {
 public:
  Application();
  ~Application();

  // Returns the program's exit code.
  int run(StartOptions options);

 private:
  void makeActions();
  // Finishes the launch. Returns whether this call did so: the bus may ask for anything before it
  // asks for the window.
  bool launchOnce();
  void openAddress(const std::string& text);
  void newTab();

  GtkApplication* application_ = nullptr;
  std::optional<InstanceLock> lock_;
  std::unique_ptr<Browser> browser_;
  std::vector<std::string> startAddresses_;
  bool wantsNewTab_ = false;
  bool hasLaunched_ = false;
};

}  // namespace orvel
