#pragma once

#include <optional>
#include <string>
#include <vector>

#include "BrowserCore/Result.h"
#include "Models/Store/ApplicationLifecycle.h"

namespace orvel {

// What the program is told on its command line.
struct StartOptions {
  // As they were typed, files as their URIs. Each is an `externalAddress`.
  std::vector<std::string> addresses;
  bool wantsNewTab = false;
  bool isService = false;  // started by the bus, which asks for a window when it wants one

  struct Ended {
    int exitCode;
  };
  // Fails when there is nothing more to do: help and version have been printed, or what is wrong.
  static Result<StartOptions, Ended> parse(int count, char** arguments);
};

// What another program or a person means by the text: "example.com" is an address, too, whose
// scheme is then supplied. Absent for a text that is none.
[[nodiscard]] std::optional<ExternalAddress> externalAddress(const std::string& text);

}  // namespace orvel
