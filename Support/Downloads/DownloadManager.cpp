#include "Support/Downloads/DownloadManager.h"

#include <algorithm>

#include "Base/Log.h"
#include "BrowserCore/Downloads/DownloadName.h"

namespace orvel {

namespace fs = std::filesystem;

using State = DownloadManager::Item::State;

std::vector<DownloadManager::Item> DownloadManager::activeItems() const {
  std::vector<Item> active;
  for (const Item& item : items.get())
    if (item.state == State::Downloading) active.push_back(item);
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

void DownloadManager::cancel(const UUID& id) {
  remove(id);
  const auto active =
      std::ranges::find(active_, id, [](const auto& entry) { return entry.second.itemID; });
  if (active == active_.end()) return;
  if (const auto download = active->second.download.lock()) download->cancel();
}

void DownloadManager::forgetPrivate() {
  for (const Item& item : std::vector(items.peek())) {
    if (!item.isPrivate) continue;
    if (item.state == State::Downloading)
      cancel(item.id);
    else
      remove(item.id);
  }
}

bool DownloadManager::isTaken(const fs::path& destination) const {
  return files_.exists(destination) ||
         files_.exists(directory_ / partialName(destination.filename().string())) ||
         std::ranges::any_of(
             active_, [&](const auto& entry) { return entry.second.destination == destination; });
}

fs::path DownloadManager::uniqueDestination(std::string_view suggestedName) const {
  return directory_ / downloadName(suggestedName, [this](const std::string& name) {
           return isTaken(directory_ / name);
         });
}

void DownloadManager::choose(const Download& download, fs::path destination) {
  chosen_.insert_or_assign(&download, std::move(destination));
}

void DownloadManager::decideDestination(const std::shared_ptr<Download>& download,
                                        const std::string& suggestedFilename,
                                        std::function<void(std::optional<fs::path>)> answer) {
  const auto chosen = chosen_.extract(download.get());
  const bool isChosen = !chosen.empty();
  const fs::path directory = isChosen ? chosen.mapped().parent_path() : directory_;
  // Not every account has the folder from its beginning; where it cannot be made, the download
  // fails.
  files_.createFolders(directory);
  Item item{.id = UUID::random(),
            .destination = isChosen ? chosen.mapped() : uniqueDestination(suggestedFilename),
            .isPrivate = download->isEphemeral()};
  const auto expected = download->expectedBytes();
  item.isLengthKnown = expected.has_value();
  if (const auto free = files_.freeSpace(directory); free && expected > free) {
    item.state = State::Failed;
    item.isDiskFull = true;
    insert(std::move(item));
    return answer(std::nullopt);
  }
  insert(item);
  const auto progressed = [this, id = item.id, weak = std::weak_ptr(download)] {
    const auto live = weak.lock();
    if (!live || !live->expectedBytes()) return;
    update(id, [&](Item& changed) { changed.progress = live->fractionCompleted(); });
  };
  const fs::path partial = directory / partialName(item.destination.filename().string());
  active_.insert_or_assign(download.get(), Active{item.id, item.destination, partial, isChosen,
                                                  download, download->observeProgress(progressed)});
  answer(partial);
  if (onBegin) onBegin(item.destination.filename().string());
}

void DownloadManager::insert(Item item) {
  items.update([&](std::vector<Item>& list) {
    list.insert(list.begin(), std::move(item));
    if (list.size() > kMaxItems) list.resize(kMaxItems);
  });
}

void DownloadManager::remove(const UUID& id) {
  items.update([&](std::vector<Item>& list) {
    std::erase_if(list, [&](auto& one) { return one.id == id; });
  });
}

void DownloadManager::update(const UUID& id, const std::function<void(Item&)>& change) {
  const auto& list = items.peek();
  const auto item = std::ranges::find(list, id, &Item::id);
  if (item == list.end()) return;
  Item changed = *item;
  change(changed);
  if (changed == *item) return;
  items.update([&](std::vector<Item>& all) { all[item - list.begin()] = std::move(changed); });
}

std::optional<DownloadManager::Active> DownloadManager::takeActive(const Download& download) {
  chosen_.erase(&download);
  auto active = active_.extract(&download);
  if (active.empty()) return std::nullopt;
  return std::move(active.mapped());
}

std::optional<fs::path> DownloadManager::complete(const Active& active) {
  // Something else may take each name that is found free.
  constexpr int kMaxAttempts = 100;
  fs::path destination = active.destination;
  for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
    const std::error_code error = active.isChosen ? files_.rename(active.partial, destination)
                                                  : files_.renameToNew(active.partial, destination);
    if (!error) return destination;
    if (error != std::errc::file_exists) {
      Log::download.error("Couldn't name a download: {}", error.message());
      return std::nullopt;
    }
    destination = uniqueDestination(active.destination.filename().string());
  }
  return std::nullopt;
}

void DownloadManager::didFinish(const std::shared_ptr<Download>& download) {
  const auto active = takeActive(*download);
  if (!active) return;
  const auto destination = complete(*active);
  update(active->itemID, [&](Item& item) {
    item.state = destination ? State::Finished : State::Failed;
    if (!destination) return;
    item.destination = *destination;
    item.progress = 1;
  });
  if (!destination) return;
  workspace_.noteDownloadFinished(*destination);
  if (onFinish) onFinish(destination->filename().string());
}

void DownloadManager::didFail(const std::shared_ptr<Download>& download, const LoadError& error) {
  const auto active = takeActive(*download);
  if (!active) return;
  if (error.kind == LoadError::Kind::Cancelled) {
    files_.remove(active->partial);
    return remove(active->itemID);
  }
  Log::download.error("Download failed: {} {}", error.domain, error.code);
  update(active->itemID, [&](Item& item) {
    item.state = State::Failed;
    item.isDiskFull = error.kind == LoadError::Kind::DiskFull;
  });
}

}  // namespace orvel
