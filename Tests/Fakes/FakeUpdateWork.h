#pragma once

#include <fmt/format.h>

#include <string>
#include <vector>

#include "Support/Updates/UpdateWork.h"

namespace orvel::test {

// Writes down what an update did to the machine.
class FakeUpdateWork final : public UpdateWork {
 public:
  bool canReplace(const std::filesystem::path&) override { return isReplaceable; }
  void remove(const std::filesystem::path& folder) override { note("remove {}", folder.string()); }
  std::error_code create(const std::filesystem::path& folder) override {
    note("create {}", folder.string());
    return createError;
  }
  StageResult stage(const UpdateStage& stage, const std::filesystem::path& archive, int64_t build,
                    const std::string& signature) override {
    note("stage {} by {} for {} as {}", archive.string(), signature + "/" + stage.publicKey,
         stage.bundleID, build);
    if (failure) return Failure(*failure);
    return StagedUpdate{stage.folder / "unpacked/Orvel.app", "2.0", build};
  }
  std::error_code launchSwap(const std::filesystem::path& app, const std::filesystem::path& staged,
                             bool relaunch) override {
    note("swap {} for {}{}", app.string(), staged.string(), relaunch ? ", relaunch" : "");
    return {};
  }

  bool isReplaceable = true;
  std::error_code createError;
  std::optional<UpdateFailure> failure;
  std::vector<std::string> calls;

 private:
  template <class... Args>
  void note(fmt::format_string<Args...> format, Args&&... args) {
    calls.push_back(fmt::format(format, std::forward<Args>(args)...));
  }
};

}  // namespace orvel::test
