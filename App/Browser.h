#pragma once

#include <adwaita.h>

#include <filesystem>
#include <memory>
#include <utility>
#include <vector>

#include "Base/GLibScheduler.h"
#include "Desktop/Gtk/GtkDesktop.h"
#include "Engine/WebKitGtk/WebKitEngine.h"
#include "Models/Store/ApplicationLifecycle.h"
#include "Models/Store/Services.h"

namespace orvel {

// The composition root: the one place that names the concrete engine and desktop, and makes every
// part of the program from them. Made before the run loop starts; restoring the session is part of
// it.
class Browser {
 public:
  // `folder` is the program's own: what ships with it lies beside it.
  Browser(GtkApplication* application, const std::filesystem::path& folder);
  ~Browser();

  void didFinishLaunching() { lifecycle_->didFinishLaunching(); }
  void handleReopen();
  void open(const std::vector<ExternalAddress>& addresses) { lifecycle_->open(addresses); }
  void newTab();
  void save();
  void willTerminate() { lifecycle_->willTerminate(); }

 private:
  GtkApplication* application_;
  GLibScheduler scheduler_;
  AppPaths paths_;
  std::filesystem::path share_;
  FileWriter files_;
  FileUserDefaults defaults_;
  // Lives until the process ends: the engine does not survive the end of its contexts.
  WebKitEngine& engine_;
  GtkDesktop desktop_;
  FaviconStore favicons_;
  FilterListUpdater filterLists_;
  CurrencyFeed currencies_;
  EngineSuggestions engineSuggestions_;
  Services services_;
  std::shared_ptr<BrowserStore> store_;
  std::unique_ptr<ApplicationLifecycle> lifecycle_;
};

}  // namespace orvel
