#include "Views/Sidebar/AddressPill.h"

#include "Base/Texts.h"
#include "BrowserCore/Addresses/URLInput.h"
#include "DesignSystem/ShownText.h"
#include "DesignSystem/StyleSheet.h"
#include "DesignSystem/TextScale.h"
#include "Models/Commands/ActionCatalog.h"
#include "Models/Settings/BlockingSwitches.h"
#include "Models/Sidebar/CopiedLink.h"
#include "Models/Store/BrowserStore.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace orvel {

AddressPill::AddressPill(BrowserStore& store)
    : store_(store),
      shield_("checkmark.shield", _("Pause blocking on this site")),
      link_("link", withKeys(ActionID::CopyLink)),
      inUse_("camera.fill", _("Settings for This Site")),
      settings_(store, [this] { panel_.close(); }),
      panel_(site_, settings_, Panel::Side::Below, _("Settings for This Site")) {
  add_css_class("pill");
  glyph_.add_css_class("glyph");
  glyph_.add_css_class("quiet");
  icon_.set_halign(Gtk::Align::CENTER);
  icon_.set_valign(Gtk::Align::CENTER);
  glyph_.add(icon_);
  glyph_.add(needle_);
  glyph_.set_transition_type(Gtk::StackTransitionType::CROSSFADE);
  glyph_.set_transition_duration(160);
  host_.set_xalign(0);
  host_.set_ellipsize(Pango::EllipsizeMode::END);
  address_.set_child(host_);
  address_.add_css_class("host");
  address_.set_hexpand(true);
  address_.set_valign(Gtk::Align::CENTER);
  site_.set_child(glyph_);
  site_.add_css_class("icon");
  site_.set_valign(Gtk::Align::CENTER);
  append(site_);
  append(address_);
  append(shield_);
  append(link_);
  inUse_.add_css_class("in-use");
  append(inUse_);

  address_.signal_clicked().connect([this] { openBar(); });
  site_.signal_clicked().connect([this] { openSite(); });
  inUse_.signal_clicked().connect([this] { openSite(); });
  panel_.willOpen = [this] { settings_.show(store_.activeSpace()->selectedTab()); };
  panel_.didClose = [this] { settings_.show(nullptr); };
  shield_.signal_clicked().connect([this] { store_.blocking.toggleBlockingOnCurrentSite(); });
  link_.signal_clicked().connect([this] { store_.copiedLink.copyLink(); });

  addressEffect_ = effect([this] { showAddress(); });
  shieldEffect_ = effect([this] { showShield(); });
  useEffect_ = effect([this] { showUse(); });
}

void AddressPill::openBar() {
  const bool hasTab = store_.activeSpace()->selectedTab() != nullptr;
  store_.showCommandBar(hasTab ? CommandBarMode::CurrentTab : CommandBarMode::NewTab);
}

// A page without a host has no settings.
void AddressPill::openSite() {
  const auto tab = store_.activeSpace()->selectedTab();
  const auto url = tab ? tab->url.peek() : std::nullopt;
  if (url && url->host())
    panel_.toggle();
  else
    openBar();
}

void AddressPill::showUse() {
  const auto tab = store_.activeSpace()->selectedTab();
  const auto devices = tab ? tab->permissions.inUse.get() : std::set<PageDevice>();
  inUse_.set_visible(!devices.empty());
  if (!devices.empty()) inUse_.setSymbol(filledSymbol(devices));
  link_.set_visible(devices.empty() && tab && tab->url.get());
}

void AddressPill::showAddress() {
  const auto tab = store_.activeSpace()->selectedTab();
  const auto url = tab ? tab->url.get() : std::nullopt;
  const bool wasCopied = store_.copiedLink.didCopyLink;
  const std::string prompt = _("Search or enter address");
  const std::string text = wasCopied ? _("Copied") : url ? shownText(displayHost(*url)) : prompt;
  host_.set_text(text);
  const std::string site = url && url->host() ? _("Settings for This Site") : prompt;
  site_.set_tooltip_text(site);
  setAccessibleLabel(site_, site);
  const bool isPrompt = !url && !wasCopied;
  setClass(address_.Gtk::Widget::gobj(), "prompt", isPrompt);
  setClass(host_.Gtk::Widget::gobj(), "quiet", isPrompt);
  const std::string whole = url ? shownText(url->text()) : prompt;
  address_.set_tooltip_text(whole);
  setAccessibleLabel(address_, whole);

  setIcon(icon_, !url                      ? "magnifyingglass"
                 : url->hasScheme("https") ? "lock.fill"
                 : url->hasScheme("http")  ? "lock.open"
                                           : "globe");
  setIconSize(icon_, !url ? 16 : url->hasScheme("https") ? 13 : 15);
  const bool isLoading = tab && tab->isLoading;
  needle_.setSwinging(isLoading);
  glyph_.set_visible_child(isLoading ? static_cast<Gtk::Widget&>(needle_) : icon_);
  link_.setSymbol(wasCopied ? "checkmark" : "link");
}

void AddressPill::showShield() {
  const auto tab = store_.activeSpace()->selectedTab();
  const auto url = tab ? tab->url.get() : std::nullopt;
  const bool hasSite = url && ContentBlocker::site(*url);
  const bool isPaused = store_.contentBlocker.isPaused(url);
  shield_.set_visible(hasSite);
  shield_.setSymbol(isPaused ? "shield.slash" : "checkmark.shield");
  shield_.setHelp(isPaused ? _("Blocking paused on this site. Click to resume.")
                           : _("Pause blocking on this site"));
  setClass(shield_.Gtk::Widget::gobj(), "paused", isPaused);
}

}  // namespace orvel
