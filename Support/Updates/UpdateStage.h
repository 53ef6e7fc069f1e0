#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <variant>

#include "BrowserCore/Result.h"
#include "BrowserCore/SelfUpdate/UpdateFailure.h"

namespace orvel {

// A verified application, ready to be swapped in.
struct StagedUpdate {
  std::filesystem::path app;  // the bundle in the staging folder
  std::string version;        // for people; "?" when the bundle has none
  int64_t build = 0;
};

// Why an update is refused, or why its folder cannot be made or listed.
using StageError = std::variant<UpdateFailure, std::error_code>;
using StageResult = Result<StagedUpdate, StageError>;

// Unpacks and examines one release. Blocks for seconds; belongs to no thread.
struct UpdateStage {
  std::filesystem::path folder;  // this stage's own
  std::string bundleID;          // which the new bundle must carry
  std::string publicKey;         // base64 of 32 bytes

  // The update in an archive, which may lie in `folder`. Its signature is checked before anything
  // is unpacked, then its form, the bundle's identifier and build, and the bundle's code signature
  // by the same key; the first failure ends it. After one, `folder` is gone with all that was in
  // it.
  [[nodiscard]] StageResult stage(const std::filesystem::path& archive, int64_t build,
                                  const std::string& signature) const;
};

}  // namespace orvel
