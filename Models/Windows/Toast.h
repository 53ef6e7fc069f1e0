#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Base/Texts.h"
#include "Base/Time.h"
#include "BrowserCore/UUID.h"

namespace orvel {

// A short message over the page that goes by itself.
struct Toast {
  UUID id = UUID::random();
  std::string message;
  std::optional<std::string> symbol;    // the name of an icon
  std::function<void()> undo;           // empty: no button
  std::string actionTitle = _("Undo");  // the button's label

  // By id and what is seen.
  friend bool operator==(const Toast& a, const Toast& b) {
    return a.id == b.id && a.message == b.message && a.symbol == b.symbol &&
           a.actionTitle == b.actionTitle && !a.undo == !b.undo;
  }
};

struct ToastOptions {
  std::optional<std::string> symbol;
  std::function<void()> undo;
  std::string actionTitle = _("Undo");
  std::optional<Duration> lasts;  // absent: 4 s with an undo, 1.6 s without
};

}  // namespace orvel
