#include "Views/CommandBar/SuggestionRow.h"

#include "DesignSystem/Icons.h"
#include "DesignSystem/ShownText.h"
#include "DesignSystem/StyleSheet.h"
#include "Models/Commands/ActionCatalog.h"
#include "Models/Tab/BrowserTab.h"

namespace orvel {

namespace {

constexpr int kIconSize = 17;
constexpr int kGap = 11;
constexpr int kSubtitleGap = 9;
// A longer subtitle would leave nothing for the title, and is cut before it is.
constexpr int kMaxSubtitle = 40;

using Kind = SuggestionRowContent::Kind;

Kind kindOf(const Suggestion& suggestion) {
  if (std::holds_alternative<suggestion::Answer>(suggestion)) return Kind::Answer;
  if (std::holds_alternative<suggestion::Command>(suggestion)) return Kind::Command;
  return Kind::Plain;
}

}  // namespace

SuggestionRowContent contentOf(const Suggestion& suggestion, SearchEngine engine) {
  SuggestionRowContent content{.id = suggestionID(suggestion),
                               .kind = kindOf(suggestion),
                               .shown = presentation(suggestion, engine)};
  if (const auto* tab = std::get_if<TabRef>(&content.shown.icon))
    content.siteIcon = (*tab)->favicon();
  return content;
}

SuggestionRow::SuggestionRow()
    : Gtk::Box(Gtk::Orientation::HORIZONTAL, kGap),
      symbol_(makeIcon("globe", kIconSize)),
      site_(kIconSize) {
  // The toolkit tells screen readers of an option as of a pane.
  setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_LIST_ITEM);
  add_css_class("bar-row");
  symbol_->add_css_class("symbol");
  site_.add_css_class("site");
  title_.add_css_class("title");
  title_.set_ellipsize(Pango::EllipsizeMode::END);
  title_.set_halign(Gtk::Align::START);
  title_.set_xalign(0);
  title_.set_single_line_mode(true);
  subtitle_.add_css_class("subtitle");
  subtitle_.set_halign(Gtk::Align::START);
  subtitle_.set_xalign(0);
  subtitle_.set_single_line_mode(true);
  subtitle_.set_max_width_chars(kMaxSubtitle);
  texts_.set_hexpand(true);
  texts_.set_valign(Gtk::Align::CENTER);
  texts_.append(title_);
  texts_.append(subtitle_);
  action_.set_valign(Gtk::Align::CENTER);
  action_.set_visible(false);
  for (Gtk::Widget* part :
       {static_cast<Gtk::Widget*>(symbol_), static_cast<Gtk::Widget*>(&site_),
        static_cast<Gtk::Widget*>(&texts_), static_cast<Gtk::Widget*>(&action_)})
    append(*part);
}

void SuggestionRow::show(const SuggestionRowContent& content) {
  if (content_ == content) return;
  content_ = content;
  showIcon();
  showTexts();
}

void SuggestionRow::showIcon() {
  const auto* symbol = std::get_if<std::string>(&content_.shown.icon);
  symbol_->set_visible(symbol != nullptr);
  site_.set_visible(symbol == nullptr);
  if (symbol)
    setIcon(*symbol_, *symbol);
  else
    site_.set(content_.siteIcon, content_.shown.subtitle.value_or(std::string()));
}

void SuggestionRow::showTexts() {
  const auto& shown = content_.shown;
  const bool isAnswer = content_.kind == Kind::Answer;
  const auto title = shownText(shown.title);
  const auto subtitle = shownText(shown.subtitle.value_or(std::string()));
  title_.set_text(title);
  subtitle_.set_text(subtitle);
  subtitle_.set_visible(!subtitle.empty());
  const bool isLong = g_utf8_strlen(subtitle.c_str(), -1) > kMaxSubtitle;
  subtitle_.set_ellipsize(isLong ? Pango::EllipsizeMode::END : Pango::EllipsizeMode::NONE);
  setClass(Gtk::Widget::gobj(), "answer", isAnswer);
  setClass(title_.Gtk::Widget::gobj(), "serif", isAnswer);
  texts_.set_orientation(isAnswer ? Gtk::Orientation::VERTICAL : Gtk::Orientation::HORIZONTAL);
  texts_.set_spacing(isAnswer ? 0 : kSubtitleGap);
  // The question stands over its answer.
  if (isAnswer)
    texts_.reorder_child_at_start(subtitle_);
  else
    texts_.reorder_child_at_start(title_);
  const bool isKey = content_.kind == Kind::Command;
  const auto action = shown.action.value_or(std::string());
  action_.set_text(isKey ? shownShortcut(action).value_or(action) : action);
  setClass(action_.Gtk::Widget::gobj(), "key-cap", isKey);
  setClass(action_.Gtk::Widget::gobj(), "action", !isKey);
  setAccessibleLabel(*this, title);
  gtk_accessible_update_property(GTK_ACCESSIBLE(Gtk::Widget::gobj()),
                                 GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, subtitle.c_str(), -1);
}

void SuggestionRow::setSelected(bool isSelected) {
  setClass(Gtk::Widget::gobj(), "selected", isSelected);
  action_.set_visible(isSelected && !action_.get_text().empty());
  gtk_accessible_update_state(GTK_ACCESSIBLE(Gtk::Widget::gobj()), GTK_ACCESSIBLE_STATE_SELECTED,
                              isSelected, -1);
}

}  // namespace orvel
