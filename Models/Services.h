#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "Base/FileWriter.h"
#include "Base/Scheduler.h"
#include "Desktop/Desktop.h"
#include "Engine/Engine.h"
#include "Support/AppPaths.h"
#include "Support/DownloadManager.h"
#include "Support/FaviconStore.h"
#include "Support/HistoryStore.h"

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
  std::shared_ptr<DownloadManager> downloads;
  // Opens the visits' database; null when that fails. May be empty: no visit is ever recorded.
  std::function<std::unique_ptr<HistoryStore>(const std::filesystem::path&)> openHistory;
};

}  // namespace orvel
