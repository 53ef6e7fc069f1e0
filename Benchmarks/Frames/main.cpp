// What a frame of the sidebar costs the main thread, on the scripted engine: from the frame's
// beginning to the end of layout, with the change of the model that the frame shows, and the
// recording of what is to be drawn. The drawing itself is the renderer's and is not counted, nor is
// the time in which another process has the core.
//
//   scripts/with-display build/release/bin/bench-frames

#include <adwaita.h>
#include <fmt/format.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/viewport.h>
#include <gtkmm/window.h>

#include <algorithm>
#include <chrono>
#include <cmath>

#include "DesignSystem/StyleSheet.h"
#include "Models/Spaces/SpaceSwipe.h"
#include "Models/Windows/Toasts.h"
#include "Tests/Kit/Publish.h"
#include "Tests/Models/World.h"
#include "Views/Window/BrowserView.h"
#include "Views/Window/MainWindow.h"

namespace orvel::test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kFrames = 600;
constexpr int kWarmUp = 60;
constexpr double kFrameTime = 1.0 / 60;

// The main thread's own time, in milliseconds.
double threadTime() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// Drives a window frame by frame and keeps the time that each took.
class Frames {
 public:
  explicit Frames(GtkWindow* window)
      : window_(GTK_WIDGET(window)), clock_(gtk_widget_get_frame_clock(window_)) {}

  // `change` gets the number of the frame and makes what is new in it. The first frames, in which
  // everything is met for the first time, are not kept.
  std::vector<double> run(const std::function<void(int)>& change) {
    change_ = &change;
    const gulong handlers[] = {
        g_signal_connect_swapped(clock_, "before-paint",
                                 G_CALLBACK(+[](Frames* self) { self->begin_ = threadTime(); }),
                                 this),
        g_signal_connect_swapped(clock_, "update",
                                 G_CALLBACK(+[](Frames* self) { self->update(); }), this),
        g_signal_connect_data(clock_, "layout",
                              G_CALLBACK(+[](GdkFrameClock*, Frames* self) { self->laidOut(); }),
                              this, nullptr, G_CONNECT_AFTER)};
    gdk_frame_clock_begin_updating(clock_);
    while (count_ < kFrames + kWarmUp) g_main_context_iteration(nullptr, TRUE);
    gdk_frame_clock_end_updating(clock_);
    for (const gulong handler : handlers) g_signal_handler_disconnect(clock_, handler);
    return {times_.begin() + kWarmUp, times_.end()};
  }

 private:
  void update() {
    (*change_)(count_);
    // Also where there is nothing to lay out the frame counts.
    gdk_frame_clock_request_phase(clock_, GDK_FRAME_CLOCK_PHASE_LAYOUT);
  }
  void laidOut() {
    auto* content = gtk_widget_get_first_child(window_);
    auto* snapshot = gtk_snapshot_new();
    gtk_widget_snapshot_child(window_, content, snapshot);
    times_.push_back(threadTime() - begin_);
    if (auto* node = gtk_snapshot_free_to_node(snapshot)) gsk_render_node_unref(node);
    ++count_;
  }

  GtkWidget* window_;
  GdkFrameClock* clock_;
  const std::function<void(int)>* change_ = nullptr;
  double begin_ = 0;
  int count_ = 0;
  std::vector<double> times_;
};

void print(std::string_view name, std::vector<double> times) {
  std::ranges::sort(times);
  const auto at = [&](double share) {
    return times[std::min(times.size() - 1,
                          static_cast<size_t>(share * static_cast<double>(times.size())))];
  };
  fmt::print("{:<44} {:>8.2f} {:>8.2f} {:>8.2f}\n", name, at(0.5), at(0.99), times.back());
}

void waitUntilMapped(GtkWidget* widget) {
  while (!gtk_widget_get_mapped(widget)) g_main_context_iteration(nullptr, TRUE);
  for (const auto end = Clock::now() + std::chrono::milliseconds(500); Clock::now() < end;)
    g_main_context_iteration(nullptr, FALSE);
}

GObject* controllerOf(GtkWidget* widget, GType type) {
  auto* controllers = gtk_widget_observe_controllers(widget);
  GObject* found = nullptr;
  for (guint i = 0; i < g_list_model_get_n_items(controllers); ++i) {
    auto* one = static_cast<GObject*>(g_list_model_get_item(controllers, i));
    if (G_TYPE_CHECK_INSTANCE_TYPE(one, type)) found = one;
    g_object_unref(one);
  }
  g_object_unref(controllers);
  return found;
}

// The main window over spaces with as many tabs each.
struct Browser {
  World world;
  std::unique_ptr<MainWindow> window;

  Browser(int spaces, int tabs) {
    world.launch();
    auto& store = *world.store;
    const auto first = store.activeSpace();
    auto list = store.spaces.peek();
    for (int i = 1; i < spaces; ++i)
      list.push_back(std::make_shared<Space>(UUID::random(), first->profile,
                                             "Space " + std::to_string(i), "leaf.fill", 0.15 * i));
    store.setSpaces(list);
    for (const auto& space : list) {
      for (int i = 0; i < tabs; ++i) {
        const auto number = std::to_string(i);
        const auto tab = store.openTab(URL::parse("https://www.example" + number + ".org/"),
                                       {.in = space, .select = false});
        tab->title = "An article that somebody keeps, number " + number;
      }
      space->selectedTabID = std::nullopt;
    }
    test::publish(store.toasts.toast, std::nullopt);
    world.scheduler.settle();
    world.desktop.isMotionOn = true;
    window = std::make_unique<MainWindow>(nullptr, store);
    window->present();
    waitUntilMapped(GTK_WIDGET(window->native()));
  }

  BrowserStore& store() { return *world.store; }
  RowList& list() { return window->view().sidebar().section().list(); }
  void step() { world.scheduler.advance(std::chrono::microseconds(16'667)); }
  std::vector<double> run(const std::function<void(int)>& change) {
    return Frames(window->native()).run([&](int frame) {
      change(frame);
      step();
    });
  }
};

// A hand that swipes on every second, half of it with the fingers down.
void swipe() {
  Browser browser(3, 300);
  auto& monitor = *browser.store().spaceSwipe;
  constexpr int kGesture = 60;
  constexpr int kFingersDown = 30;
  print("swipe, 3 spaces of 300 tabs", browser.run([&](int frame) {
    const int at = frame % kGesture;
    const bool isForward = frame / kGesture % 4 < 2;
    using Phase = ScrollEvent::Phase;
    const auto phase = at == 0 ? Phase::Began : at < kFingersDown ? Phase::Changed : Phase::Ended;
    if (at > kFingersDown) return;
    monitor.handle({.phase = phase,
                    .deltaX = phase == Phase::Changed ? (isForward ? -6.0 : 6.0) : 0,
                    .timestamp = frame * kFrameTime,
                    .pointerX = 100});
  }));
}

// What the list does while a tab is held over it: the gap follows the pointer from row to row.
void drag() {
  Browser browser(1, 300);
  auto& list = browser.list();
  const auto row = std::ranges::find(list.rows(), SidebarRow::Kind::Tab,
                                     [](const SidebarRow& one) { return one.key.kind; });
  auto* held = list.widgetFor(row->key)->Gtk::Widget::gobj();
  GdkContentProvider* content = nullptr;
  g_signal_emit_by_name(controllerOf(held, GTK_TYPE_DRAG_SOURCE), "prepare", 0.0, 0.0, &content);
  g_object_unref(content);
  auto* target = controllerOf(list.gobj(), GTK_TYPE_DROP_TARGET_ASYNC);
  print("drag of a tab among 300", browser.run([&](int frame) {
    // Up and down over twelve rows, a row in eight frames.
    const double way = std::abs(frame % 192 - 96) * 4.0;
    GdkDragAction action{};
    g_signal_emit_by_name(target, "drag-motion", nullptr, 120.0, 120 + way, &action);
  }));
}

void scroll() {
  Browser browser(1, 2000);
  auto adjustment = gtk_scrolled_window_get_vadjustment(
      GTK_SCROLLED_WINDOW(browser.window->view().sidebar().section().gobj()));
  constexpr double kSpeed = 24;  // pixels a frame
  print("scroll of 2,000 rows", browser.run([&](int frame) {
    const int turn = frame % 600;
    gtk_adjustment_set_value(adjustment, kSpeed * (turn < 300 ? turn : 600 - turn));
  }));
}

// The same list with a label for a row, and nothing around it.
class BareRow final : public RowWidget {
 public:
  BareRow() : RowWidget(0) { append(label_); }
  void bind(const SidebarRow& row) override {
    label_.set_text("An article that somebody keeps, number " + std::to_string(row.key.ordinal));
  }
  void unbind() override {}

 private:
  Gtk::Label label_;
};

struct BareList : RowList::Delegate {
  std::unique_ptr<RowWidget> makeRow(SidebarRow::Kind) override {
    return std::make_unique<BareRow>();
  }
  std::optional<RowDrop> dropAt(const RowPoint&) override { return std::nullopt; }
  bool drop(const RowPoint&) override { return false; }
};

void scrollBare() {
  BareList rows;
  Gtk::Window window;
  Gtk::ScrolledWindow scroller;
  RowList list(rows, "Rows", "application/x-none");
  auto* viewport =
      Gtk::make_managed<Gtk::Viewport>(scroller.get_hadjustment(), scroller.get_vadjustment());
  viewport->set_child(list);
  scroller.set_child(*viewport);
  list.setAdjustment(scroller.get_vadjustment());
  std::vector<SidebarRow> values;
  for (uint32_t i = 0; i < 2000; ++i)
    values.push_back({.key = {.kind = SidebarRow::Kind::Tab, .ordinal = i}});
  list.setRows(values);
  window.set_default_size(248, 700);
  window.set_child(scroller);
  window.present();
  waitUntilMapped(window.Gtk::Widget::gobj());
  print("scroll of a bare list", Frames(window.gobj()).run([&](int frame) {
    const int turn = frame % 600;
    scroller.get_vadjustment()->set_value(24.0 * (turn < 300 ? turn : 600 - turn));
  }));
  window.unset_child();
  scroller.unset_child();
}

}  // namespace
}  // namespace orvel::test

int main() {
  adw_init();
  orvel::StyleSheet::load(std::filesystem::path(ORVEL_BUILD_DIR) / "share/orvel");
  fmt::print("{:<44} {:>8} {:>8} {:>8}\n", "milliseconds a frame", "median", "99%", "worst");
  orvel::test::swipe();
  orvel::test::drag();
  orvel::test::scroll();
  orvel::test::scrollBare();
}
