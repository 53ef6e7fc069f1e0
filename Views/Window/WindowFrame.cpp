#include "Views/Window/WindowFrame.h"

#include <charconv>
#include <optional>

namespace orvel {

namespace {

constexpr const char* kMaximized = "maximized";
// Larger than any screen: what stands in the file may be anything.
constexpr int kMaxSide = 16384;

std::optional<int> side(const std::string& text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (value <= 0 || value > kMaxSide) return std::nullopt;
  return value;
}

}  // namespace

WindowFrame::WindowFrame(GtkWindow* window, UserDefaults& defaults, std::string key)
    : window_(window), defaults_(defaults), key_(std::move(key)) {
  restore();
  for (const char* signal :
       {"notify::default-width", "notify::default-height", "notify::maximized"})
    g_signal_connect_swapped(window_, signal, G_CALLBACK(+[](WindowFrame* self) { self->save(); }),
                             this);
}

WindowFrame::~WindowFrame() { g_signal_handlers_disconnect_by_data(window_, this); }

void WindowFrame::restore() {
  const auto saved = defaults_.list(key_).value_or(UserDefaults::List());
  const auto width = saved.size() > 1 ? side(saved[0]) : std::nullopt;
  const auto height = saved.size() > 1 ? side(saved[1]) : std::nullopt;
  if (width && height) gtk_window_set_default_size(window_, *width, *height);
  if (saved.size() > 2 && saved[2] == kMaximized) gtk_window_maximize(window_);
}

void WindowFrame::save() {
  int width = 0;
  int height = 0;
  gtk_window_get_default_size(window_, &width, &height);
  defaults_.setList(key_, {std::to_string(width), std::to_string(height),
                           gtk_window_is_maximized(window_) ? kMaximized : ""});
}

}  // namespace orvel
