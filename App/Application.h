#pragma once

#include <adwaita.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "App/Browser.h"
#include "App/InstanceLock.h"

namespace orvel {

// The program among others: one instance a user, addresses from the command line and from D-Bus,
// and an orderly end by the user, by signal and by the session.
class Application {
 public:
  Application();
  ~Application();

  // Answers the program's exit code.
  int run(const std::vector<std::string>& arguments);

 private:
  void makeActions();
  // Finishes the launch. Answers whether this call did so: the bus may ask for anything before it
  // asks for the window.
  bool launchOnce();
  void openAddress(const std::string& text);
  void newTab();
  static std::optional<URL> addressOf(const std::string& argument);

  GtkApplication* application_ = nullptr;
  std::optional<InstanceLock> lock_;
  std::unique_ptr<Browser> browser_;
  std::vector<URL> addresses_;  // that the program was started with
  bool wantsNewTab_ = false;
  bool hasLaunched_ = false;
};

}  // namespace orvel
