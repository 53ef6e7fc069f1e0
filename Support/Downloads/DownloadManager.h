#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Base/FileSystem.h"
#include "Base/Observable.h"
#include "BrowserCore/UUID.h"
#include "Desktop/Workspace.h"
#include "Engine/Download.h"

namespace orvel {

// Takes every download of every tab, gives it a free name in the user's folder and keeps a short
// list of the latest ones. The list lives only for this run.
//
// The engine's downloads hold it weakly: make it with std::make_shared.
class DownloadManager final : public DownloadDelegate {
 public:
  static constexpr size_t kMaxItems = 20;

  struct Item {
    enum class State { Downloading, Finished, Failed };
    UUID id;
    std::filesystem::path destination;
    double progress = 0;  // 0 to 1
    State state = State::Downloading;

    friend bool operator==(const Item&, const Item&) = default;
  };

  DownloadManager(FileSystem& files, Workspace& workspace, std::filesystem::path directory)
      : files_(files), workspace_(workspace), directory_(std::move(directory)) {}

  // The latest first. An item that others push out goes on downloading.
  Observable<std::vector<Item>> items;
  // Told the file's name when a download ends well.
  std::function<void(const std::string& name)> onFinish;

  // The items under way, in the order of the list.
  std::vector<Item> activeItems() const;
  // The plain mean of their progress, so that a small file counts as much as a large one; absent
  // without any.
  std::optional<double> activeProgress() const;
  // Removes the finished and the failed ones.
  void clearFinished();

  void decideDestination(const std::shared_ptr<Download>& download,
                         const std::string& suggestedFilename,
                         std::function<void(std::optional<std::filesystem::path>)> answer) override;
  void didFinish(const std::shared_ptr<Download>& download) override;
  void didFail(const std::shared_ptr<Download>& download, const LoadError& error) override;

 private:
  struct Active {
    UUID itemID;
    std::filesystem::path destination;
    Observation observation;
  };

  std::filesystem::path uniqueDestination(std::string_view suggestedName) const;
  void update(const UUID& id, const std::function<void(Item&)>& change);
  std::optional<Active> takeActive(const Download& download);

  FileSystem& files_;
  Workspace& workspace_;
  const std::filesystem::path directory_;
  std::unordered_map<const Download*, Active> active_;
};

}  // namespace orvel
