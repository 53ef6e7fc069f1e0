#include "App/Installation.h"

#include <unistd.h>

#include <cstdlib>
#include <string>
#include <system_error>

#include "BrowserCore/SelfUpdate/UpdateRelease.h"
#include "Support/Updates/BundleInformation.h"

namespace orvel {

namespace fs = std::filesystem;

namespace {

bool isBelow(const fs::path& path, const char* folder) {
  return folder && *folder && path.string().starts_with(std::string(folder) + "/");
}

// Package managers and sandboxes update the programs that they have brought.
bool isSomebodyElses(const fs::path& bundle) {
  const bool isPackaged = isBelow(bundle, "/usr") && !isBelow(bundle, "/usr/local");
  return isPackaged || isBelow(bundle, "/nix") || isBelow(bundle, "/gnu") ||
         isBelow(bundle, std::getenv("SNAP")) || isBelow(bundle, std::getenv("APPDIR")) ||
         access("/.flatpak-info", F_OK) == 0;
}

// "Orvel.app" for "Orvel.app/Contents/Linux"; empty for any other folder.
fs::path bundleOf(const fs::path& programs) {
  const fs::path contents = programs.parent_path();
  const bool isInBundle = programs == contents / "Linux" &&
                          contents == contents.parent_path() / "Contents" &&
                          contents.parent_path().extension() == ".app";
  return isInBundle ? contents.parent_path() : fs::path();
}

Installation inBundle(const fs::path& bundle, const fs::path& programs) {
  const fs::path resources = bundle / "Contents/Resources";
  Installation found{
      programs, resources / "share", resources / "web-process", resources / "locale", {}};
  if (!isSomebodyElses(bundle)) found.program.bundle = bundle;
  if (const auto information = BundleInformation::read(bundle)) {
    found.program.identifier = information->identifier;
    found.program.version = information->version.value_or("?");
    found.program.build = buildNumber(information->build.value_or("")).value_or(0);
  }
  return found;
}

Installation find() {
  std::error_code ignored;
  const fs::path programs = fs::read_symlink("/proc/self/exe", ignored).parent_path();
  if (const fs::path bundle = bundleOf(programs); !bundle.empty())
    return inBundle(bundle, programs);
  return {programs,
          programs / "../share/orvel",
          programs / "../lib/web-process",
          programs / "../share/locale",
          {.version = ORVEL_VERSION, .build = ORVEL_BUILD}};
}

}  // namespace

const Installation& Installation::current() {
  static const Installation installation = find();
  return installation;
}

}  // namespace orvel
