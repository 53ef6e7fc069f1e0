#pragma once

#include "Models/Tab/BrowserTab.h"
#include "Support/Downloads/DownloadManager.h"

namespace orvel {

class BrowserStore;
class Space;

// What a page of the tab would ask for the address with.
[[nodiscard]] URLRequest pageRequest(const BrowserTab& tab, const URL& address);

// What the program tells of downloads, and what a person does with their files.
class Downloads {
 public:
  explicit Downloads(BrowserStore& store);

  DownloadManager& manager() const;
  // Takes the engine's downloads and tells of their beginning and end.
  void start();
  // Opens the finished file in the user's application for it; one that could start a program is
  // shown in its folder.
  void open(const DownloadManager::Item& item);
  void reveal(const DownloadManager::Item& item);
  // Opens the folder of downloads.
  void openFolder();
  // Whether the program may end: asks while a download is under way. No while it is being asked.
  Task<bool> mayQuit();
  // Asks where to, and downloads the address as a page of the tab would.
  void saveAs(const TabRef& tab, const URL& address);
  // Closes a tab that has nothing to show, as what it was to load is downloaded. It does not count
  // as closed by the person; the tab that was used before it is selected.
  void closeEmpty(const TabRef& tab);

 private:
  static TabRef lastUsed(const Space& space, const BrowserTab& except);

  BrowserStore& store_;
  bool isAskingToQuit_ = false;
};

}  // namespace orvel
