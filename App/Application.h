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
  void openAddress(const std::string& text);
  static std::optional<URL> addressOf(const std::string& argument);

  GtkApplication* application_ = nullptr;
  std::optional<InstanceLock> lock_;
  std::unique_ptr<Browser> browser_;
};

}  // namespace orvel
