#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace orvel {

// The program that runs, as far as an update has to know it.
struct RunningProgram {
  // The application bundle that it runs from, at the start. Empty: it stands in no bundle of its
  // own, but was installed by a package manager or runs in a sandbox.
  std::filesystem::path bundle;
  std::optional<std::string> identifier;  // the bundle's
  std::string version = "?";              // for people
  int64_t build = 0;                      // less than that of any release when it is not known
};

}  // namespace orvel
