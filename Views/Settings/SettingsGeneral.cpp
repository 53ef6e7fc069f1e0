#include "Views/Settings/SettingsGeneral.h"

#include "Base/Texts.h"

#include "Desktop/Workspace.h"
#include "Models/Commands/QuickBar.h"

namespace orvel {

namespace {

constexpr int kKeywordCharacters = 5;
constexpr int kNameCharacters = 12;

void edit(Settings& settings, const UUID& id, const std::function<void(SearchShortcut&)>& change) {
  settings.searchShortcuts.update([&](auto& list) {
    const auto found = std::ranges::find(list, id, &SearchShortcut::id);
    if (found != list.end()) change(*found);
  });
}

void showText(Gtk::Entry& entry, const std::string& text) {
  if (entry.get_text().raw() != text) entry.set_text(text);
}

}  // namespace

SettingsGeneral::ShortcutRow::ShortcutRow(Settings& settings, const UUID& id)
    : Gtk::Box(Gtk::Orientation::HORIZONTAL, 8), id(id), remove("xmark", _("Remove Shortcut"), 14) {
  add_css_class("setting");
  const auto add = [&](Gtk::Entry& entry, const char* label, const char* prompt, int characters,
                       std::string SearchShortcut::*field) {
    entry.add_css_class("inline");
    entry.set_placeholder_text(prompt);
    entry.set_width_chars(characters);
    entry.set_max_width_chars(characters);
    entry.set_valign(Gtk::Align::CENTER);
    setAccessibleLabel(entry, label);
    entry.signal_changed().connect([&settings, &entry, field, id = this->id] {
      const std::string text = entry.get_text();
      const auto& list = settings.searchShortcuts.peek();
      const auto found = std::ranges::find(list, id, &SearchShortcut::id);
      if (found == list.end() || (*found).*field == text) return;
      edit(settings, id, [&](SearchShortcut& shortcut) { shortcut.*field = text; });
    });
    append(entry);
  };
  add(keyword, _("Keyword"), _("Keyword"), kKeywordCharacters, &SearchShortcut::keyword);
  keyword.add_css_class("mono");
  add(name, _("Name"), "YouTube", kNameCharacters, &SearchShortcut::name);
  add(urlTemplate, _("Search URL"), "https://site.com/search?q=%s", 1,
      &SearchShortcut::urlTemplate);
  urlTemplate.set_hexpand(true);
  urlTemplate.add_css_class("address");
  remove.signal_clicked().connect([&settings, id] {
    settings.searchShortcuts.update(
        [&](auto& list) { std::erase_if(list, [&](const auto& one) { return one.id == id; }); });
  });
  append(remove);
}

void SettingsGeneral::ShortcutRow::show(const SearchShortcut& shortcut) {
  showText(keyword, shortcut.keyword);
  showText(name, shortcut.name);
  showText(urlTemplate, shortcut.urlTemplate);
}

SettingsGeneral::SettingsGeneral(Settings& settings, QuickBar& quickBar, Workspace& workspace)
    : bar_(quickBar),
      workspace_(workspace),
      settings_(settings),
      makeDefault_(_("Make Default")),
      isDefault_(_("Orvel is your default browser")),
      engine_(_("Search engine")),
      suggestions_(
          _("Suggestions"), [this] { return settings_.searchSuggestions.get(); },
          [this](bool isOn) { settings_.searchSuggestions = isOn; }),
      archive_(_("Archive Today tabs after")),
      pictureInPicture_(_("Picture in picture when leaving a playing video")),
      quickBar_(_("Quick search from any app")),
      shortcutList_(Gtk::Orientation::VERTICAL),
      shortcuts_(shortcutList_),
      addShortcut_(_("Add Shortcut")),
      restore_(_("Restore Defaults")) {
  addBrowser();
  addArchive();
  addPictureInPicture();
  addQuickBar();
  addShortcuts();
  engineEffect_ = effect([this] { showEngine(); });
  archiveEffect_ =
      effect([this] { archive_.setChosen(static_cast<size_t>(settings_.archiveAfter.get())); });
  quickBarEffect_ = effect([this] { showQuickBar(); });
  shortcutsEffect_ = effect([this] { showShortcuts(); });
  refresh();
}

void SettingsGeneral::addBrowser() {
  auto& group = addGroup();
  auto* browser = Gtk::make_managed<Gtk::Box>();
  browser->append(makeDefault_);
  browser->append(isDefault_);
  isDefault_.add_css_class("quiet");
  isDefault_.add_css_class("state");
  makeDefault_.add_css_class("push");
  makeDefault_.add_css_class("small");
  makeDefault_.signal_clicked().connect([this] {
    makeDefault_.set_sensitive(false);
    workspace_.makeDefaultBrowser([alive = std::weak_ptr(alive_), this](bool isDefault) {
      if (alive.expired()) return;
      refresh();
      defaultNote_->set_visible(!isDefault);
    });
  });
  defaultNote_ = &addSubtitle(addSetting(group, _("Default browser"), *browser),
                              _("The desktop didn’t take Orvel: it isn’t installed."));

  std::vector<std::string> names;
  names.reserve(SearchEngine::allCases.size());
  for (const SearchEngine engine : SearchEngine::allCases) names.emplace_back(engine.name());
  engine_.setChoices(std::move(names), 0);
  engine_.onChoice([this](size_t index) {
    settings_.searchEngine = SearchEngine(SearchEngine::allCases[index]);
  });
  addSetting(group, _("Search engine"), engine_);
  suggestionsTitle_ = &addSetting(group, "", suggestions_);
  suggestionsNote_ = &addNote();
}

void SettingsGeneral::addArchive() {
  std::vector<std::string> labels;
  labels.reserve(std::size(kArchiveIntervals));
  for (const auto interval : kArchiveIntervals) labels.emplace_back(label(interval));
  archive_.setChoices(std::move(labels), 0);
  archive_.onChoice([this](size_t index) { settings_.archiveAfter = kArchiveIntervals[index]; });
  addSetting(addGroup(), _("Archive Today tabs after"), archive_);
  addNote(
      _("Unpinned tabs you haven't looked at in this long are archived. Find them again from the "
        "command bar (Ctrl+T)."));
}

void SettingsGeneral::addPictureInPicture() {
  addSetting(addGroup(), _("Picture in picture when leaving a playing video"), pictureInPicture_);
  addNote(_("Picture in picture isn’t available yet."));
}

void SettingsGeneral::addQuickBar() {
  std::vector<std::string> labels = {_("None")};
  for (const auto key : kQuickBarKeys) labels.emplace_back(label(key));
  quickBar_.setChoices(std::move(labels), 0);
  quickBar_.onChoice([this](size_t index) {
    settings_.quickBarKey = index == 0 ? std::nullopt : std::optional(kQuickBarKeys[index - 1]);
    bar_.applyQuickBarKey();
  });
  addSetting(addGroup(), _("Quick search from any app"), quickBar_);
  quickBarNote_ = &addNote();
}

void SettingsGeneral::addShortcuts() {
  addHeading(_("Search shortcuts"));
  shortcutList_.add_css_class("card");
  add(shortcutList_);
  addNote(
      _("Type a keyword and a space in the command bar to search a site: “yt lofi”. %s marks where "
        "your search goes."));
  auto* buttons = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 8);
  buttons->add_css_class("settings-buttons");
  for (auto* button : {&addShortcut_, &restore_}) {
    button->add_css_class("push");
    button->add_css_class("small");
    buttons->append(*button);
  }
  addShortcut_.signal_clicked().connect([this] {
    shortcuts_.focusNew();
    settings_.searchShortcuts.update([](auto& list) { list.emplace_back(); });
  });
  restore_.signal_clicked().connect(
      [this] { settings_.searchShortcuts = SearchShortcut::builtIn(); });
  add(*buttons);
}

void SettingsGeneral::refresh() {
  const bool isDefault = workspace_.isDefaultBrowser();
  makeDefault_.set_sensitive(true);
  makeDefault_.set_visible(!isDefault);
  isDefault_.set_visible(isDefault);
  defaultNote_->set_visible(false);
}

void SettingsGeneral::showEngine() {
  const SearchEngine engine = settings_.searchEngine.get();
  const std::string name(engine.name());
  const auto& all = SearchEngine::allCases;
  engine_.setChosen(
      static_cast<size_t>(std::ranges::find(all, SearchEngine::Case(engine)) - all.begin()));
  const std::string title = filled(_("Show {engine} suggestions"), {{"engine", name}});
  suggestionsTitle_->set_text(title);
  setAccessibleLabel(suggestions_, title);
  suggestions_.set_sensitive(engine.offersSuggestions());
  suggestionsNote_->set_text(
      engine.offersSuggestions()
          ? filled(_("Suggestions send what you type in the command bar to "
                     "{engine} as you type. Addresses and shortcuts aren't "
                     "sent."),
                   {{"engine", name}})
          : filled(_("{engine} doesn't offer suggestions."), {{"engine", name}}));
}

void SettingsGeneral::showQuickBar() {
  const auto key = settings_.quickBarKey.get();
  quickBar_.setChosen(key ? static_cast<size_t>(*key) + 1 : 0);
  std::string note;
  if (key && bar_.isQuickBarKeyTaken)
    note = filled(_("{keys} is already used by the desktop or another app. Pick a different "
                    "shortcut."),
                  {{"keys", label(*key)}}) +
           " ";
  note +=
      _("Like the desktop's own search, for the web: the command bar comes up over whatever "
        "you're doing. Answers show right there; pages open in a little window.");
  quickBarNote_->set_text(note);
}

void SettingsGeneral::showShortcuts() {
  const auto& shortcuts = settings_.searchShortcuts.get();
  untracked([&] {
    shortcuts_.follow(
        shortcuts, [this](const UUID& id) { return new ShortcutRow(settings_, id); },
        [](ShortcutRow& row, const SearchShortcut& shortcut) { row.show(shortcut); });
    shortcutList_.set_visible(!shortcuts.empty());
    restore_.set_sensitive(shortcuts != SearchShortcut::builtIn());
  });
}

}  // namespace orvel
