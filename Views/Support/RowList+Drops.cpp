#include <gdkmm/frameclock.h>

#include "DesignSystem/StyleSheet.h"
#include "Views/Sidebar/DroppedLink.h"
#include "Views/Support/RowList.h"

// Drags over the list: gaps, folders that light up, and scrolling near the ends.
namespace orvel {

namespace {

constexpr double kAutoScrollZone = 36;    // pixels from an end of the view
constexpr double kAutoScrollSpeed = 700;  // pixels a second, at the very end

RowList& listOf(gpointer self) { return *static_cast<RowList*>(self); }

}  // namespace

void RowList::installDropTarget(const char* dragType) {
  const char* types[] = {dragType, kLinkDragType};
  auto* target = gtk_drop_target_async_new(
      gdk_content_formats_new(types, 2),
      static_cast<GdkDragAction>(GDK_ACTION_MOVE | GDK_ACTION_COPY | GDK_ACTION_LINK));
  ownType_ = g_intern_string(dragType);
  g_signal_connect(target, "drag-enter", G_CALLBACK(&RowList::dragMotion), this);
  g_signal_connect(target, "drag-motion", G_CALLBACK(&RowList::dragMotion), this);
  g_signal_connect(target, "drag-leave", G_CALLBACK(&RowList::dragLeave), this);
  g_signal_connect(target, "drop", G_CALLBACK(&RowList::dragDrop), this);
  gtk_widget_add_controller(gobj(), GTK_EVENT_CONTROLLER(target));
}

GdkDragAction RowList::dragMotion(GtkDropTargetAsync*, GdkDrop* drop, double x, double y,
                                  gpointer self) {
  auto& list = listOf(self);
  const bool isOwn =
      gdk_content_formats_contain_mime_type(gdk_drop_get_formats(drop), list.ownType_);
  list.dragged_ = isOwn ? Dragged::Own : Dragged::Link;
  list.dragMoved(x, y);
  return list.actionFor(drop);
}

GdkDragAction RowList::actionFor(GdkDrop* drop) const {
  constexpr auto kNone = static_cast<GdkDragAction>(0);
  if (!drop_) return kNone;
  if (dragged_ == Dragged::Own) return GDK_ACTION_MOVE;
  for (const auto action : {GDK_ACTION_LINK, GDK_ACTION_COPY, GDK_ACTION_MOVE})
    if ((gdk_drop_get_actions(drop) & action) != 0) return action;
  return kNone;
}

void RowList::dragLeave(GtkDropTargetAsync*, GdkDrop*, gpointer self) { listOf(self).dragLeft(); }

gboolean RowList::dragDrop(GtkDropTargetAsync*, GdkDrop* drop, double x, double y, gpointer self) {
  auto& list = listOf(self);
  const auto point = list.pointAt(x, y);
  if (list.dragged_ == Dragged::Link) return point && list.dropLink(drop, *point);
  list.dragLeft();
  const bool isDone = point && list.delegate_.drop(*point);
  gdk_drop_finish(drop, isDone ? GDK_ACTION_MOVE : static_cast<GdkDragAction>(0));
  return isDone;
}

// The rows may be others when the link has been read: it lands at this height then.
bool RowList::dropLink(GdkDrop* drop, const RowPoint& point) {
  const auto action = actionFor(drop);
  dragLeft();
  readLink(drop, [this, alive = std::weak_ptr(alive_), point, action,
                  held = GRef<GdkDrop>::retain(drop)](const std::optional<URL>& link) {
    const bool isTaken = link && !alive.expired() && point.row < rows_.size();
    if (isTaken) delegate_.dropLink(point, *link);
    gdk_drop_finish(held.get(), isTaken ? action : static_cast<GdkDragAction>(0));
  });
  return true;
}

std::optional<RowPoint> RowList::pointAt(double x, double y) const {
  // An open gap belongs to where it stands, or it would close under the pointer and open again.
  if (const auto gap = layout_.gapTop();
      gap && drop_ && drop_->row < rows_.size() && y >= *gap && y < layout_.top(drop_->row))
    return RowPoint{drop_->row, 0.5, 0};
  const auto row = layout_.rowAt(y);
  if (!row) return std::nullopt;
  const double width = std::max(1, get_width());
  const double across = std::clamp(x / width, 0.0, 1.0);
  return RowPoint{*row, get_direction() == Gtk::TextDirection::RTL ? 1 - across : across,
                  std::clamp((y - layout_.top(*row)) / layout_.height(*row), 0.0, 1.0)};
}

void RowList::dragMoved(double x, double y) {
  pointer_ = {x, y};
  const auto point = pointAt(x, y);
  setDrop(point ? delegate_.dropAt(*point, dragged_) : std::nullopt);
  updateAutoScroll(y);
}

void RowList::dragLeft() {
  pointer_.reset();
  autoScrollSpeed_ = 0;
  setDrop(std::nullopt);
}

void RowList::setDrop(const std::optional<RowDrop>& drop) {
  if (drop == drop_) return;
  const auto mark = [this](bool isTarget) {
    if (!drop_ || drop_->place != RowDrop::Place::Into || drop_->row >= rows_.size()) return;
    if (auto* widget = widgetFor(rows_[drop_->row].key))
      setClass(widget->Gtk::Widget::gobj(), "drop", isTarget);
  };
  mark(false);
  drop_ = drop;
  mark(true);
  layOut(Spring::move);
}

void RowList::updateAutoScroll(double y) {
  autoScrollSpeed_ = 0;
  if (!adjustment_) return;
  const double inView = y - adjustment_->get_value();
  const double toEnd = adjustment_->get_page_size() - inView;
  if (inView < kAutoScrollZone)
    autoScrollSpeed_ = -kAutoScrollSpeed * (1 - std::max(inView, 0.0) / kAutoScrollZone);
  else if (toEnd < kAutoScrollZone)
    autoScrollSpeed_ = kAutoScrollSpeed * (1 - std::max(toEnd, 0.0) / kAutoScrollZone);
  if (autoScrollSpeed_ == 0 || isAutoScrolling_) return;
  isAutoScrolling_ = true;
  add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>&) { return autoScroll(); });
}

bool RowList::autoScroll() {
  if (autoScrollSpeed_ == 0 || !pointer_) {
    isAutoScrolling_ = false;
    return false;
  }
  constexpr double kFrame = 1.0 / 60;
  const double before = adjustment_->get_value();
  adjustment_->set_value(before + autoScrollSpeed_ * kFrame);
  // The list has moved below the pointer, which has not.
  const double moved = adjustment_->get_value() - before;
  if (moved != 0) {
    const auto [x, y] = *pointer_;
    dragMoved(x, y + moved);
  }
  return true;
}

}  // namespace orvel
