#include "Support/Updates/UpdateWork.h"

#include <unistd.h>

#include "Support/Updates/FileBytes.h"
#include "Support/Updates/SwapLaunch.h"
#include "Support/Updates/UpdatePlace.h"

namespace orvel {

namespace fs = std::filesystem;

namespace {

class RealUpdateWork final : public UpdateWork {
 public:
  bool canReplace(const fs::path& app) override { return UpdatePlace::canReplace(app); }
  void remove(const fs::path& folder) override { removeAll(folder); }
  std::error_code create(const fs::path& folder) override {
    std::error_code error;
    fs::create_directories(folder, error);
    return error;
  }
  StageResult stage(const UpdateStage& stage, const fs::path& archive, int64_t build,
                    const std::string& signature) override {
    return stage.stage(archive, build, signature);
  }
  std::error_code launchSwap(const fs::path& app, const fs::path& staged, bool relaunch) override {
    return UpdateSwap::launch(getpid(), app, staged, relaunch);
  }
};

}  // namespace

std::shared_ptr<UpdateWork> UpdateWork::real() { return std::make_shared<RealUpdateWork>(); }

}  // namespace orvel
