#include "Support/Updates/UpdateStage.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <utility>
#include <vector>

#include "BrowserCore/SelfUpdate/SigningKeys.h"
#include "Support/Updates/BundleInformation.h"
#include "Support/Updates/BundleManifest.h"
#include "Support/Updates/FileBytes.h"
#include "Support/Updates/UpdateSignature.h"
#include "Support/Updates/ZipUnpacking.h"

namespace orvel {

namespace fs = std::filesystem;

namespace {

StageResult inspect(const UpdateStage& stage, const fs::path& app, int64_t build) {
  const auto information = BundleInformation::read(app);
  if (!information || information->identifier != stage.bundleID)
    return Failure(UpdateFailure::wrongApp);
  if (information->build != std::to_string(build)) return Failure(UpdateFailure::wrongBuild);
  const auto key = PublicKey::parse(stage.publicKey);
  if (!key || !BundleManifest::isValid(app, *key)) return Failure(UpdateFailure::badCodeSignature);
  // After a power cut there must be no application that is there by its names only.
  const FileDescriptor volume(open(app.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!volume || syncfs(volume.get()) != 0)
    return Failure(std::error_code(errno, std::generic_category()));
  return StagedUpdate{app, information->version.value_or("?"), build};
}

StageResult unpackAndInspect(const UpdateStage& stage, const fs::path& archive, int64_t build,
                             const std::string& signature) {
  if (!UpdateSignature::isValid(signature, archive, build, stage.publicKey))
    return Failure(UpdateFailure::badSignature);

  const fs::path unpacked = stage.folder / "unpacked";
  removeAll(unpacked);
  std::error_code error;
  fs::create_directories(unpacked, error);
  if (error) return Failure(error);
  if (!unpackZip(archive, unpacked)) return Failure(UpdateFailure::unpackFailed);

  std::vector<fs::path> items;
  for (fs::directory_iterator entry(unpacked, error), end; !error && entry != end;
       entry.increment(error))
    items.push_back(entry->path());
  if (error) return Failure(error);
  if (items.size() != 1 || items[0].extension() != ".app")
    return Failure(UpdateFailure::wrongArchive);
  return inspect(stage, items[0], build);
}

}  // namespace

StageResult UpdateStage::stage(const fs::path& archive, int64_t build,
                               const std::string& signature) const {
  auto result = unpackAndInspect(*this, archive, build, signature);
  if (!result) removeAll(folder);
  return result;
}

}  // namespace orvel
