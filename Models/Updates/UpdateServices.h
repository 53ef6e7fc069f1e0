#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "BrowserCore/Addresses/URL.h"
#include "Support/Network/HTTPSession.h"
#include "Support/Updates/RunningProgram.h"
#include "Support/Updates/UpdateWork.h"

namespace orvel {

// What self-update stands on.
struct UpdateServices {
  URL feed;               // the record of the newest release
  std::string publicKey;  // base64 of the key that releases are signed with
  RunningProgram program;
  // Where releases are prepared, each in a folder named by its build. The program's own.
  std::filesystem::path stagingRoot;
  MakeHTTPSession makeSession;
  std::shared_ptr<UpdateWork> work;
};

}  // namespace orvel
