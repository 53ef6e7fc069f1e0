#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "Base/FileSystem.h"
#include "Engine/WebView.h"

namespace orvel {

// One tab's way back to its page while it has no view, and how much of that stands in the tab's
// file. It leads back to the page that it was taken of and to no other: whatever else the tab has
// come to show since, a state of another address is never restored.
class PageState {
 public:
  // Whether a former run may have left the file.
  enum class FormerFile { None, MayExist };

  PageState(FileSystem& files, std::filesystem::path file, FormerFile former);

  // Pages decide how large theirs get: larger ones count as none.
  static constexpr uint64_t kLargest = 16u << 20;
  [[nodiscard]] static bool isKept(const InteractionState& state);

  // Read from the file when first needed; absent when there is none.
  const std::optional<InteractionState>& saved() const;
  void set(std::optional<InteractionState> state);
  // Takes the bytes out for a view that is to show the page with this address; absent when they
  // lead to another.
  std::optional<std::string> take(const std::optional<URL>& address);

  const std::filesystem::path& file() const { return file_; }
  // Nothing is known but what the file may hold, which counts.
  bool isUnread() const { return status_ == Status::Unread; }
  // The file, if there is one, is out of date.
  bool isStale() const { return status_ == Status::Stale; }
  // The page has changed since the file was written.
  void markStale();
  // The file holds the present state, or is about to.
  void markWritten();

  // What the file holds: the address and the engine's bytes.
  [[nodiscard]] static std::string encoded(const InteractionState& state);
  // Absent for anything that `encoded` hasn't made.
  [[nodiscard]] static std::optional<InteractionState> decode(std::string_view bytes);

 private:
  enum class Status { Unread, Written, Stale };

  FileSystem& files_;
  const std::filesystem::path file_;
  mutable std::optional<InteractionState> saved_;
  mutable Status status_;
};

}  // namespace orvel
