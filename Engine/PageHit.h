#pragma once

#include <optional>
#include <string>

#include "BrowserCore/Addresses/URL.h"

namespace orvel {

// What a page has where its menu is asked for.
struct PageHit {
  // Video or sound in the page.
  struct Media {
    bool isVideo = false;
    bool isPaused = true;
    bool isMuted = false;
    bool isLooping = false;
    bool hasControls = false;

    friend bool operator==(const Media&, const Media&) = default;
  };
  static constexpr size_t kMaxText = 65'536;

  // In the view's widget, from its top left corner.
  double x = 0;
  double y = 0;
  std::optional<URL> link;
  // What the link reads; empty for a picture.
  std::string linkText;
  std::optional<URL> picture;
  // Absent also for what has no address, such as a stream that a script feeds.
  std::optional<URL> mediaAddress;
  std::optional<Media> media;
  // The selected text, at most `kMaxText` bytes of it; that of a password field is never told.
  std::string selection;
  // A field, or another part that can be edited.
  bool isEditable = false;
};

// What can be asked of the media that the latest menu was for.
enum class MediaCommand { TogglePlaying, ToggleMuted, ToggleLooping, ToggleControls };

}  // namespace orvel
