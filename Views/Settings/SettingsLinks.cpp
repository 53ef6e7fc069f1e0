#include "Views/Settings/SettingsLinks.h"

#include "Base/Texts.h"
#include "DesignSystem/ShownText.h"
#include "Models/Settings/Settings.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

namespace {

constexpr int kSiteWidth = 236;

void edit(Settings& settings, const UUID& id, const std::function<void(LinkRoute&)>& change) {
  settings.linkRoutes.update([&](auto& routes) {
    const auto found = std::ranges::find(routes, id, &LinkRoute::id);
    if (found != routes.end()) change(*found);
  });
}

Gtk::Label* makeColumnTitle(const char* text) {
  auto* title = Gtk::make_managed<Gtk::Label>(text);
  title->set_xalign(0);
  title->add_css_class("small");
  title->add_css_class("quiet");
  return title;
}

}  // namespace

SettingsLinks::RuleRow::RuleRow(BrowserStore& store, const UUID& id)
    : Gtk::Box(Gtk::Orientation::HORIZONTAL, 10),
      store(store),
      id(id),
      space(_("Space")),
      remove("xmark", _("Remove Rule"), 14) {
  add_css_class("setting");
  site.add_css_class("field");
  site.set_placeholder_text(_("site.com or site.com/path"));
  site.set_size_request(kSiteWidth, -1);
  site.set_valign(Gtk::Align::CENTER);
  setAccessibleLabel(site, _("Site"));
  site.signal_changed().connect([this] {
    const std::string pattern = site.get_text();
    auto& settings = this->store.settings;
    const auto& routes = settings.linkRoutes.peek();
    const auto found = std::ranges::find(routes, this->id, &LinkRoute::id);
    if (found == routes.end() || found->pattern == pattern) return;
    edit(settings, this->id, [&](LinkRoute& route) { route.pattern = pattern; });
  });
  space.onChoice([this](size_t index) {
    const auto& spaces = this->store.spaces.peek();
    if (index >= spaces.size()) return;
    edit(this->store.settings, this->id,
         [&](LinkRoute& route) { route.spaceID = spaces[index]->id; });
  });
  remove.signal_clicked().connect([this] {
    this->store.settings.linkRoutes.update([&](auto& routes) {
      std::erase_if(routes, [&](const auto& route) { return route.id == this->id; });
    });
  });
  auto* gap = Gtk::make_managed<Gtk::Box>();
  gap->set_hexpand(true);
  append(site);
  append(space);
  append(*gap);
  append(remove);
}

void SettingsLinks::RuleRow::show(const LinkRoute& route) {
  if (site.get_text().raw() != route.pattern) site.set_text(route.pattern);
  std::vector<std::string> titles;
  size_t chosen = store.spaces.get().size();
  for (const auto& one : store.spaces.get()) {
    if (one->id == route.spaceID) chosen = titles.size();
    titles.push_back(shownText(one->name.get()));
  }
  space.setChoices(std::move(titles), chosen);
}

SettingsLinks::SettingsLinks(BrowserStore& store)
    : store_(store),
      externalLinks_(_("Links from other apps open in")),
      ruleList_(Gtk::Orientation::VERTICAL),
      rules_(ruleList_),
      addRule_(_("Add Rule")) {
  std::vector<std::string> labels;
  labels.reserve(std::size(kExternalLinks));
  for (const auto links : kExternalLinks) labels.emplace_back(label(links));
  externalLinks_.setChoices(std::move(labels), 0);
  externalLinks_.onChoice(
      [this](size_t index) { store_.settings.externalLinks = kExternalLinks[index]; });
  addSetting(addGroup(), _("Links from other apps open in"), externalLinks_);

  ruleList_.add_css_class("card");
  ruleList_.add_css_class("second");
  auto* titles = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 10);
  titles->add_css_class("column-titles");
  auto* site = makeColumnTitle(_("Site"));
  site->set_size_request(kSiteWidth, -1);
  titles->append(*site);
  titles->append(*makeColumnTitle(_("Space")));
  ruleList_.append(*titles);
  add(ruleList_);
  addNote(
      _("Links from other apps that match a rule open in that space, with its logins. The first "
        "matching rule wins."));
  addRule_.add_css_class("push");
  addRule_.add_css_class("small");
  addRule_.set_halign(Gtk::Align::START);
  addRule_.signal_clicked().connect([this] {
    rules_.focusNew();
    store_.settings.linkRoutes.update(
        [this](auto& routes) { routes.push_back({.spaceID = store_.activeSpaceID.get()}); });
  });
  auto* buttons = Gtk::make_managed<Gtk::Box>();
  buttons->add_css_class("settings-buttons");
  buttons->append(addRule_);
  add(*buttons);

  externalLinksEffect_ = effect([this] {
    externalLinks_.setChosen(static_cast<size_t>(store_.settings.externalLinks.get()));
  });
  rulesEffect_ = effect([this] { showRules(); });
}

void SettingsLinks::showRules() {
  const auto& routes = store_.settings.linkRoutes.get();
  ruleList_.set_visible(!routes.empty());
  rules_.follow(
      routes, [this](const UUID& id) { return new RuleRow(store_, id); },
      [](RuleRow& row, const LinkRoute& route) { row.show(route); });
}

}  // namespace orvel
