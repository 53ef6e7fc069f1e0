#include "Support/Updates/UpdatePlace.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <system_error>

namespace orvel::UpdatePlace {

namespace fs = std::filesystem;

namespace {

// Where a copy runs that the system keeps elsewhere.
constexpr std::string_view kTranslocated = "/AppTranslocation/";
// Where volumes are mounted that come and go.
constexpr std::string_view kVolumes[] = {"/Volumes/", "/media/", "/run/media/"};

}  // namespace

bool canReplace(const fs::path& app) {
  std::error_code error;
  fs::path path = fs::absolute(app, error).lexically_normal();
  if (!path.has_filename()) path = path.parent_path();
  if (error || path.extension() != ".app") return false;

  const std::string text = path.string();
  if (text.find(kTranslocated) != std::string::npos ||
      std::ranges::any_of(kVolumes, [&](auto volume) { return text.starts_with(volume); }))
    return false;

  const fs::path folder = path.parent_path();
  struct statvfs volume {};
  if (statvfs(folder.c_str(), &volume) != 0 || (volume.f_flag & ST_RDONLY)) return false;
  return faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

}  // namespace orvel::UpdatePlace
