#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Base/Observation.h"
#include "Engine/Navigation.h"

namespace orvel {

class DownloadDelegate;

// A transfer to a file. The engine keeps it alive until it has ended.
class Download {
 public:
  virtual ~Download() = default;
  virtual std::optional<URL> originalURL() const = 0;
  // What the server says it sends, in bytes; absent while it does not say.
  virtual std::optional<uint64_t> expectedBytes() const = 0;
  // Asked for by a page, or by the program, through an ephemeral data store: nothing of it may be
  // kept but the file.
  virtual bool isEphemeral() const = 0;
  // 0 to 1; 0 while the length is unknown.
  virtual double fractionCompleted() const = 0;
  [[nodiscard]] virtual Observation observeProgress(std::function<void()> changed) = 0;
  // Ends in `didFail` with a cancelled error.
  virtual void cancel() = 0;
  // Must be set before the turn ends in which the download was handed over; not owned.
  virtual void setDelegate(std::weak_ptr<DownloadDelegate> delegate) = 0;
};

class DownloadDelegate {
 public:
  virtual ~DownloadDelegate() = default;
  // Where to write; absent cancels. Answered exactly once, at any later time. A file that stands
  // there fails the download and stays. `suggestedFilename` is the server's word and may hold
  // anything.
  virtual void decideDestination(
      const std::shared_ptr<Download>& download, const std::string& suggestedFilename,
      std::function<void(std::optional<std::filesystem::path>)> answer) = 0;
  virtual void didFinish(const std::shared_ptr<Download>& download) = 0;
  virtual void didFail(const std::shared_ptr<Download>& download, const LoadError& error) = 0;
};

}  // namespace orvel
