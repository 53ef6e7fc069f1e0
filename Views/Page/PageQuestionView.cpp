#include "Views/Page/PageQuestionView.h"

#include <adwaita.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/label.h>

#include "BrowserCore/Addresses/URLInput.h"
#include "DesignSystem/Icons.h"
#include "DesignSystem/ShownText.h"
#include "DesignSystem/SiteIcon.h"
#include "Views/Window/Keyboard.h"

namespace orvel {

namespace {

constexpr int kWidth = 380;
constexpr int kMargin = 16;
constexpr int kPageTop = 64;
constexpr int kSymbol = 26;
constexpr int kSymbolGap = 14;
constexpr int kGap = 8;
// Words of more than about eight lines scroll in the height of these.
constexpr size_t kMaxCharacters = 360;
constexpr int kMaxLines = 8;
constexpr int kScrolledHeight = 144;

Gtk::Label* makeWords(const std::string& text) {
  auto* label = Gtk::make_managed<Gtk::Label>(text);
  label->set_wrap(true);
  label->set_wrap_mode(Pango::WrapMode::WORD_CHAR);
  label->set_max_width_chars(1);
  label->set_hexpand(true);
  label->set_selectable(false);
  return label;
}

bool isLong(const std::string& text) {
  return text.size() > kMaxCharacters || std::ranges::count(text, '\n') >= kMaxLines;
}

Gtk::Widget& scrolled(Gtk::Widget& words) {
  auto* scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
  scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  scroller->set_min_content_height(kScrolledHeight);
  scroller->set_max_content_height(kScrolledHeight);
  scroller->set_child(words);
  return *scroller;
}

void setMargins(GtkWidget* widget, int top, int others) {
  gtk_widget_set_margin_top(widget, top);
  gtk_widget_set_margin_bottom(widget, others);
  gtk_widget_set_margin_start(widget, others);
  gtk_widget_set_margin_end(widget, others);
}

bool isTyping(GtkWidget* focus) { return focus && GTK_IS_TEXT(focus); }

}  // namespace

PageQuestionView::PageQuestionView()
    : card_(Gtk::Orientation::VERTICAL), presence_(Gtk::Widget::gobj(), 0, [this](double presence) {
        set_opacity(std::clamp(presence, 0.0, 1.0));
        set_visible(shown_ || presence > 0.001);
      }) {
  add_css_class("page-dimmed");
  set_visible(false);
  setAccessibleRole(card_, GTK_ACCESSIBLE_ROLE_ALERT_DIALOG);
  card_.add_css_class("sheet-card");
  card_.set_overflow(Gtk::Overflow::HIDDEN);
  clamp_ = adw_clamp_new();
  gtk_widget_set_hexpand(clamp_, TRUE);
  gtk_widget_set_vexpand(clamp_, TRUE);
  adw_clamp_set_maximum_size(ADW_CLAMP(clamp_), kWidth);
  adw_clamp_set_tightening_threshold(ADW_CLAMP(clamp_), kWidth);
  adw_clamp_set_child(ADW_CLAMP(clamp_), card_.Gtk::Widget::gobj());
  gtk_box_append(gobj(), clamp_);

  auto keys = Gtk::EventControllerKey::create();
  keys->signal_key_pressed().connect(
      [this](guint key, guint, Gdk::ModifierType) {
        if (!shown_) return false;
        const bool isReturn = key == GDK_KEY_Return || key == GDK_KEY_KP_Enter;
        // Return is a button's own while it has the keyboard.
        if (key != GDK_KEY_Escape &&
            (!isReturn || GTK_IS_BUTTON(focusBeside(card_.Gtk::Widget::gobj()))))
          return false;
        answer(isReturn ? 0 : shown_->escapeButton());
        return true;
      },
      false);
  keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
  add_controller(keys);
}

void PageQuestionView::setTab(const TabRef& tab) {
  if (tab == tab_) return;
  tab_ = tab;
  follow_ = effect([this, isFirst = true]() mutable {
    if (tab_) tab_->questions.current.get();
    const auto appearing = std::exchange(isFirst, false) ? Appearing::AtOnce : Appearing::Fading;
    untracked([&] { follow(appearing); });
  });
  calls_ = effect([this, isFirst = true]() mutable {
    if (tab_) tab_->questions.calls.get();
    if (!std::exchange(isFirst, false) && shown_) takeKeyboard();
  });
}

Gtk::Button* PageQuestionView::button(size_t index) {
  return index < buttons_.size() ? buttons_[index] : nullptr;
}

void PageQuestionView::follow(Appearing appearing) {
  const auto question = tab_ ? tab_->questions.current.peek() : std::nullopt;
  // Each tab counts its own: another tab's question may have the same number.
  if (appearing == Appearing::Fading && question == shown_) return;
  const bool hadKeyboard = [this] {
    auto* focus = focusBeside(Gtk::Widget::gobj());
    return focus && gtk_widget_is_ancestor(focus, Gtk::Widget::gobj());
  }();
  if (hadKeyboard) releaseKeyboard(Gtk::Widget::gobj());
  shown_ = question;
  set_can_target(question.has_value());
  set_can_focus(question.has_value());
  if (question) begin(*question);
  const double presence = question ? 1 : 0;
  if (appearing == Appearing::AtOnce)
    presence_.set(presence);
  else
    presence_.animateTo(presence, question ? Spring::entry : Spring::quick);
  if (question)
    takeKeyboardFromPage(appearing);
  else if (const auto view = tab_ && hadKeyboard ? tab_->liveWebView() : nullptr)
    view->focus();
}

void PageQuestionView::begin(const PageQuestion& question) {
  buttons_.clear();
  fields_.clear();
  suppression_ = nullptr;
  while (auto* child = card_.get_first_child()) card_.remove(*child);
  const bool isPage = question.voice == PageQuestion::Voice::Page;
  gtk_widget_set_valign(clamp_, isPage ? GTK_ALIGN_START : GTK_ALIGN_CENTER);
  setMargins(clamp_, isPage ? kPageTop : kMargin, kMargin);
  setAccessibleLabel(card_, shownText(question.alert.messageText));
  gtk_accessible_update_property(
      GTK_ACCESSIBLE(card_.Gtk::Widget::gobj()), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION,
      question.alert.informativeText.c_str(), GTK_ACCESSIBLE_PROPERTY_MODAL, TRUE, -1);
  if (isPage) {
    addPageHead(question);
    addPageWords(question);
  } else {
    addProgramWords(question);
  }
}

void PageQuestionView::addPageHead(const PageQuestion& question) {
  auto* head = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kGap);
  head->add_css_class("page-dialog-head");
  const auto& host = question.alert.messageText;
  auto* icon = Gtk::make_managed<SiteIcon>();
  const auto& url = tab_->url.peek();
  // A frame's words come without the page's icon.
  const bool isPages = url && url->host() == std::string_view(host);
  icon->set(isPages ? untracked([this] { return tab_->favicon(); }) : nullptr, host);
  icon->set_valign(Gtk::Align::CENTER);
  auto* name = Gtk::make_managed<Gtk::Label>(shownText(host));
  name->add_css_class("host");
  name->set_ellipsize(Pango::EllipsizeMode::START);
  head->append(*icon);
  head->append(*name);
  card_.append(*head);
}

void PageQuestionView::addPageWords(const PageQuestion& question) {
  auto* body = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
  body->add_css_class("page-dialog");
  if (!question.alert.informativeText.empty()) {
    auto* words = makeWords(question.alert.informativeText);
    words->set_xalign(0);
    words->set_valign(Gtk::Align::START);
    body->append(isLong(question.alert.informativeText) ? scrolled(*words) : *words);
  }
  addFields(*body, question.alert);
  addSuppression(*body, question.alert);
  auto* foot = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kGap);
  foot->add_css_class("foot");
  foot->set_halign(Gtk::Align::END);
  addButtons(*foot, question);
  body->append(*foot);
  card_.append(*body);
}

void PageQuestionView::addProgramWords(const PageQuestion& question) {
  auto* body = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
  body->add_css_class("question");
  if (!question.symbols.empty()) {
    auto* symbols = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kSymbolGap);
    symbols->add_css_class("symbols");
    symbols->set_halign(Gtk::Align::CENTER);
    for (const auto& name : question.symbols) {
      auto* symbol = makeIcon(name, kSymbol);
      symbol->add_css_class("accent");
      symbols->append(*symbol);
    }
    body->append(*symbols);
  }
  auto* title = makeWords(shownText(question.alert.messageText));
  title->add_css_class("serif");
  title->add_css_class("question-title");
  auto* words = makeWords(question.alert.informativeText);
  words->add_css_class("quiet");
  for (auto* label : {title, words}) {
    label->set_justify(Gtk::Justification::CENTER);
    body->append(*label);
  }
  words->set_visible(!question.alert.informativeText.empty());
  addFields(*body, question.alert);
  addSuppression(*body, question.alert);
  if (suppression_) suppression_->set_halign(Gtk::Align::CENTER);
  auto* foot = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kGap);
  foot->add_css_class("foot");
  foot->set_homogeneous(true);
  addButtons(*foot, question);
  body->append(*foot);
  card_.append(*body);
}

void PageQuestionView::addFields(Gtk::Box& box, const Alert& alert) {
  for (const Alert::Field& field : alert.fields) {
    auto* entry = Gtk::make_managed<Gtk::Entry>();
    entry->set_placeholder_text(field.label);
    entry->set_text(field.text);
    if (field.isSecret) {
      entry->set_visibility(false);
      entry->set_input_purpose(Gtk::InputPurpose::PASSWORD);
    }
    entry->add_css_class("field");
    setAccessibleLabel(*entry, field.label.empty() ? alert.informativeText : field.label);
    entry->signal_activate().connect([this] { answer(0); });
    fields_.push_back(entry);
    box.append(*entry);
  }
}

void PageQuestionView::addSuppression(Gtk::Box& box, const Alert& alert) {
  if (!alert.suppression) return;
  suppression_ = Gtk::make_managed<Gtk::CheckButton>(alert.suppression->title);
  suppression_->add_css_class("box");
  suppression_->set_active(alert.suppression->isOn);
  box.append(*suppression_);
}

void PageQuestionView::addButtons(Gtk::Box& box, const PageQuestion& question) {
  buttons_.resize(question.alert.buttons.size());
  // The default stands at the end.
  for (size_t i = buttons_.size(); i-- > 0;) {
    auto* button = buttons_[i] = Gtk::make_managed<Gtk::Button>(question.alert.buttons[i]);
    button->add_css_class("push");
    if (i == 0) button->add_css_class("primary");
    button->signal_clicked().connect([this, i] { answer(i); });
    box.append(*button);
  }
}

// The keyboard is taken from the page, and from whom the user left for the page; never from someone
// who types.
void PageQuestionView::takeKeyboardFromPage(Appearing appearing) {
  auto* focus = focusBeside(Gtk::Widget::gobj());
  const bool isPages =
      !focus || gtk_widget_is_ancestor(focus, get_parent() ? get_parent()->gobj() : nullptr);
  if (shown_->leavesKeyboard || (isTyping(focus) && !isPages)) return;
  if (!isPages && appearing == Appearing::Fading) return;
  takeKeyboard();
}

void PageQuestionView::takeKeyboard() {
  // What is not on screen takes no keyboard.
  set_visible(true);
  if (!fields_.empty()) {
    fields_.front()->grab_focus();
    fields_.front()->select_region(0, -1);
  } else if (!buttons_.empty()) {
    buttons_.front()->grab_focus();
  }
}

void PageQuestionView::answer(std::optional<size_t> button) {
  if (!tab_ || !shown_) return;
  AlertAnswer given{.button = button};
  for (const auto* field : fields_) given.fields.push_back(field->get_text());
  given.isSuppressionOn = suppression_ && suppression_->get_active();
  tab_->questions.answer(shown_->id, std::move(given));
}

}  // namespace orvel
