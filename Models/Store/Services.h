#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "Base/FileWriter.h"
#include "Base/Scheduler.h"
#include "Desktop/Desktop.h"
#include "Engine/Engine.h"
#include "Models/Updates/UpdateServices.h"
#include "Support/Downloads/DownloadManager.h"
#include "Support/Feeds/CurrencyFeed.h"
#include "Support/Feeds/EngineSuggestions.h"
#include "Support/Stores/AppPaths.h"
#include "Support/Stores/FaviconStore.h"
#include "Support/Stores/HistoryStore.h"
#include "Support/Stores/UserDefaults.h"
#include "WebEngine/Blocking/FilterListUpdater.h"

namespace orvel {

// What the model stands on, handed down from the composition root. Outlives every object of the
// model, also tabs whose store is gone.
struct Services {
  Scheduler& scheduler;
  Engine& engine;
  Desktop desktop;
  FileWriter& files;
  AppPaths paths;
  FaviconStore& favicons;
  UserDefaults& defaults;
  FilterListUpdater& filterLists;
  CurrencyFeed& currencies;
  EngineSuggestions& engineSuggestions;
  UpdateServices updates;
  // What ships with the program: page scripts, filter lists.
  std::filesystem::path resources;
  std::shared_ptr<DownloadManager> downloads;
  // Opens the visits' database; may answer null and may be empty: no visit is recorded then.
  std::function<std::unique_ptr<HistoryStore>(const std::filesystem::path&)> openHistory;
};

}  // namespace orvel
