#include "Support/Downloads/DownloadManager.h"

#include <algorithm>

#include "Base/Log.h"
#include "BrowserCore/Downloads/DownloadName.h"

namespace orvel {

std::vector<DownloadManager::Item> DownloadManager::activeItems() const {
  std::vector<Item> active;
  for (const Item& item : items.get())
    if (item.state == Item::State::Downloading) active.push_back(item);
  return active;
}

std::optional<double> DownloadManager::activeProgress() const {
  const auto active = activeItems();
  if (active.empty()) return std::nullopt;
  double sum = 0;
  for (const Item& item : active) sum += item.progress;
  return sum / static_cast<double>(active.size());
}

void DownloadManager::clearFinished() { items = activeItems(); }

std::filesystem::path DownloadManager::uniqueDestination(std::string_view suggestedName) const {
  return directory_ / downloadName(suggestedName, [this](const std::string& name) {
           return files_.exists(directory_ / name);
         });
}

void DownloadManager::decideDestination(
    const std::shared_ptr<Download>& download, const std::string& suggestedFilename,
    std::function<void(std::optional<std::filesystem::path>)> answer) {
  // Not every account has the folder from its beginning; where it cannot be made, the download
  // fails.
  files_.createFolders(directory_);
  const Item item{.id = UUID::random(), .destination = uniqueDestination(suggestedFilename)};
  items.update([&](std::vector<Item>& list) {
    list.insert(list.begin(), item);
    if (list.size() > kMaxItems) list.resize(kMaxItems);
  });
  const auto progressed = [this, id = item.id, weak = std::weak_ptr(download)] {
    if (const auto live = weak.lock())
      update(id, [&](Item& changed) { changed.progress = live->fractionCompleted(); });
  };
  active_.insert_or_assign(
      download.get(), Active{item.id, item.destination, download->observeProgress(progressed)});
  answer(item.destination);
}

void DownloadManager::update(const UUID& id, const std::function<void(Item&)>& change) {
  items.update([&](std::vector<Item>& list) {
    const auto item = std::ranges::find(list, id, &Item::id);
    if (item != list.end()) change(*item);
  });
}

std::optional<DownloadManager::Active> DownloadManager::takeActive(const Download& download) {
  auto active = active_.extract(&download);
  if (active.empty()) return std::nullopt;
  return std::move(active.mapped());
}

void DownloadManager::didFinish(const std::shared_ptr<Download>& download) {
  const auto active = takeActive(*download);
  if (!active) return;
  update(active->itemID, [](Item& item) {
    item.progress = 1;
    item.state = Item::State::Finished;
  });
  workspace_.noteDownloadFinished(active->destination);
  if (onFinish) onFinish(active->destination.filename().string());
}

void DownloadManager::didFail(const std::shared_ptr<Download>& download, const LoadError& error) {
  const auto active = takeActive(*download);
  Log::download.error("Download failed: {} {}", error.domain, error.code);
  if (active) update(active->itemID, [](Item& item) { item.state = Item::State::Failed; });
}

}  // namespace orvel
