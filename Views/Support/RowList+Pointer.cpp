#include <gtkmm/eventcontrollermotion.h>

#include "Views/Support/RowList.h"

// Which row the pointer is over. The list keeps account of it itself: the toolkit tells of a
// pointer that moves, and not of rows that come to lie below one at rest.
namespace orvel {

namespace {

// What the toolkit takes the pointer to be over.
GtkWidget* pointedWidget(GtkWidget* widget) {
  for (auto* child = gtk_widget_get_last_child(widget); child;
       child = gtk_widget_get_prev_sibling(child))
    if (gtk_widget_get_mapped(child) &&
        (gtk_widget_get_state_flags(child) & GTK_STATE_FLAG_PRELIGHT) != 0)
      return pointedWidget(child);
  return widget;
}

}  // namespace

void RowList::followPointer() {
  auto motion = Gtk::EventControllerMotion::create();
  motion->signal_enter().connect(sigc::mem_fun(*this, &RowList::pointerMoved));
  motion->signal_motion().connect(sigc::mem_fun(*this, &RowList::pointerMoved));
  motion->signal_leave().connect([this] {
    resting_.reset();
    updatePointed();
  });
  add_controller(motion);
}

// A window that loses the keyboard to a dialog hears nothing of the pointer's leaving.
void RowList::followWindow() {
  auto* root = gtk_widget_get_root(gobj());
  if (!GTK_IS_WINDOW(root)) return;
  window_ = g_signal_connect(root, "notify::is-active",
                             G_CALLBACK(+[](GtkWindow* window, GParamSpec*, RowList* self) {
                               if (gtk_window_is_active(window)) return;
                               self->resting_.reset();
                               self->updatePointed();
                             }),
                             this);
}

void RowList::pointerMoved(double x, double y) {
  auto* root = gtk_widget_get_root(gobj());
  if (!root) return;
  resting_.emplace();
  gtk_widget_translate_coordinates(gobj(), GTK_WIDGET(root), x, y, &resting_->first,
                                   &resting_->second);
  updatePointed();
}

void RowList::updatePointed() {
  std::optional<SidebarRow::Key> pointed;
  auto* root = gtk_widget_get_root(gobj());
  double x = 0;
  double y = 0;
  if (resting_ && root &&
      gtk_widget_translate_coordinates(GTK_WIDGET(root), gobj(), resting_->first, resting_->second,
                                       &x, &y) &&
      y < layout_.totalHeight())
    if (const auto row = layout_.rowAt(y)) pointed = rows_[*row].key;
  const auto former = std::exchange(pointed_, pointed);
  if (auto* row = former && former != pointed ? widgetFor(*former) : nullptr)
    row->setPointed(false);
  // Again, too: a row that was bound anew has forgotten it.
  if (auto* row = pointed ? widgetFor(*pointed) : nullptr) row->setPointed(true);
}

// Once the frame that lays out the rows is done.
void RowList::pickLater() {
  auto* clock = gtk_widget_get_frame_clock(gobj());
  if (picking_ || !clock) return;
  picking_ =
      g_signal_connect(clock, "after-paint", G_CALLBACK(+[](GdkFrameClock* frames, RowList* self) {
                         g_signal_handler_disconnect(frames, std::exchange(self->picking_, 0));
                         self->pickAnew();
                       }),
                       this);
}

// A press goes to what the pointer was over when it last moved, which may be elsewhere by now. The
// toolkit looks again only when that leaves the screen: so it does, for a moment. What has the
// pointer's place within it gives way to the ground first.
void RowList::pickAnew() {
  constexpr int kMaxSteps = 2;
  auto* root = gtk_widget_get_root(gobj());
  for (int step = 0; step < kMaxSteps && resting_ && root; ++step) {
    const auto [x, y] = *resting_;
    auto* target = pointedWidget(gobj());
    const bool isHeld = (gtk_widget_get_state_flags(target) & GTK_STATE_FLAG_ACTIVE) != 0;
    if (target == gobj() || isHeld ||
        target == gtk_widget_pick(GTK_WIDGET(root), x, y, GTK_PICK_DEFAULT))
      return;
    gtk_widget_set_child_visible(target, FALSE);
    gtk_widget_set_child_visible(target, TRUE);
  }
}

void RowList::on_unrealize() {
  if (auto* clock = gtk_widget_get_frame_clock(gobj()); clock && picking_)
    g_signal_handler_disconnect(clock, std::exchange(picking_, 0));
  if (const auto handler = std::exchange(window_, 0))
    g_signal_handler_disconnect(gtk_widget_get_root(gobj()), handler);
  Gtk::Widget::on_unrealize();
}

}  // namespace orvel
