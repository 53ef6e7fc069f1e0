#include "Views/AddressPill.h"

#include <glib/gi18n.h>
#include <gtkmm/eventcontrollerfocus.h>
#include <gtkmm/eventcontrollerkey.h>

#include "BrowserCore/URLInput.h"
#include "DesignSystem/ShownText.h"
#include "DesignSystem/StyleSheet.h"

namespace orvel {

AddressPill::AddressPill(BrowserStore& store)
    : store_(store),
      shield_("checkmark.shield", _("Pause blocking on this site")),
      link_("link", _("Copy Link (Ctrl+Shift+C)")) {
  add_css_class("pill");
  glyph_.add_css_class("glyph");
  glyph_.add_css_class("quiet");
  glyph_.add(icon_);
  glyph_.add(needle_);
  glyph_.set_transition_type(Gtk::StackTransitionType::CROSSFADE);
  glyph_.set_transition_duration(160);
  host_.set_ellipsize(Pango::EllipsizeMode::END);
  host_.set_xalign(0);
  address_.set_child(host_);
  address_.add_css_class("host");
  entry_.set_placeholder_text(_("Search or enter address"));
  entry_.set_input_purpose(Gtk::InputPurpose::URL);
  entry_.set_width_chars(1);
  setAccessibleLabel(entry_, _("Search or enter address"));
  field_.add(address_);
  field_.add(entry_);
  field_.set_hexpand(true);
  field_.set_valign(Gtk::Align::CENTER);
  append(glyph_);
  append(field_);
  append(shield_);
  append(link_);

  address_.signal_clicked().connect([this] {
    const bool hasTab = store_.activeSpace()->selectedTab() != nullptr;
    store_.showCommandBar(hasTab ? CommandBarMode::CurrentTab : CommandBarMode::NewTab);
  });
  shield_.signal_clicked().connect([this] { store_.toggleBlockingOnCurrentSite(); });
  link_.signal_clicked().connect([this] { store_.copyLink(); });
  entry_.signal_activate().connect([this] { submit(); });
  auto keys = Gtk::EventControllerKey::create();
  keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
  keys->signal_key_pressed().connect(
      [this](guint key, guint, Gdk::ModifierType) {
        if (key != GDK_KEY_Escape) return false;
        store_.dismissCommandBar();
        return true;
      },
      false);
  entry_.add_controller(keys);
  auto focus = Gtk::EventControllerFocus::create();
  focus->signal_leave().connect([this] {
    // A menu of the entry or another window takes the keyboard for a while only.
    auto* window = dynamic_cast<Gtk::Window*>(get_root());
    if (isEditing_ && window && window->is_active() && window->get_focus())
      store_.dismissCommandBar();
  });
  entry_.add_controller(focus);

  addressEffect_ = effect([this] { showAddress(); });
  shieldEffect_ = effect([this] { showShield(); });
  entryEffect_ = effect([this] { showEntry(); });
}

void AddressPill::showAddress() {
  const auto tab = store_.activeSpace()->selectedTab();
  const auto url = tab ? tab->url.get() : std::nullopt;
  const bool wasCopied = store_.didCopyLink;
  const std::string prompt = _("Search or enter address");
  const std::string text = wasCopied ? _("Copied") : url ? shownText(displayHost(*url)) : prompt;
  host_.set_text(text);
  setClass(address_.Gtk::Widget::gobj(), "prompt", !url && !wasCopied);
  setClass(host_.Gtk::Widget::gobj(), "quiet", !url && !wasCopied);
  const std::string whole = url ? shownText(url->text()) : prompt;
  address_.set_tooltip_text(whole);
  setAccessibleLabel(address_, whole);

  setIcon(icon_, !url                      ? "magnifyingglass"
                 : url->hasScheme("https") ? "lock.fill"
                 : url->hasScheme("http")  ? "lock.open"
                                           : "globe");
  icon_.set_pixel_size(!url ? 16 : url->hasScheme("https") ? 13 : 15);
  const bool isLoading = tab && tab->isLoading;
  needle_.setSwinging(isLoading);
  glyph_.set_visible_child(isLoading ? static_cast<Gtk::Widget&>(needle_) : icon_);
  link_.set_visible(url && !store_.commandBar.get());
  link_.setSymbol(wasCopied ? "checkmark" : "link");
}

void AddressPill::showShield() {
  const auto tab = store_.activeSpace()->selectedTab();
  const auto url = tab ? tab->url.get() : std::nullopt;
  const bool hasSite = url && ContentBlocker::site(*url);
  const bool isPaused = store_.contentBlocker.isPaused(url);
  shield_.set_visible(hasSite && !store_.commandBar.get());
  shield_.setSymbol(isPaused ? "shield.slash" : "checkmark.shield");
  shield_.setHelp(isPaused ? _("Blocking paused on this site. Click to resume.")
                           : _("Pause blocking on this site"));
  setClass(shield_.Gtk::Widget::gobj(), "paused", isPaused);
}

void AddressPill::showEntry() {
  const auto mode = store_.commandBar.get();
  const bool isAsked = mode && *mode != CommandBarMode::Quick;
  if (!std::exchange(isEditing_, isAsked) && !isAsked) return;
  setClass(Gtk::Widget::gobj(), "editing", isAsked);
  field_.set_visible_child(isAsked ? static_cast<Gtk::Widget&>(entry_) : address_);
  if (!isAsked) return;
  untracked([&] {
    const auto tab = store_.activeSpace()->selectedTab();
    const bool isCurrent = mode == CommandBarMode::CurrentTab && tab && tab->url.peek();
    entry_.set_text(isCurrent ? tab->url.peek()->text() : std::string());
  });
  entry_.grab_focus();
  // The cursor at the beginning shows the address from its beginning.
  entry_.select_region(-1, 0);
}

void AddressPill::submit() {
  const auto mode = store_.commandBar.peek();
  const auto suggestion = suggestionFor(entry_.get_text());
  if (!mode) return;
  if (!suggestion) return store_.dismissCommandBar();
  // The entry goes with the mode that is ending: what it tells of losing the focus is no dismissal.
  isEditing_ = false;
  store_.perform(*suggestion, *mode);
  isEditing_ = true;
}

}  // namespace orvel
