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
// Until it is whole a file carries its name with ".part" behind it. Nothing is ever overwritten: a
// name that something else has taken meanwhile gets a number at the end, too.
//
// The engine's downloads hold it weakly: make it with std::make_shared.
class DownloadManager final : public DownloadDelegate {
 public:
  static constexpr size_t kMaxItems = 20;

  struct Item {
    enum class State { Downloading, Finished, Failed };
    UUID id;
    // Where the whole file is, or will be.
    std::filesystem::path destination;
    double progress = 0;  // 0 to 1; stays 0 while the length is unknown
    bool isLengthKnown = false;
    State state = State::Downloading;
    // It failed as the disk had no room for it.
    bool isDiskFull = false;
    // A private window's: gone from the list with the last of them.
    bool isPrivate = false;

    friend bool operator==(const Item&, const Item&) = default;
  };

  DownloadManager(FileSystem& files, Workspace& workspace, std::filesystem::path directory)
      : files_(files), workspace_(workspace), directory_(std::move(directory)) {}

  // The latest first. An item that others push out goes on downloading.
  Observable<std::vector<Item>> items;
  // Told the file's name when a download begins, and when it ends well.
  std::function<void(const std::string& name)> onBegin;
  std::function<void(const std::string& name)> onFinish;

  // The items under way, in the order of the list.
  std::vector<Item> activeItems() const;
  // The plain mean of their progress, so that a small file counts as much as a large one, and one
  // of unknown length as not begun; absent without any.
  std::optional<double> activeProgress() const;
  // Removes the finished and the failed ones.
  void clearFinished();
  // Ends a download under way and removes its item and what has come of its file.
  void cancel(const UUID& id);
  // The private windows have closed: ends what they still download and forgets their items. The
  // files that have come stay.
  void forgetPrivate();

  // The user has said where the download goes, and that it may replace what stands there.
  void choose(const Download& download, std::filesystem::path destination);

  void decideDestination(const std::shared_ptr<Download>& download,
                         const std::string& suggestedFilename,
                         std::function<void(std::optional<std::filesystem::path>)> answer) override;
  void didFinish(const std::shared_ptr<Download>& download) override;
  void didFail(const std::shared_ptr<Download>& download, const LoadError& error) override;

 private:
  struct Active {
    UUID itemID;
    std::filesystem::path destination;
    std::filesystem::path partial;
    bool isChosen = false;  // by the user, who replaces what has the name
    std::weak_ptr<Download> download;
    Observation observation;
  };

  std::filesystem::path uniqueDestination(std::string_view suggestedName) const;
  bool isTaken(const std::filesystem::path& destination) const;
  // Gives the whole file its name; absent when that cannot be done.
  std::optional<std::filesystem::path> complete(const Active& active);
  void insert(Item item);
  void remove(const UUID& id);
  void update(const UUID& id, const std::function<void(Item&)>& change);
  std::optional<Active> takeActive(const Download& download);

  FileSystem& files_;
  Workspace& workspace_;
  const std::filesystem::path directory_;
  std::unordered_map<const Download*, Active> active_;
  std::unordered_map<const Download*, std::filesystem::path> chosen_;
};

}  // namespace orvel
