#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "Support/Updates/UpdateStage.h"

namespace orvel {

// What an update does on the disk and with processes. Calls may come from any thread, and block;
// tests bring one of their own.
class UpdateWork {
 public:
  virtual ~UpdateWork() = default;

  virtual bool canReplace(const std::filesystem::path& app) = 0;
  // Removes the folder with all that is in it. A failure is ignored.
  virtual void remove(const std::filesystem::path& folder) = 0;
  // Makes the folder with its missing parents.
  virtual std::error_code create(const std::filesystem::path& folder) = 0;
  virtual StageResult stage(const UpdateStage& stage, const std::filesystem::path& archive,
                            int64_t build, const std::string& signature) = 0;
  // Has `app` replaced by `staged` once this process has ended, and started when so wished.
  virtual std::error_code launchSwap(const std::filesystem::path& app,
                                     const std::filesystem::path& staged, bool relaunch) = 0;

  // The machine's own.
  static std::shared_ptr<UpdateWork> real();
};

}  // namespace orvel
