#pragma once

#include <variant>
#include <vector>

#include "BrowserCore/Addresses/URL.h"

namespace orvel {

// What the program is told on its command line.
struct StartOptions {
  std::vector<URL> addresses;
  bool wantsNewTab = false;
  bool isService = false;  // started by the bus, which asks for a window when it wants one

  struct Ended {
    int exitCode;
  };
  // `Ended` when there is nothing more to do: help and version have been printed, or what is wrong.
  static std::variant<StartOptions, Ended> parse(int count, char** arguments);
};

}  // namespace orvel
