#include "Views/SiteSettings/SiteSettingsView.h"

#include <gtkmm/separator.h>

#include <cmath>

#include "Base/Texts.h"
#include "BrowserCore/Addresses/URLInput.h"
#include "DesignSystem/ShownText.h"
#include "Models/Settings/BlockingSwitches.h"
#include "Models/Settings/Settings.h"
#include "Models/Settings/SiteSettings.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/ComingFeatures.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace orvel {

namespace {

constexpr int kWidth = 308;
constexpr int kGap = 11;
constexpr int kZoomGap = 2;

struct DeviceRow {
  PageDevice device;
  const char* symbol;
  const char* title;
};
constexpr DeviceRow kDevices[] = {{PageDevice::Camera, "camera", N_("Camera")},
                                  {PageDevice::Microphone, "microphone", N_("Microphone")},
                                  {PageDevice::Location, "location", N_("Location")}};

// The answers of a device's row, in its order.
constexpr std::optional<bool> kAnswers[] = {std::nullopt, true, false};

std::string useOf(const std::set<PageDevice>& devices) {
  using enum PageDevice;
  if (devices.contains(Camera) && devices.contains(Microphone))
    return _("Camera and microphone in use");
  if (devices.contains(Camera)) return _("Camera in use");
  return devices.contains(Microphone) ? _("Microphone in use") : _("Location in use");
}

}  // namespace

std::string filledSymbol(const std::set<PageDevice>& devices) {
  return devices.empty() ? std::string() : std::string(keyOf(*devices.begin())) + ".fill";
}

SiteSettingsView::SiteSettingsView(BrowserStore& store, std::function<void()> close)
    : Gtk::Box(Gtk::Orientation::VERTICAL), store_(store), close_(std::move(close)) {
  add_css_class("site-settings");
  set_size_request(kWidth, -1);
  addHead();
  addUse();
  addBlocking();
  addDevices();
  addZoom();
  append(*Gtk::make_managed<Gtk::Separator>());
  addActions();
}

std::string SiteSettingsView::host() const {
  const auto& address = tab_->url.peek();
  return std::string(address ? address->host().value_or("") : "");
}

void SiteSettingsView::addHead() {
  auto* head = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kGap);
  head->add_css_class("head");
  auto* words = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
  words->set_hexpand(true);
  words->set_valign(Gtk::Align::CENTER);
  name_.add_css_class("host");
  name_.set_ellipsize(Pango::EllipsizeMode::START);
  security_.set_text(_("Connection isn’t secure"));
  security_.add_css_class("small");
  security_.add_css_class("quiet");
  for (Gtk::Label* label : {&name_, &security_}) {
    label->set_xalign(0);
    words->append(*label);
  }
  setIconSize(lock_, 14);
  lock_.add_css_class("quiet");
  head->append(icon_);
  head->append(*words);
  head->append(lock_);
  append(*head);
}

void SiteSettingsView::addUse() {
  use_.set_spacing(kGap);
  use_.add_css_class("in-use");
  setIconSize(useSymbol_, 16);
  useSymbol_.add_css_class("accent");
  useText_.set_xalign(0);
  useText_.set_hexpand(true);
  stop_.set_label(_("Stop"));
  stop_.add_css_class("push");
  stop_.add_css_class("small");
  stop_.set_valign(Gtk::Align::CENTER);
  stop_.signal_clicked().connect([this] {
    if (tab_) tab_->permissions.stop();
  });
  use_.append(useSymbol_);
  use_.append(useText_);
  use_.append(stop_);
  append(use_);
}

Gtk::Box& SiteSettingsView::addRow(const char* symbol, const std::string& title,
                                   Gtk::Widget& control) {
  auto* row = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kGap);
  row->add_css_class("site-row");
  auto* label = Gtk::make_managed<Gtk::Label>(title);
  label->set_xalign(0);
  label->set_hexpand(true);
  auto* icon = makeIcon(symbol);
  icon->add_css_class("quiet");
  control.set_valign(Gtk::Align::CENTER);
  row->append(*icon);
  row->append(*label);
  row->append(control);
  append(*row);
  return *row;
}

void SiteSettingsView::addBlocking() {
  addRow("checkmark.shield", _("Block ads and trackers"), blocking_);
  setAccessibleLabel(blocking_, _("Block ads and trackers"));
  blocking_.property_active().signal_changed().connect([this] {
    if (!tab_) return;
    const bool isOn =
        !untracked([this] { return store_.contentBlocker.isPaused(tab_->url.peek()); });
    if (blocking_.get_active() != isOn) store_.blocking.toggleBlockingOnCurrentSite(tab_);
  });
}

void SiteSettingsView::addDevices() {
  for (const auto& row : kDevices) {
    devices_.push_back({row.device, std::make_unique<ChoiceButton>(
                                        _(row.title), ChoiceButton::Spoken::NameAlone)});
    auto& choice = *devices_.back().choice;
    choice.setChoices({_("Ask"), _("Allow"), _("Block")}, 0);
    choice.onChoice([this, device = row.device](size_t index) {
      if (tab_) store_.siteSettings.setPermission(host(), device, kAnswers[index]);
    });
    addRow(row.symbol, _(row.title), choice);
  }
}

void SiteSettingsView::addZoom() {
  auto* controls = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kZoomGap);
  controls->add_css_class("zoom");
  actualSize_.set_label(_("Actual Size"));
  actualSize_.add_css_class("word");
  actualSize_.set_valign(Gtk::Align::CENTER);
  actualSize_.signal_clicked().connect([this] {
    if (tab_) tab_->setZoom(1);
  });
  controls->append(actualSize_);
  const auto step = [this](const char* symbol, const std::string& name, BrowserTab::ZoomStep by) {
    auto* button = Gtk::make_managed<IconButton>(symbol, name, 14);
    button->add_css_class("step");
    button->signal_clicked().connect([this, by] {
      if (tab_) tab_->zoom(by);
    });
    return button;
  };
  controls->append(*step("minus", _("Zoom Out"), BrowserTab::ZoomStep::Out));
  percent_.add_css_class("percent");
  controls->append(percent_);
  controls->append(*step("plus", _("Zoom In"), BrowserTab::ZoomStep::In));
  addRow("magnifyingglass", _("Zoom"), *controls);
}

Gtk::Button& SiteSettingsView::addAction(const char* symbol, std::function<void(TabRef)> perform) {
  auto* button = Gtk::make_managed<Gtk::Button>();
  auto* content = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kGap);
  auto* icon = makeIcon(symbol);
  icon->add_css_class("quiet");
  auto* label = Gtk::make_managed<Gtk::Label>();
  content->append(*icon);
  content->append(*label);
  button->set_child(*content);
  button->add_css_class("site-action");
  button->signal_clicked().connect([this, perform = std::move(perform)] {
    const TabRef tab = tab_;
    close_();
    if (tab) perform(tab);
  });
  append(*button);
  return *button;
}

static void setActionTitle(Gtk::Button& action, const std::string& title) {
  static_cast<Gtk::Label*>(action.get_child()->get_last_child())->set_text(title);
  setAccessibleLabel(action, title);
}

void SiteSettingsView::addActions() {
  setActionTitle(
      addAction("eye.slash", [this](TabRef tab) { store_.coming.beginHidingItems(tab); }),
      _("Hide Distracting Items…"));
  showHidden_ = &addAction("eye", [this](const TabRef& tab) {
    store_.settings.showHiddenItems(tab->url.peek());
    tab->reload();
  });
  setActionTitle(*showHidden_,
                 counted(ngettext("Show {count} Hidden", "Show {count} Hidden", 0), 0));
  showHidden_->set_visible(false);
  setActionTitle(addAction("trash", [this](TabRef tab) { store_.siteSettings.clearSiteData(tab); }),
                 _("Clear Cookies and Site Data…"));
}

void SiteSettingsView::show(const TabRef& tab) {
  effects_.clear();
  tab_ = tab;
  if (tab_) follow();
}

void SiteSettingsView::follow() {
  effects_.push_back(effect([this] {
    if (const auto address = tab_->url.get()) showHead(*address);
  }));
  effects_.push_back(effect([this] { showUse(); }));
  effects_.push_back(
      effect([this] { blocking_.set_active(!store_.contentBlocker.isPaused(tab_->url.get())); }));
  effects_.push_back(effect([this] {
    tab_->url.get();
    showDevices(host());
  }));
  effects_.push_back(effect([this] {
    const double zoom = tab_->pageZoom.get();
    percent_.set_text(std::to_string(std::lround(zoom * 100)) + "%");
    actualSize_.set_visible(zoom != 1);
  }));
  effects_.push_back(effect([this] {
    const auto count = store_.settings.hiddenItemsOn(tab_->url.get()).size();
    showHidden_->set_visible(count > 0);
    setActionTitle(*showHidden_,
                   counted(ngettext("Show {count} Hidden", "Show {count} Hidden", count), count));
  }));
}

void SiteSettingsView::showHead(const URL& address) {
  const auto site = shownText(displayHost(address));
  name_.set_text(site);
  icon_.set(tab_->favicon(), site);
  const bool isSecure = address.hasScheme("https");
  setIcon(lock_, isSecure ? "lock.fill" : "lock.open");
  security_.set_visible(!isSecure);
}

void SiteSettingsView::showUse() {
  const auto devices = tab_->permissions.inUse.get();
  use_.set_visible(!devices.empty());
  if (devices.empty()) return;
  setIcon(useSymbol_, filledSymbol(devices));
  useText_.set_text(useOf(devices));
}

void SiteSettingsView::showDevices(const std::string& host) {
  for (const auto& [device, choice] : devices_) {
    const auto answer = store_.siteSettings.permission(host, device);
    choice->setChosen(
        static_cast<size_t>(std::ranges::find(kAnswers, answer) - std::begin(kAnswers)));
  }
}

}  // namespace orvel
