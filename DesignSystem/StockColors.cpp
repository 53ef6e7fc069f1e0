#include "DesignSystem/StockColors.h"

#include <fmt/format.h>
#include <glibmm/main.h>

#include "DesignSystem/Palette.h"

namespace orvel {

namespace {

constexpr unsigned kCalmMilliseconds = 1500;

std::string namesOf(const Palette& palette) {
  const std::pair<const char*, Color> names[] = {
      {"accent_bg_color", palette.accent},
      {"accent_fg_color", palette.onAccent},
      {"accent_color", palette.accent},
      {"window_bg_color", palette.top},
      {"window_fg_color", palette.ink},
      {"headerbar_bg_color", palette.top},
      {"headerbar_fg_color", palette.ink},
      {"view_bg_color", palette.paper},
      {"view_fg_color", palette.ink},
      {"card_bg_color", palette.raised},
      {"card_fg_color", palette.ink},
      {"dialog_bg_color", palette.raised},
      {"dialog_fg_color", palette.ink},
      {"popover_bg_color", palette.raised},
      {"popover_fg_color", palette.ink},
      {"destructive_bg_color", palette.danger},
      {"destructive_fg_color", palette.onDanger},
      {"destructive_color", palette.danger},
      {"orvel_slip", palette.slip},
      {"orvel_slip_ink", palette.slipInk},
  };
  std::string text;
  for (const auto& [name, color] : names)
    text += fmt::format("@define-color {} #{:02X}{:02X}{:02X};\n", name, color.red, color.green,
                        color.blue);
  return text;
}

}  // namespace

StockColors::StockColors(std::function<bool()> isBusy)
    : isBusy_(std::move(isBusy)), provider_(GRef<GtkCssProvider>::adopt(gtk_css_provider_new())) {
  gtk_style_context_add_provider_for_display(gdk_display_get_default(),
                                             GTK_STYLE_PROVIDER(provider_.get()),
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

StockColors::~StockColors() {
  waiting_.disconnect();
  gtk_style_context_remove_provider_for_display(gdk_display_get_default(),
                                                GTK_STYLE_PROVIDER(provider_.get()));
}

void StockColors::set(const Theme& theme, ColorScheme scheme) {
  wanted_ = namesOf(paletteOf(theme, scheme));
  waiting_.disconnect();
  if (loaded_.empty()) return load();
  waiting_ = Glib::signal_timeout().connect(
      [this] {
        if (isBusy_()) return true;
        load();
        return false;
      },
      kCalmMilliseconds);
}

void StockColors::load() {
  if (wanted_ == loaded_) return;
  loaded_ = wanted_;
  gtk_css_provider_load_from_data(provider_.get(), loaded_.c_str(), -1);
}

}  // namespace orvel
