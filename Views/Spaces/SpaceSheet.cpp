#include "Views/Spaces/SpaceSheet.h"

#include <gtkmm/binlayout.h>
#include <gtkmm/eventcontrollerkey.h>

#include "Base/Texts.h"
#include "DesignSystem/Icons.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Views/Window/Keyboard.h"

namespace orvel {

namespace {

constexpr int kWidth = 440;
constexpr int kMargin = 16;
constexpr int kTopBar = 44;
constexpr int kWindowButtons = 72;

}  // namespace

SpaceSheet::SpaceSheet(BrowserStore& store, SpaceEditing& editing,
                       std::function<bool(double, double)> isKeptFree)
    : Glib::ObjectBase("OrvelSpaceSheet"),
      store_(store),
      editing_(editing),
      isKeptFree_(std::move(isKeptFree)),
      theme_(Gtk::Widget::gobj()),
      presence_(Gtk::Widget::gobj(), 0, [this](double presence) {
        set_opacity(std::clamp(presence, 0.0, 1.0));
        set_child_visible(presence > 0.001);
      }) {
  add_css_class("dimmed");
  setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_DIALOG);
  gtk_accessible_update_property(GTK_ACCESSIBLE(Gtk::Widget::gobj()), GTK_ACCESSIBLE_PROPERTY_MODAL,
                                 TRUE, -1);
  setAccessibleHidden(*this, true);
  set_opacity(0);
  set_child_visible(false);
  card_.add_css_class("sheet-card");
  card_.set_focusable(false);
  card_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  card_.set_propagate_natural_height(true);
  card_.set_overflow(Gtk::Overflow::HIDDEN);
  card_.set_size_request(kWidth, -1);
  card_.set_hexpand(true);
  card_.set_vexpand(true);
  card_.set_halign(Gtk::Align::CENTER);
  card_.set_valign(Gtk::Align::CENTER);
  card_.set_margin(kMargin);
  // The sheet lies over what moves the window otherwise.
  handle_.set_valign(Gtk::Align::START);
  handle_.set_margin_start(kWindowButtons);
  handle_.set_size_request(-1, kTopBar);
  set_layout_manager(Gtk::BinLayout::create());
  append(handle_);
  append(card_);

  auto keys = Gtk::EventControllerKey::create();
  keys->signal_key_pressed().connect(
      [this](guint key, guint, Gdk::ModifierType) {
        if (key != GDK_KEY_Escape || !editor_ || !draftID_) return false;
        editor_->cancel();
        return true;
      },
      false);
  add_controller(keys);

  follow_ = effect([this] {
    const auto& draft = editing_.spaceDraft.get();
    untracked([&] { follow(draft); });
  });
}

void SpaceSheet::follow(const std::optional<SpaceDraft>& draft) {
  const auto id = draft ? std::optional(draft->id) : std::nullopt;
  if (id == draftID_) return;
  draftID_ = id;
  set_can_target(draft.has_value());
  setAccessibleHidden(*this, !draft);
  // An editor that fades away takes the keyboard no more.
  if (!draft) releaseKeyboard(Gtk::Widget::gobj());
  set_can_focus(draft.has_value());
  presence_.animateTo(draft ? 1 : 0, draft ? Spring::entry : Spring::quick);
  if (!draft) return;
  card_.unset_child();
  editor_ = std::make_unique<SpaceEditor>(store_, *draft);
  card_.set_child(*editor_);
  setAccessibleLabel(*this, draft->spaceID ? _("Edit Space") : _("New Space"));
  editor_->name().grab_focus();
}

void SpaceSheet::setTheme(const Theme& theme, ColorScheme scheme) {
  theme_.set(theme, scheme);
  if (editor_) editor_->redraw();
}

}  // namespace orvel
