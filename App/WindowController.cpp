#include "App/WindowController.h"

#include <charconv>
#include <optional>
#include <string>

namespace orvel {

namespace {

constexpr const char* kSizeKey = "OrvelBrowserWindow";
constexpr const char* kMaximized = "maximized";
// Larger than any screen: what stands in the file may be anything.
constexpr int kLargestSide = 16384;

std::optional<int> side(const std::string& text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (value <= 0 || value > kLargestSide) return std::nullopt;
  return value;
}

}  // namespace

WindowController::WindowController(GtkApplication* application, BrowserStore& store,
                                   GtkDesktop& desktop, UserDefaults& defaults)
    : desktop_(desktop), defaults_(defaults), window_(application, store) {
  restoreSize();
  for (const char* signal :
       {"notify::default-width", "notify::default-height", "notify::maximized"})
    g_signal_connect(window_.native(), signal,
                     G_CALLBACK(+[](GtkWindow*, GParamSpec*, gpointer self) {
                       static_cast<WindowController*>(self)->saveSize();
                     }),
                     this);
  desktop_.addWindow(&window_.desktopWindow());
}

WindowController::~WindowController() {
  desktop_.removeWindow(&window_.desktopWindow());
  g_signal_handlers_disconnect_by_data(window_.native(), this);
}

void WindowController::restoreSize() {
  const auto saved = defaults_.list(kSizeKey).value_or(UserDefaults::List());
  const auto width = saved.size() > 1 ? side(saved[0]) : std::nullopt;
  const auto height = saved.size() > 1 ? side(saved[1]) : std::nullopt;
  if (width && height) gtk_window_set_default_size(window_.native(), *width, *height);
  if (saved.size() > 2 && saved[2] == kMaximized) gtk_window_maximize(window_.native());
}

void WindowController::saveSize() {
  int width = 0;
  int height = 0;
  gtk_window_get_default_size(window_.native(), &width, &height);
  defaults_.setList(kSizeKey, {std::to_string(width), std::to_string(height),
                               gtk_window_is_maximized(window_.native()) ? kMaximized : ""});
}

}  // namespace orvel
