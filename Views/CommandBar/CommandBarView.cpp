#include "Views/CommandBar/CommandBarView.h"

#include <gtkmm/adjustment.h>
#include <gtkmm/eventcontrollermotion.h>
#include <gtkmm/gestureclick.h>

#include <cmath>

#include "Base/Texts.h"
#include "DesignSystem/Icons.h"
#include "Models/Settings/Settings.h"
#include "Models/Store/BrowserStore.h"
#include "Views/Sidebar/SidebarLayout.h"
#include "Views/Window/Keyboard.h"

namespace orvel {

namespace {

constexpr double kWidth = 620;
// What the card grows by where the desktop doubles the size of its texts.
constexpr double kWidthForText = 280;
constexpr double kMaxShare = 0.92;
constexpr int kMargin = 16;
constexpr double kTop = 0.16;
constexpr double kTopWhereNarrow = 56;
constexpr double kMinScale = 0.98;
constexpr int kSymbolSize = 18;
constexpr int kHeaderGap = 11;
constexpr int kFooterGap = 12;
constexpr int kCapGap = 6;
// Below this the pointer has not moved; the toolkit tells of a pointer at rest, too.
constexpr double kStill = 0.5;

Gtk::Box* keyHint(const char* key, const char* meaning) {
  auto* hint = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kCapGap);
  auto* cap = Gtk::make_managed<Gtk::Label>(key);
  cap->add_css_class("key-cap");
  cap->set_valign(Gtk::Align::CENTER);
  hint->append(*cap);
  hint->append(*Gtk::make_managed<Gtk::Label>(meaning));
  return hint;
}

}  // namespace

CommandBarView::CommandBarView(BrowserStore& store)
    : Glib::ObjectBase("OrvelCommandBarView"),
      store_(store),
      theme_(gobj()),
      card_(Gtk::Orientation::VERTICAL),
      header_(Gtk::Orientation::HORIZONTAL, kHeaderGap),
      field_(fieldActions()),
      footer_(Gtk::Orientation::HORIZONTAL, kFooterGap),
      presence_(gobj(), 0, [this](double presence) {
        set_opacity(std::clamp(presence, 0.0, 1.0));
        set_visible(bar_ || presence > 0.001);
        queue_allocate();
      }) {
  add_css_class("dimmed");
  setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_DIALOG);
  setAccessibleLabel(*this, _("Command bar"));
  set_opacity(0);
  set_visible(false);
  buildCard();
  installPointer();
  follow_ = effect([this](const Wake& wake) { follow(wake); });
}

CommandBarView::~CommandBarView() { card_.unparent(); }

// The field outlives its bar by the time that the card takes to fade.
KeyTextField::Actions CommandBarView::fieldActions() {
  return {
      .onChange =
          [this](std::string text) {
            if (bar_) bar_->setText(std::move(text));
          },
      .onMove =
          [this](int delta) {
            if (bar_) bar_->move(delta);
          },
      .onSubmit =
          [this] {
            if (bar_) bar_->submit();
          },
      .onCancel =
          [this] {
            if (bar_) bar_->cancel();
            // The next key may be waiting already, and is the page's.
            flushEffects();
            store_.focusWebViewNow();
          },
      .complete =
          [this](const std::string& typed) { return bar_ ? bar_->complete(typed) : std::nullopt; }};
}

void CommandBarView::buildCard() {
  card_.add_css_class("bar");
  card_.set_overflow(Gtk::Overflow::HIDDEN);
  card_.set_parent(*this);
  header_.add_css_class("bar-field");
  setIconSize(symbol_, kSymbolSize);
  symbol_.add_css_class("quiet");
  setAccessibleRole(symbol_, GTK_ACCESSIBLE_ROLE_PRESENTATION);
  field_.set_hexpand(true);
  field_.set_valign(Gtk::Align::CENTER);
  header_.append(symbol_);
  header_.append(field_);

  scroller_.add_css_class("bar-rows");
  scroller_.set_focusable(false);
  scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  scroller_.set_propagate_natural_height(true);
  scroller_.set_child(list_);
  scroller_.set_visible(false);
  // A list that grows or is made smaller keeps the chosen row in view.
  scroller_.get_vadjustment()->signal_changed().connect([this] { revealSelection(); });

  footer_.add_css_class("bar-footer");
  footer_.add_css_class("quiet");
  auto* examples = Gtk::make_managed<Gtk::Label>(_("Try 20+20, 100 usd to eur, yt lofi"));
  examples->set_ellipsize(Pango::EllipsizeMode::END);
  examples->set_xalign(0);
  examples->set_hexpand(true);
  footer_.append(*examples);
  footer_.append(*keyHint("↩", _("open")));
  footer_.append(*keyHint("↑↓", _("select")));
  footer_.append(*keyHint("esc", _("close")));

  card_.append(header_);
  card_.append(scroller_);
  card_.append(footer_);
}

void CommandBarView::installPointer() {
  auto motion = Gtk::EventControllerMotion::create();
  motion->signal_enter().connect([this](double x, double y) { pointer_ = {x, y}; });
  motion->signal_motion().connect(sigc::mem_fun(*this, &CommandBarView::pointerMoved));
  add_controller(motion);
  auto click = Gtk::GestureClick::create();
  click->signal_pressed().connect([this](int, double x, double y) { pressed(x, y); });
  click->signal_released().connect([this](int, double x, double y) { released(x, y); });
  add_controller(click);
}

void CommandBarView::follow(const Wake& wake) {
  const auto mode = store_.commandBar.get();
  const bool isWanted = mode && mode != CommandBarMode::Quick;
  // A bar for the present tab begins anew with another one.
  const TabRef subject = isWanted ? CommandBar::subjectOf(store_, *mode) : nullptr;
  untracked([&] {
    if (!isWanted)
      end();
    else if (!bar_ || bar_->mode != *mode || bar_->isSpent() || bar_->subject != subject)
      begin(*mode);
  });
  const double target = isWanted ? 1 : 0;
  if (wake.transaction)
    presence_.animateTo(target, wake.transaction->spring);
  else
    presence_.set(target);
}

void CommandBarView::begin(CommandBarMode mode) {
  bar_ = CommandBar::make(store_, mode);
  setIcon(symbol_, bar_->symbol());
  field_.setPlaceholder(std::string(bar_->placeholder()));
  field_.setText(bar_->text());
  set_visible(true);
  set_can_target(true);
  set_can_focus(true);
  pointer_.reset();
  pressedRow_.reset();
  scroller_.get_vadjustment()->set_value(0);
  rows_ = effect([this](const Wake& wake) { showRows(wake); });
  selection_ = effect([this] { showSelection(); });
  bar_->appear();
  // At once for the keys that are waiting already, and again after a menu that closes has given the
  // keyboard back to where it was.
  field_.takeFocus();
  store_.services().scheduler.post([this, bar = std::weak_ptr(bar_)] {
    if (bar.lock() && !field_.entry().has_focus()) field_.takeFocus();
  });
}

// The card keeps what it shows while it fades.
void CommandBarView::end() {
  if (!bar_) return;
  rows_.stop();
  selection_.stop();
  bar_.reset();
  set_can_target(false);
  set_can_focus(false);
  releaseKeyboard(gobj());
}

void CommandBarView::showRows(const Wake& wake) {
  std::vector<SuggestionRowContent> rows;
  const SearchEngine engine = store_.settings.searchEngine.get();
  for (const auto& suggestion : bar_->suggestions()) rows.push_back(contentOf(suggestion, engine));
  scroller_.set_visible(!rows.empty());
  list_.setRows(std::move(rows),
                wake.transaction ? std::optional(wake.transaction->spring) : std::nullopt);
  untracked([this] { showSelection(); });
}

void CommandBarView::showSelection() {
  const size_t index = bar_->selection.get();
  list_.setSelected(index);
  revealSelection();
  auto* field = GTK_ACCESSIBLE(field_.accessible().gobj());
  if (index < list_.rowCount())
    gtk_accessible_update_relation(field, GTK_ACCESSIBLE_RELATION_ACTIVE_DESCENDANT,
                                   list_.row(index).Gtk::Widget::gobj(), -1);
  else
    gtk_accessible_reset_relation(field, GTK_ACCESSIBLE_RELATION_ACTIVE_DESCENDANT);
}

void CommandBarView::revealSelection() {
  if (!bar_ || bar_->selection.peek() >= list_.rowCount()) return;
  const auto [top, height] = list_.stretch(bar_->selection.peek());
  // With the list's padding, so that the ends come into view with their rows.
  constexpr double kPadding = 6;
  scroller_.get_vadjustment()->clamp_page(top, top + height + 2 * kPadding);
}

// The pointer

std::optional<size_t> CommandBarView::rowAt(double x, double y) {
  double listX = 0;
  double listY = 0;
  double cardY = 0;
  if (!translate_coordinates(scroller_, x, y, listX, cardY) || cardY < 0 ||
      cardY >= scroller_.get_height() || listX < 0 || listX >= scroller_.get_width() ||
      !translate_coordinates(list_, x, y, listX, listY))
    return std::nullopt;
  return list_.rowAt(listY);
}

void CommandBarView::pointerMoved(double x, double y) {
  const auto former = std::exchange(pointer_, std::pair(x, y));
  if (!bar_ || !former || std::hypot(x - former->first, y - former->second) < kStill) return;
  if (const auto row = rowAt(x, y)) bar_->select(*row);
}

void CommandBarView::pressed(double x, double y) {
  pressedRow_ = bar_ ? rowAt(x, y) : std::nullopt;
  double cardX = 0;
  double cardY = 0;
  translate_coordinates(card_, x, y, cardX, cardY);
  if (bar_ && !card_.contains(cardX, cardY)) bar_->cancel();
}

void CommandBarView::released(double x, double y) {
  const auto row = std::exchange(pressedRow_, std::nullopt);
  if (!bar_ || !row || row != rowAt(x, y)) return;
  bar_->select(*row);
  bar_->submit();
}

// The layout

void CommandBarView::measure_vfunc(Gtk::Orientation, int, int& minimum, int& natural,
                                   int& minimumBaseline, int& naturalBaseline) const {
  minimum = natural = 0;
  minimumBaseline = naturalBaseline = -1;
}

void CommandBarView::size_allocate_vfunc(int width, int height, int) {
  auto* card = card_.Gtk::Widget::gobj();
  int minimumWidth = 0;
  gtk_widget_measure(card, GTK_ORIENTATION_HORIZONTAL, -1, &minimumWidth, nullptr, nullptr,
                     nullptr);
  const double wanted = std::min(kWidth + kWidthForText * (textScale() - 1), kMaxShare * width);
  const int cardWidth = std::max(static_cast<int>(std::lround(std::min<double>(
                                     std::max(wanted, kWidth), width - 2 * kMargin))),
                                 minimumWidth);
  int natural = 0;
  gtk_widget_measure(card, GTK_ORIENTATION_VERTICAL, cardWidth, nullptr, &natural, nullptr,
                     nullptr);
  const double share = kTop * height;
  const auto top =
      static_cast<int>(std::lround(width < kRoomyWidth ? std::min(share, kTopWhereNarrow) : share));
  scaleCard(cardWidth, std::max(std::min(natural, height - top - kMargin), 1),
            (width - cardWidth) / 2, top);
}

// The card comes and goes a little smaller, about its center.
void CommandBarView::scaleCard(int width, int height, int x, int y) {
  const double scale = presence_.isMoving() ? kMinScale + (1 - kMinScale) * presence_.value() : 1;
  const graphene_point_t center = {static_cast<float>(x + width / 2.0),
                                   static_cast<float>(y + height / 2.0)};
  const graphene_point_t corner = {static_cast<float>(-width / 2.0),
                                   static_cast<float>(-height / 2.0)};
  auto* transform = gsk_transform_translate(nullptr, &center);
  transform = gsk_transform_scale(transform, static_cast<float>(scale), static_cast<float>(scale));
  gtk_widget_allocate(card_.Gtk::Widget::gobj(), width, height, -1,
                      gsk_transform_translate(transform, &corner));
}

}  // namespace orvel
