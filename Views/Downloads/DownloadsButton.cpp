#include "Views/Downloads/DownloadsButton.h"

#include "Base/Texts.h"

namespace orvel {

namespace {

constexpr int kRing = 18;
constexpr int kSign = 17;
constexpr int kArrow = 10;

}  // namespace

DownloadsButton::DownloadsButton(Downloads& downloads)
    : downloads_(downloads),
      resting_(makeIcon("arrow.down.circle", kSign, IconPlace::InButton)),
      ring_(kRing),
      list_(downloads),
      panel_(*this, list_, Panel::Side::Above, _("Download")) {
  add_css_class("icon");
  set_tooltip_text(_("Download"));
  setAccessibleLabel(*this, _("Download"));
  busy_.set_child(ring_);
  busy_.add_overlay(*makeIcon("arrow.down", kArrow, IconPlace::InButton));
  sign_.add(*resting_);
  sign_.add(busy_);
  set_child(sign_);
  signal_clicked().connect([this] { panel_.toggle(); });
  follow_ = effect([this] { showProgress(); });
}

void DownloadsButton::setPalette(const Palette& palette) {
  ring_.setPalette(palette);
  list_.setPalette(palette);
}

void DownloadsButton::showProgress() {
  const auto& manager = downloads_.manager();
  const auto active = manager.activeItems();
  const bool isKnown = std::ranges::any_of(active, &DownloadManager::Item::isLengthKnown);
  ring_.setFraction(isKnown || active.empty() ? manager.activeProgress().value_or(0)
                                              : std::optional<double>());
  sign_.set_visible_child(active.empty() ? static_cast<Gtk::Widget&>(*resting_) : busy_);
}

}  // namespace orvel
