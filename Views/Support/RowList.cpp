#include "Views/Support/RowList.h"

#include <gdkmm/frameclock.h>
#include <gtkmm/box.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/snapshot.h>

#include "DesignSystem/Icons.h"
#include "DesignSystem/StyleSheet.h"
#include "Views/Window/Keyboard.h"

namespace orvel {

namespace {

constexpr double kInset = 8;  // room at the sides, where the rows' shadows and rings reach
// What is built before the window has told its height.
constexpr double kFirstHeight = 800;
constexpr double kMinimumWidth = 120;
// The list fades so far at an end that goes on.
constexpr double kFade = 12;

}  // namespace

RowList::RowList(Delegate& delegate, const std::string& label, const char* dragType)
    : Glib::ObjectBase("OrvelRowList"),
      delegate_(delegate),
      motion_(gobj(), 0, [this](double) { queue_allocate(); }),
      ground_(std::make_unique<Gtk::Box>()),
      gap_(std::make_unique<Gtk::Box>()) {
  setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_LIST);
  setAccessibleLabel(*this, label);
  add_css_class("row-list");
  ground_->set_parent(*this);
  gap_->add_css_class("drop-gap");
  gap_->set_can_target(false);
  gap_->set_child_visible(false);
  gap_->set_parent(*this);

  // The binding has no operation for this; the class is this type's own.
  GTK_WIDGET_GET_CLASS(gobj())->focus = &RowList::focusInDirection;
  auto keys = Gtk::EventControllerKey::create();
  keys->signal_key_pressed().connect(
      [this](guint key, guint, Gdk::ModifierType state) { return keyPressed(key, state); }, false);
  add_controller(keys);
  followPointer();
  installDropTarget(dragType);

  // Once the icons in the rows know it too.
  const auto measureAnew = +[](GtkSettings*, GParamSpec*, RowList* list) {
    if (!list->heights_) return;
    list->heights_.emplace();
    list->layOut(std::nullopt);
  };
  textSize_ = g_signal_connect_data(gtk_settings_get_default(), "notify::gtk-xft-dpi",
                                    G_CALLBACK(measureAnew), this, nullptr, G_CONNECT_AFTER);
}

RowList::~RowList() {
  g_signal_handler_disconnect(gtk_settings_get_default(), textSize_);
  for (auto& [key, live] : live_) live.widget->unparent();
  for (auto& pool : pools_)
    for (auto& widget : pool) widget->unparent();
  gap_->unparent();
  ground_->unparent();
}

void RowList::setAdjustment(const Glib::RefPtr<Gtk::Adjustment>& adjustment) {
  adjustment_ = adjustment;
  adjustment_->signal_value_changed().connect([this] {
    sync();
    updatePointed();
  });
  adjustment_->property_page_size().signal_changed().connect(
      sigc::mem_fun(*this, &RowList::syncLater));
  adjustment_->property_upper().signal_changed().connect([this] {
    if (toReach_) syncLater();
  });
}

void RowList::setRows(std::vector<SidebarRow> rows, const std::optional<Spring>& motion) {
  rows_ = std::move(rows);
  indices_.clear();
  for (size_t i = 0; i < rows_.size(); ++i) indices_.emplace(rows_[i].key, i);
  layOut(motion);
}

std::optional<size_t> RowList::indexOf(const SidebarRow::Key& key) const {
  const auto found = indices_.find(key);
  if (found == indices_.end()) return std::nullopt;
  return found->second;
}

// Places the rows anew, and starts their motion from where they are shown now.
void RowList::layOut(const std::optional<Spring>& motion) {
  if (!heights_) return;
  measureRows();
  Tops former;
  if (motion && get_mapped())
    for (const auto& [key, live] : live_) former.emplace(key, shownTop(live));

  std::optional<RowLayout::Gap> gap;
  if (drop_ && drop_->place == RowDrop::Place::Before)
    gap = {drop_->row, (*heights_)[static_cast<size_t>(SidebarRow::Kind::Tab)]};
  layout_ = RowLayout(rows_, *heights_, gap);
  rebindChanged();
  sync();

  if (former.empty())
    motion_.set(0);
  else
    moveFrom(former, *motion);
  updatePointed();
  queue_resize();
}

// Lets go of rows that are no more, and binds those anew whose value is another.
void RowList::rebindChanged() {
  for (auto it = live_.begin(); it != live_.end();) {
    auto& live = it->second;
    const auto index = indexOf(it->first);
    if (!index) {
      release(live);
      it = live_.erase(it);
      continue;
    }
    live.index = *index;
    live.offset = 0;
    if (std::exchange(live.isAppearing, false)) live.widget->set_opacity(1);
    if (live.row != rows_[*index]) {
      live.widget->unbind();
      live.row = rows_[*index];
      live.widget->bind(live.row);
      ++counters_.bound;
    }
    ++it;
  }
}

// A row that was there moves from its former place; a new one slides out from below the row in
// front of it.
void RowList::moveFrom(const Tops& former, const Spring& spring) {
  std::vector<LiveRow*> ordered;
  for (auto& [key, live] : live_) ordered.push_back(&live);
  std::ranges::sort(ordered, {}, &LiveRow::index);
  double front = 0;
  for (auto* live : ordered) {
    const auto place = former.find(live->row.key);
    live->isAppearing = place == former.end();
    if (!live->isAppearing) front = place->second;
    live->offset = front - layout_.top(live->index);
  }
  motion_.set(1);
  motion_.animateTo(0, spring);
}

// Measures the kinds that occur; a gap is as high as a tab.
void RowList::measureRows() {
  measure(SidebarRow::Kind::Tab);
  for (const SidebarRow& row : rows_) measure(row.key.kind);
}

// Returns whether the kind had no height yet.
bool RowList::measure(SidebarRow::Kind kind) {
  double& height = (*heights_)[static_cast<size_t>(kind)];
  if (height > 0) return false;
  auto widget = takeWidget(kind);
  int minimum = 0;
  gtk_widget_measure(widget->Gtk::Widget::gobj(), GTK_ORIENTATION_VERTICAL, -1, &minimum, nullptr,
                     nullptr, nullptr);
  height = minimum;
  putAside(kind, std::move(widget));
  return true;
}

void RowList::on_realize() {
  Gtk::Widget::on_realize();
  followWindow();
  heights_.emplace();
  layOut(std::nullopt);
}

double RowList::shownTop(const LiveRow& live) const {
  return layout_.top(live.index) + live.offset * motion_.value();
}

RowLayout::Range RowList::wantedRows() const {
  const double height =
      adjustment_ && adjustment_->get_page_size() > 1 ? adjustment_->get_page_size() : kFirstHeight;
  const double top = adjustment_ ? adjustment_->get_value() : 0;
  return layout_.rowsBetween(top - height / 2, top + height * 1.5);
}

std::unique_ptr<RowWidget> RowList::makeWidget(SidebarRow::Kind kind) {
  ++counters_.built;
  auto widget = delegate_.makeRow(kind);
  widget->set_parent(*this);
  return widget;
}

bool RowList::buildAhead(size_t count) {
  constexpr auto kKind = SidebarRow::Kind::Tab;
  auto& pool = pools_[static_cast<size_t>(kKind)];
  for (size_t kind = 0; heights_ && kind < RowLayout::kKinds; ++kind)
    if (measure(static_cast<SidebarRow::Kind>(kind))) return true;
  if (live_.size() + pool.size() >= count) return false;
  putAside(kKind, makeWidget(kKind));
  return true;
}

void RowList::putAside(SidebarRow::Kind kind, std::unique_ptr<RowWidget> widget) {
  widget->set_child_visible(false);
  setAccessibleHidden(*widget, true);
  pools_[static_cast<size_t>(kind)].push_back(std::move(widget));
}

std::unique_ptr<RowWidget> RowList::takeWidget(SidebarRow::Kind kind) {
  auto& pool = pools_[static_cast<size_t>(kind)];
  if (pool.empty()) return makeWidget(kind);
  auto widget = std::move(pool.back());
  pool.pop_back();
  return widget;
}

void RowList::release(LiveRow& live) {
  live.widget->unbind();
  live.widget->set_opacity(1);
  putAside(live.row.key.kind, std::move(live.widget));
}

// Gives widgets to the rows that want one, and takes them from the others.
void RowList::sync() {
  const auto wanted = wantedRows();
  const auto focused = focusedRow();
  for (auto it = live_.begin(); it != live_.end();) {
    // The focus must not fall out of the list because its row is scrolled away.
    if (wanted.contains(it->second.index) || it->second.index == focused) {
      ++it;
    } else {
      release(it->second);
      it = live_.erase(it);
    }
  }
  bool isAnyNew = false;
  for (size_t i = wanted.begin; i < wanted.end; ++i) {
    const auto [place, isNew] = live_.try_emplace(rows_[i].key);
    if (!isNew) continue;
    isAnyNew = true;
    auto& live = place->second;
    live.widget = takeWidget(rows_[i].key.kind);
    live.row = rows_[i];
    live.index = i;
    live.widget->bind(live.row);
    live.widget->set_child_visible(true);
    setAccessibleHidden(*live.widget, false);
    ++counters_.bound;
  }
  if (isAnyNew) queue_allocate();
}

// For changes that come while the window is being laid out, when nothing may be built.
void RowList::syncLater() {
  if (isSyncPlanned_) return;
  isSyncPlanned_ = true;
  add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>&) {
    isSyncPlanned_ = false;
    if (const auto key = std::exchange(toReach_, std::nullopt)) scrollTo(*key);
    sync();
    return false;
  });
}

void RowList::scrollTo(const SidebarRow::Key& key) {
  const auto index = indexOf(key);
  if (!index || !adjustment_) return;
  if (!heights_) {
    toReach_ = key;
    return;
  }
  const double bottom = layout_.top(*index) + layout_.height(*index);
  // The viewport learns of new rows with the next layout.
  toReach_ = bottom > adjustment_->get_upper() ? std::optional(key) : std::nullopt;
  adjustment_->clamp_page(layout_.top(*index) - kFade, bottom + kFade);
}

RowWidget* RowList::widgetFor(const SidebarRow::Key& key) const {
  const auto found = live_.find(key);
  return found == live_.end() ? nullptr : found->second.widget.get();
}

std::optional<size_t> RowList::focusedRow() const {
  auto* focus = focusBeside(const_cast<GtkWidget*>(gobj()));
  if (!focus) return std::nullopt;
  for (const auto& [key, live] : live_) {
    auto* row = live.widget->Gtk::Widget::gobj();
    if (focus == row || gtk_widget_is_ancestor(focus, row)) return live.index;
  }
  return std::nullopt;
}

GtkWidget* RowList::focusedMenu() const {
  auto* self = const_cast<GtkWidget*>(gobj());
  auto* focus = focusBeside(self);
  if (!focus || !gtk_widget_is_ancestor(focus, self)) return nullptr;
  auto* native = GTK_WIDGET(gtk_widget_get_native(focus));
  return gtk_widget_is_ancestor(native, self) ? native : nullptr;
}

bool RowList::focusRow(size_t index) {
  if (index >= rows_.size() || !heights_) return false;
  scrollTo(rows_[index].key);
  sync();
  auto* widget = widgetFor(rows_[index].key);
  if (!widget || !widget->takeFocus()) return false;
  lastFocused_ = rows_[index].key;
  return true;
}

// The keyboard comes in: to where it was, or else to the first row in view that takes it.
bool RowList::enterFocus() {
  const auto last = lastFocused_ ? indexOf(*lastFocused_) : std::nullopt;
  if (last && focusRow(*last)) return true;
  const auto first = layout_.rowAt(adjustment_ ? adjustment_->get_value() : 0);
  return first && moveFocus(*first, 1);
}

gboolean RowList::focusInDirection(GtkWidget* widget, GtkDirectionType direction) {
  auto* list = dynamic_cast<RowList*>(Glib::wrap_auto(G_OBJECT(widget)));
  if (!list) return FALSE;
  if (auto* menu = list->focusedMenu()) return gtk_widget_child_focus(menu, direction);
  const auto focused = list->focusedRow();
  if (!focused) return list->enterFocus();
  // What stands side by side in a row is reached within it.
  if (direction != GTK_DIR_LEFT && direction != GTK_DIR_RIGHT) return FALSE;
  auto* row = list->widgetFor(list->rows_[*focused].key);
  return gtk_widget_child_focus(row->Gtk::Widget::gobj(), direction);
}

bool RowList::moveFocus(size_t from, int step) {
  const auto count = static_cast<ptrdiff_t>(rows_.size());
  for (auto i = static_cast<ptrdiff_t>(from); i >= 0 && i < count; i += step)
    if (focusRow(static_cast<size_t>(i))) return true;
  return false;
}

bool RowList::keyPressed(guint key, Gdk::ModifierType state) {
  using enum Gdk::ModifierType;
  const auto focused = focusedRow();
  // An entry in a row keeps its own keys, and so does a menu that is open on one.
  if (!focused || GTK_IS_EDITABLE(focusBeside(gobj())) || focusedMenu()) return false;
  const auto held = state & (CONTROL_MASK | ALT_MASK | SHIFT_MASK);
  if (held == (ALT_MASK | SHIFT_MASK)) return moveRow(*focused, key);
  if ((held & (CONTROL_MASK | ALT_MASK)) != Gdk::ModifierType{}) return false;
  switch (key) {
    case GDK_KEY_Down:
    case GDK_KEY_KP_Down:
      return *focused + 1 < rows_.size() && moveFocus(*focused + 1, 1);
    case GDK_KEY_Up:
    case GDK_KEY_KP_Up:
      return *focused > 0 && moveFocus(*focused - 1, -1);
    case GDK_KEY_Home:
    case GDK_KEY_KP_Home:
      return moveFocus(0, 1);
    case GDK_KEY_End:
    case GDK_KEY_KP_End:
      return moveFocus(rows_.size() - 1, -1);
    default:
      return false;
  }
}

bool RowList::moveRow(size_t index, guint key) {
  const bool isUp = key == GDK_KEY_Up || key == GDK_KEY_KP_Up;
  if (!isUp && key != GDK_KEY_Down && key != GDK_KEY_KP_Down) return false;
  const auto moved = rows_[index].key;
  if (!delegate_.moveRow(index, isUp ? -1 : 1)) return false;
  // The next key may be waiting already.
  flushEffects();
  toReach_ = moved;
  syncLater();
  return true;
}

Gtk::SizeRequestMode RowList::get_request_mode_vfunc() const {
  return Gtk::SizeRequestMode::CONSTANT_SIZE;
}

void RowList::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural,
                            int& minimumBaseline, int& naturalBaseline) const {
  minimumBaseline = naturalBaseline = -1;
  minimum = natural = static_cast<int>(
      orientation == Gtk::Orientation::VERTICAL ? layout_.totalHeight() : kMinimumWidth);
}

void RowList::size_allocate_vfunc(int width, int height, int) {
  const int rowWidth = std::max(0, width - static_cast<int>(2 * kInset));
  const auto place = [rowWidth](Gtk::Widget& widget, double y, double height) {
    // GTK insists on having asked before it allocates.
    int minimum = 0;
    gtk_widget_measure(widget.gobj(), GTK_ORIENTATION_HORIZONTAL, -1, &minimum, nullptr, nullptr,
                       nullptr);
    const graphene_point_t at = {kInset, static_cast<float>(y)};
    gtk_widget_allocate(widget.gobj(), std::max(rowWidth, minimum), static_cast<int>(height), -1,
                        gsk_transform_translate(nullptr, &at));
  };
  place(*ground_, 0, height);
  const double left = motion_.value();
  for (auto& [key, live] : live_) {
    place(*live.widget, shownTop(live), layout_.height(live.index));
    if (live.isAppearing) live.widget->set_opacity(std::clamp(1 - left, 0.0, 1.0));
  }
  const auto gap = layout_.gapTop();
  gap_->set_child_visible(gap.has_value());
  if (gap) place(*gap_, *gap, (*heights_)[static_cast<size_t>(SidebarRow::Kind::Tab)] - 2);
  if (resting_ && motion_.value() == 0) pickLater();
}

void RowList::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  if (gap_->get_child_visible()) snapshot_child(*gap_, snapshot);
  // The ring of the row with the keyboard reaches over its neighbors.
  const auto focused = focusedRow();
  const LiveRow* last = nullptr;
  for (const auto& [key, live] : live_)
    if (live.index == focused)
      last = &live;
    else
      snapshot_child(*live.widget, snapshot);
  if (last) snapshot_child(*last->widget, snapshot);
}

}  // namespace orvel
