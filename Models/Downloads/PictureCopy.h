#pragma once

#include "Engine/Download.h"
#include "Models/Tab/BrowserTab.h"

namespace orvel {

class BrowserStore;

// Brings a picture of a page to the clipboard: fetched anew, or out of the engine's cache.
class PictureCopy final : public DownloadDelegate {
 public:
  static constexpr uint64_t kMaxBytes = 64u << 20;
  static constexpr int kMaxSide = 8192;  // pixels

  // Says by a toast whether it came.
  static void start(BrowserStore& store, const BrowserTab& tab, const URL& picture);

  explicit PictureCopy(BrowserStore& store) : store_(store) {}

  void decideDestination(const std::shared_ptr<Download>& download, const std::string& suggested,
                         std::function<void(std::optional<std::filesystem::path>)> answer) override;
  void didFinish(const std::shared_ptr<Download>& download) override;
  void didFail(const std::shared_ptr<Download>& download, const LoadError& error) override;

 private:
  void end(const ImageRef& image);

  BrowserStore& store_;
  std::filesystem::path file_;
  // Itself, until it has ended.
  std::shared_ptr<PictureCopy> self_;
};

}  // namespace orvel
