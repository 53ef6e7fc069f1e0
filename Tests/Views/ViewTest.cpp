#include "Tests/Views/ViewTest.h"

#include <gtest/gtest.h>

#include "Base/GRef.h"
#include "Tests/Kit/Eventually.h"

namespace orvel::test {

bool runUntil(const std::function<bool()>& condition) { return eventually(condition, 20s); }

void runFrames(int count) {
  GtkWidget* shown = nullptr;
  GList* windows = gtk_window_list_toplevels();
  for (GList* one = windows; one; one = one->next)
    if (gtk_widget_get_mapped(GTK_WIDGET(one->data))) shown = GTK_WIDGET(one->data);
  g_list_free(windows);
  if (!shown) return turnFor(20ms);
  // The window stays with its clock, whatever closes meanwhile.
  const auto clock = GRef<GdkFrameClock>::retain(gtk_widget_get_frame_clock(shown));
  int drawn = 0;
  const auto painted = g_signal_connect_swapped(
      clock.get(), "after-paint", G_CALLBACK(+[](int* frames) { ++*frames; }), &drawn);
  while (drawn < count) {
    const int before = drawn;
    gdk_frame_clock_request_phase(clock.get(), GDK_FRAME_CLOCK_PHASE_AFTER_PAINT);
    if (!eventually([&] { return drawn > before; }, 100ms)) break;  // a hidden window draws nothing
  }
  g_signal_handler_disconnect(clock.get(), painted);
}

void forEachController(GtkWidget* widget, const std::function<void(GtkEventController*)>& visit) {
  const auto controllers = GRef<GListModel>::adopt(gtk_widget_observe_controllers(widget));
  for (guint i = 0; i < g_list_model_get_n_items(controllers.get()); ++i) {
    const auto one = GRef<GObject>::adopt(G_OBJECT(g_list_model_get_item(controllers.get(), i)));
    visit(GTK_EVENT_CONTROLLER(one.get()));
  }
}

bool pressKey(GtkWidget* widget, guint key, GdkModifierType state) {
  gboolean isUsed = FALSE;
  forEachController(widget, [&](GtkEventController* one) {
    if (!isUsed && GTK_IS_EVENT_CONTROLLER_KEY(one))
      g_signal_emit_by_name(one, "key-pressed", key, 0, state, &isUsed);
  });
  return isUsed != FALSE;
}

void forEachWidget(GtkWidget* root, const std::function<void(GtkWidget*)>& visit) {
  visit(root);
  for (auto* child = gtk_widget_get_first_child(root); child;
       child = gtk_widget_get_next_sibling(child))
    forEachWidget(child, visit);
}

GtkWidget* findWidget(GtkWidget* root, const std::function<bool(GtkWidget*)>& condition) {
  GtkWidget* found = nullptr;
  forEachWidget(root, [&](GtkWidget* one) {
    if (!found && condition(one)) found = one;
  });
  return found;
}

GtkWidget* withTooltip(GtkWidget* root, const char* text) {
  return findWidget(root, [text](GtkWidget* one) {
    return g_strcmp0(gtk_widget_get_tooltip_text(one), text) == 0;
  });
}

GtkWidget* buttonOf(GtkWidget* root, const char* label) {
  return findWidget(root, [label](GtkWidget* one) {
    return GTK_IS_BUTTON(one) && g_strcmp0(gtk_button_get_label(GTK_BUTTON(one)), label) == 0;
  });
}

GtkWidget* withClass(GtkWidget* root, const char* styleClass) {
  return findWidget(
      root, [styleClass](GtkWidget* one) { return gtk_widget_has_css_class(one, styleClass); });
}

graphene_point_t placeIn(GtkWidget* other, GtkWidget* widget, float x, float y) {
  const graphene_point_t point{x, y};
  graphene_point_t place{-1, -1};
  EXPECT_TRUE(gtk_widget_compute_point(widget, other, &point, &place));
  return place;
}

GtkWidget* labelOf(GtkWidget* root, const char* text) {
  return findWidget(root, [text](GtkWidget* one) {
    return GTK_IS_LABEL(one) && gtk_widget_get_mapped(one) &&
           g_strcmp0(gtk_label_get_text(GTK_LABEL(one)), text) == 0;
  });
}

std::vector<MenuRow> menuRows(GtkWidget* root) {
  std::vector<MenuRow> rows;
  forEachWidget(root, [&](GtkWidget* one) {
    if (g_strcmp0(G_OBJECT_TYPE_NAME(one), "GtkModelButton") != 0) return;
    MenuRow row{.widget = one};
    for (auto* child = gtk_widget_get_first_child(one); child;
         child = gtk_widget_get_next_sibling(child)) {
      if (!GTK_IS_LABEL(child)) continue;
      const bool isKeys = g_strcmp0(gtk_widget_get_css_name(child), "accelerator") == 0;
      (isKeys ? row.keys : row.title) = gtk_label_get_text(GTK_LABEL(child));
    }
    rows.push_back(std::move(row));
  });
  return rows;
}

}  // namespace orvel::test
