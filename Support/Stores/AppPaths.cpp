#include "Support/Stores/AppPaths.h"

#include <fmt/format.h>
#include <glib.h>

namespace orvel {

AppPaths AppPaths::in(const std::filesystem::path& dataHome, const std::filesystem::path& cacheHome,
                      const std::filesystem::path& downloads) {
  return {dataHome / "Orvel", cacheHome / "com.brinemark.orvel", downloads};
}

void AppPaths::create(FileSystem& files) const { (void)files.createFolders(support); }

std::filesystem::path AppPaths::transient() {
  return std::filesystem::path(g_get_user_runtime_dir()) / "orvel";
}

std::filesystem::path AppPaths::sessionBackup(int64_t schemaVersion) const {
  return support / fmt::format("session.v{}.backup.json", schemaVersion);
}

}  // namespace orvel
