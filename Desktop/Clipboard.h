#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Base/Image.h"

namespace orvel {

// The desktop's clipboard.
class Clipboard {
 public:
  virtual ~Clipboard() = default;
  // Each replaces all that the clipboard holds.
  virtual void setText(const std::string& text) = 0;
  virtual void setImage(const ImageRef& image) = 0;
  // On a later turn; absent when there is no text. Reading is never synchronous: the owner may be
  // another application.
  virtual void getText(std::function<void(std::optional<std::string>)> answer) = 0;
};

}  // namespace orvel
