#pragma once

#include <filesystem>

#include "Base/FileSystem.h"
#include "BrowserCore/UUID.h"

namespace orvel {

// Where the program keeps its files, computed once at the start from the desktop's base folders.
struct AppPaths {
  // Everything that must last: the session, the archive, page states, icons.
  std::filesystem::path support;
  // What can be made again.
  std::filesystem::path caches;
  // The user's own folder for downloads.
  std::filesystem::path downloads;

  // `dataHome` and `cacheHome` are the desktop's base folders, XDG_DATA_HOME and XDG_CACHE_HOME.
  [[nodiscard]] static AppPaths in(const std::filesystem::path& dataHome,
                                   const std::filesystem::path& cacheHome,
                                   const std::filesystem::path& downloads);

  // Makes `support` with its missing parents. A failure is ignored: what is done in the folder
  // later fails by itself.
  void create(FileSystem& files) const;

  // What is gone with the person's session on this machine, and, where the system can, never on the
  // disk.
  static std::filesystem::path transient();
  std::filesystem::path session() const { return support / "session.json"; }
  std::filesystem::path unreadableSession() const { return support / "session.unreadable.json"; }
  std::filesystem::path sessionBackup(int64_t schemaVersion) const;
  std::filesystem::path archive() const { return support / "archive.json"; }
  std::filesystem::path choices() const { return support / "Choices.json"; }
  std::filesystem::path history() const { return support / "history.sqlite"; }
  std::filesystem::path currencyRates() const { return support / "eurofxref.xml"; }
  std::filesystem::path tabStates() const { return support / "TabStates"; }
  std::filesystem::path tabState(const UUID& tab) const {
    return tabStates() / (tab.text() + ".state");
  }
  std::filesystem::path favicons() const { return support / "Favicons"; }
};

}  // namespace orvel
