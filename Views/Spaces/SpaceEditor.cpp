#include "Views/Spaces/SpaceEditor.h"

#include "Base/Texts.h"
#include "BrowserCore/Text/Text.h"
#include "DesignSystem/Icons.h"
#include "DesignSystem/ShownText.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Windows/WindowChrome.h"
#include "Views/Settings/ChoiceRow.h"

namespace orvel {

namespace {

constexpr int kIcon = 16;

struct AppearanceChoice {
  Space::Appearance appearance;
  const char* title;
};
constexpr AppearanceChoice kAppearances[] = {
    {Space::Appearance::Auto, N_("Automatic")},
    {Space::Appearance::Light, N_("Light")},
    {Space::Appearance::Dark, N_("Dark")},
};

Gtk::Label* makeLabel(const std::string& text, const char* cssClass) {
  auto* label = Gtk::make_managed<Gtk::Label>(text);
  label->set_xalign(0);
  label->add_css_class(cssClass);
  return label;
}

ChoiceRow& makeRow(const char* cssClass, const std::string& name) {
  auto* row = Gtk::make_managed<ChoiceRow>(ChoiceRow::Kind::Radio, name);
  row->add_css_class(cssClass);
  row->set_homogeneous(true);
  return *row;
}

}  // namespace

SpaceEditor::SpaceEditor(BrowserStore& store, SpaceDraft draft)
    : Gtk::Box(Gtk::Orientation::VERTICAL),
      store_(store),
      draft_(std::move(draft)),
      logins_(_("Logins")),
      cancel_(_("Cancel")),
      commit_(isNew() ? _("Create Space") : _("Save")) {
  add_css_class("space-editor");
  auto* title = makeLabel(isNew() ? _("New Space") : _("Edit Space"), "serif");
  title->add_css_class("sheet-title");
  append(*title);
  addName();
  addColors();
  addIcons();
  addAppearance();
  addLogins();
  auto* footer = makeLabel(_("Spaces keep their own tabs and look."), "footer");
  footer->add_css_class("quiet");
  footer->set_wrap(true);
  append(*footer);
  addButtons();
  showWhetherComplete();
}

void SpaceEditor::addField(const std::string& title, Gtk::Widget& field) {
  auto* label = makeLabel(title, "field-label");
  label->add_css_class("quiet");
  append(*label);
  append(field);
}

void SpaceEditor::addName() {
  name_.set_text(draft_.name);
  name_.add_css_class("field");
  setAccessibleLabel(name_, _("Name"));
  name_.signal_changed().connect([this] {
    draft_.name = name_.get_text();
    showWhetherComplete();
  });
  name_.signal_activate().connect([this] { commit(); });
  addField(_("Name"), name_);
}

void SpaceEditor::addColors() {
  auto& row = makeRow("wells", _("Color"));
  const auto& present = Theme::forHue(draft_.hue);
  for (const auto& theme : Theme::all) {
    auto* well = wells_.emplace_back(Gtk::make_managed<ColorWell>(theme));
    row.add(*well, theme == present, [this, &theme] {
      draft_.hue = theme.hue;
      store_.spaceEditing.preview(theme);
    });
  }
  addField(_("Color"), row);
}

void SpaceEditor::addIcons() {
  auto& row = makeRow("symbols", _("Icon"));
  for (const auto& [symbol, name] : kSpaceSymbols) {
    auto* button = Gtk::make_managed<Gtk::ToggleButton>();
    button->set_child(*makeIcon(symbol, kIcon, IconPlace::InButton));
    button->add_css_class("symbol");
    button->set_halign(Gtk::Align::CENTER);
    button->set_tooltip_text(_(name));
    setAccessibleLabel(*button, _(name));
    row.add(*button, draft_.symbol == symbol, [this, chosen = symbol] { draft_.symbol = chosen; });
  }
  addField(_("Icon"), row);
}

void SpaceEditor::addAppearance() {
  auto& row = makeRow("segmented", _("Appearance"));
  for (const auto& choice : kAppearances) {
    auto* button = Gtk::make_managed<Gtk::ToggleButton>(_(choice.title));
    row.add(*button, draft_.appearance == choice.appearance,
            [this, appearance = choice.appearance] {
              draft_.appearance = appearance;
              store_.spaceEditing.preview(appearance);
            });
  }
  addField(_("Appearance"), row);
}

void SpaceEditor::addLogins() {
  std::vector<std::optional<UUID>> profiles = {std::nullopt};
  std::vector<std::string> titles = {_("Separate (new profile)")};
  size_t chosen = 0;
  for (const auto& space : store_.spaces.peek()) {
    const auto& profile = space->profile->id;
    if (space->id == draft_.spaceID || std::ranges::find(profiles, profile) != profiles.end())
      continue;
    if (profile == draft_.profileID) chosen = profiles.size();
    profiles.emplace_back(profile);
    titles.push_back(filled(_("Shared with {space}"), {{"space", shownText(space->name.peek())}}));
  }
  logins_.setChoices(std::move(titles), chosen);
  logins_.onChoice([this, profiles](size_t index) { draft_.profileID = profiles[index]; });
  // A space never moves to another profile.
  logins_.set_sensitive(isNew());
  logins_.set_valign(Gtk::Align::FILL);
  addField(_("Logins"), logins_);
}

void SpaceEditor::addButtons() {
  auto* buttons = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 8);
  buttons->add_css_class("buttons");
  buttons->set_halign(Gtk::Align::END);
  cancel_.add_css_class("push");
  commit_.add_css_class("push");
  commit_.add_css_class("primary");
  cancel_.signal_clicked().connect([this] { cancel(); });
  commit_.signal_clicked().connect([this] { commit(); });
  buttons->append(cancel_);
  buttons->append(commit_);
  append(*buttons);
}

void SpaceEditor::showWhetherComplete() {
  commit_.set_sensitive(!text::trimmed(draft_.name).empty());
}

void SpaceEditor::redraw() {
  for (auto* well : wells_) well->redraw();
}

void SpaceEditor::commit() {
  if (!commit_.get_sensitive()) return;
  store_.spaceEditing.commit(draft_);
  store_.focusWebView();
}

void SpaceEditor::cancel() {
  store_.spaceEditing.endDraft();
  store_.focusWebView();
}

}  // namespace orvel
