#include "Views/Settings/SettingsPrivacy.h"

#include "Base/Texts.h"
#include "DesignSystem/Icons.h"
#include "DesignSystem/ShownText.h"
#include "Models/Settings/Settings.h"
#include "WebEngine/Blocking/ContentBlocker.h"

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

// What a row of a site shows.
struct Site {
  std::string id;
  std::string summary;
};

}  // namespace

SettingsPrivacy::SiteRow::SiteRow(const std::string& site, const char* action,
                                  const std::function<void()>& perform)
    : Gtk::Box(Gtk::Orientation::VERTICAL), id(site) {
  auto* button = Gtk::make_managed<Gtk::Button>(action);
  button->add_css_class("push");
  button->add_css_class("small");
  setAccessibleLabel(*button, std::string(action) + ": " + site);
  button->signal_clicked().connect(perform);
  summary = &addSubtitle(addSetting(*this, shownText(site), *button));
  summary->set_visible(false);
}

SettingsPrivacy::SettingsPrivacy(ContentBlocker& blocker, Settings& settings,
                                 std::function<void()> clearHistory)
    : blocker_(blocker),
      settings_(settings),
      blocking_(
          _("Block ads and trackers"), [this] { return blocker_.isEnabled.get(); },
          [this](bool isOn) { blocker_.setEnabled(isOn); }),
      cookies_(
          _("Reject cookie pop-ups automatically"),
          [this] { return blocker_.isCookieRejectionEnabled.get(); },
          [this](bool isOn) { blocker_.setCookieRejectionEnabled(isOn); }),
      clearHistory_(_("Clear History…")),
      pausedSites_(pausedGroup_),
      permissions_(permissionsGroup_) {
  auto& switches = addGroup();
  addSetting(switches, _("Block ads and trackers"), blocking_);
  addSetting(switches, _("Reject cookie pop-ups automatically"), cookies_);
  addNote(
      _("Also always on: HTTPS-first browsing, tracking-parameter removal and the Global Privacy "
        "Control signal."));
  addHeading(_("Blocking paused"));
  pausedGroup_.add_css_class("card");
  add(pausedGroup_);
  noPausedSites_ = &addRemark(
      pausedGroup_, _("No sites. Use the shield in the address bar to pause blocking on a site."));
  addHeading(_("Site permissions"));
  permissionsGroup_.add_css_class("card");
  add(permissionsGroup_);
  noPermissions_ =
      &addRemark(permissionsGroup_, _("No sites. Sites you allow or block appear here."));
  clearHistory_.add_css_class("push");
  clearHistory_.add_css_class("small");
  clearHistory_.add_css_class("danger");
  clearHistory_.signal_clicked().connect(std::move(clearHistory));
  auto& history = addGroup();
  history.add_css_class("second");
  addSetting(history, _("Browsing history"), clearHistory_);
  pausedEffect_ = effect([this] { showPausedSites(); });
  permissionsEffect_ = effect([this] { showPermissions(); });
}

void SettingsPrivacy::showPausedSites() {
  std::vector<Site> sites;
  for (const auto& site : blocker_.pausedSites.get()) sites.push_back({site, ""});
  noPausedSites_->set_visible(sites.empty());
  untracked([&] {
    pausedSites_.follow(
        sites,
        [this](const std::string& site) {
          return new SiteRow(site, _("Resume"), [this, site] { blocker_.resume(site); });
        },
        [](SiteRow&, const Site&) {});
  });
}

void SettingsPrivacy::showPermissions() {
  std::vector<Site> sites;
  for (const auto& [site, permissions] : settings_.sitePermissions.get())
    sites.push_back({site, summaryOf(permissions)});
  noPermissions_->set_visible(sites.empty());
  untracked([&] {
    permissions_.follow(
        sites,
        [this](const std::string& site) {
          return new SiteRow(site, _("Forget"), [this, name = site] {
            settings_.sitePermissions.update([&](auto& all) { all.erase(name); });
          });
        },
        [](SiteRow& row, const Site& site) {
          row.summary->set_text(site.summary);
          row.summary->set_visible(true);
        });
  });
}

}  // namespace orvel
