#include "Views/SettingsPrivacy.h"

#include <glib/gi18n.h>

#include "DesignSystem/Icons.h"
#include "DesignSystem/ShownText.h"

namespace orvel {

namespace {

// "Camera allowed, Microphone blocked".
std::string summaryOf(const std::map<std::string, bool>& permissions) {
  std::string summary;
  for (const auto& [name, isAllowed] : permissions) {
    if (!summary.empty()) summary += ", ";
    std::string capitalised = name;
    if (!capitalised.empty()) capitalised.front() = g_ascii_toupper(capitalised.front());
    summary += shownText(capitalised) + " " + (isAllowed ? _("allowed") : _("blocked"));
  }
  return summary;
}

void addSite(Gtk::Box& group, const std::string& site, const std::string& summary,
             const char* action, std::function<void()> perform) {
  auto* button = Gtk::make_managed<Gtk::Button>(action);
  button->add_css_class("push");
  button->add_css_class("small");
  setAccessibleLabel(*button, std::string(action) + ": " + site);
  button->signal_clicked().connect(std::move(perform));
  addSetting(group, shownText(site), *button, summary);
}

}  // namespace

SettingsPrivacy::SettingsPrivacy(BrowserStore& store)
    : store_(store),
      blocking_(
          _("Block ads and trackers"), [this] { return store_.contentBlocker.isEnabled.get(); },
          [this](bool isOn) { store_.contentBlocker.setEnabled(isOn); }),
      cookies_(
          _("Reject cookie pop-ups automatically"),
          [this] { return store_.contentBlocker.isCookieRejectionEnabled.get(); },
          [this](bool isOn) { store_.contentBlocker.setCookieRejectionEnabled(isOn); }),
      clearHistory_(_("Clear History…")) {
  auto& switches = addGroup();
  addSetting(switches, _("Block ads and trackers"), blocking_);
  addSetting(switches, _("Reject cookie pop-ups automatically"), cookies_);
  addNote(
      _("Also always on: HTTPS-first browsing, tracking-parameter removal and the Global Privacy "
        "Control signal."));
  addHeading(_("Blocking paused"));
  pausedSites_ = &addGroup();
  addHeading(_("Site permissions"));
  permissions_ = &addGroup();
  clearHistory_.add_css_class("push");
  clearHistory_.add_css_class("small");
  clearHistory_.add_css_class("danger");
  clearHistory_.signal_clicked().connect([this] { store_.clearHistory(); });
  auto& history = addGroup();
  history.add_css_class("second");
  addSetting(history, _("Browsing history"), clearHistory_);
  pausedEffect_ = effect([this] { showPausedSites(); });
  permissionsEffect_ = effect([this] { showPermissions(); });
}

void SettingsPrivacy::showPausedSites() {
  const auto& sites = store_.contentBlocker.pausedSites.get();
  removeRows(*pausedSites_);
  if (sites.empty())
    addRemark(*pausedSites_,
              _("No sites. Use the shield in the address bar to pause blocking on a site."));
  for (const auto& site : sites)
    addSite(*pausedSites_, site, "", _("Resume"),
            [this, site] { store_.contentBlocker.resume(site); });
}

void SettingsPrivacy::showPermissions() {
  const auto& sites = store_.settings.sitePermissions.get();
  removeRows(*permissions_);
  if (sites.empty()) addRemark(*permissions_, _("No sites. Sites you allow or block appear here."));
  for (const auto& [site, permissions] : sites)
    addSite(*permissions_, site, summaryOf(permissions), _("Forget"), [this, name = site] {
      store_.settings.sitePermissions.update([&](auto& all) { all.erase(name); });
    });
}

}  // namespace orvel
