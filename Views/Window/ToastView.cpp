#include "Views/Window/ToastView.h"

#include "DesignSystem/ShownText.h"
#include "Models/Windows/Toasts.h"

namespace orvel {

namespace {

constexpr int kSpacing = 10;

}  // namespace

ToastView::ToastView(Toasts& toasts)
    : theme_(Gtk::Widget::gobj()),
      symbol_(makeIcon("checkmark", 17)),
      presence_(Gtk::Widget::gobj(), 0, [this](double presence) {
        set_opacity(std::clamp(presence, 0.0, 1.0));
        set_child_visible(presence > 0.001);
        if (auto* parent = get_parent()) parent->queue_allocate();
      }) {
  setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_ALERT);
  add_css_class("toast");
  set_opacity(0);
  message_.set_ellipsize(Pango::EllipsizeMode::END);
  message_.set_max_width_chars(44);
  message_.set_xalign(0);
  divider_.add_css_class("divider");
  divider_.set_valign(Gtk::Align::CENTER);
  action_.set_label(Toast().actionTitle);
  action_.set_valign(Gtk::Align::CENTER);
  // In a toast of the least width its words stand in the middle.
  auto* words = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kSpacing);
  words->set_hexpand(true);
  words->set_halign(Gtk::Align::CENTER);
  words->append(*symbol_);
  words->append(message_);
  words->append(divider_);
  words->append(action_);
  append(*words);
  action_.signal_clicked().connect([&toasts] { toasts.undoToast(); });

  follow_ = effect([this, &toasts](const Wake& wake) {
    const auto& toast = toasts.toast.get();
    // A message that leaves keeps its words while it fades.
    if (toast) show(*toast);
    set_can_target(toast.has_value());
    setAccessibleHidden(*this, !toast);
    action_.set_focusable(toast.has_value());
    if (wake.transaction)
      presence_.animateTo(toast ? 1 : 0, wake.transaction->spring);
    else
      presence_.set(toast ? 1 : 0);
  });
}

void ToastView::show(const Toast& toast) {
  symbol_->set_visible(toast.symbol.has_value());
  if (toast.symbol) setIcon(*symbol_, *toast.symbol);
  const auto message = shownText(toast.message);
  message_.set_text(message);
  setAccessibleLabel(*this, message);
  const bool hasAction = static_cast<bool>(toast.undo);
  divider_.set_visible(hasAction);
  action_.set_visible(hasAction);
  action_.set_label(toast.actionTitle);
}

}  // namespace orvel
