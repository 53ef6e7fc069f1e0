#pragma once

#include <filesystem>

#include "Support/Updates/RunningProgram.h"

namespace orvel {

// Where the program and what came with it lie: in an application bundle, or in the folders that
// programs are installed to (and built in). Found once, at the start: an update may put another
// version at these paths while this one runs.
struct Installation {
  std::filesystem::path programs;    // this program and its helpers
  std::filesystem::path share;       // page scripts, filter lists, style sheets
  std::filesystem::path webProcess;  // what the engine loads into each page's process
  std::filesystem::path texts;       // catalogs of translated texts
  RunningProgram program;

  static const Installation& current();
};

}  // namespace orvel
