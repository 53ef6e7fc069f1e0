#include "Tests/Views/ViewTest.h"

#include <chrono>

namespace orvel::test {

bool runUntil(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
  // Wakes the loop while nothing else does.
  const guint ticking = g_timeout_add(
      5, [](gpointer) -> gboolean { return TRUE; }, nullptr);
  bool holds = condition();
  while (!holds && std::chrono::steady_clock::now() < deadline) {
    g_main_context_iteration(nullptr, TRUE);
    holds = condition();
  }
  g_source_remove(ticking);
  return holds;
}

void runFrames(int count) {
  const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(20 * count);
  runUntil([until] { return std::chrono::steady_clock::now() >= until; });
}

bool pressKey(GtkWidget* widget, guint key, GdkModifierType state) {
  auto* controllers = gtk_widget_observe_controllers(widget);
  gboolean isUsed = FALSE;
  for (guint i = 0; i < g_list_model_get_n_items(controllers) && !isUsed; ++i) {
    auto* controller = static_cast<GObject*>(g_list_model_get_item(controllers, i));
    if (GTK_IS_EVENT_CONTROLLER_KEY(controller))
      g_signal_emit_by_name(controller, "key-pressed", key, 0, state, &isUsed);
    g_object_unref(controller);
  }
  g_object_unref(controllers);
  return isUsed != FALSE;
}

void forEachWidget(GtkWidget* root, const std::function<void(GtkWidget*)>& visit) {
  visit(root);
  for (auto* child = gtk_widget_get_first_child(root); child;
       child = gtk_widget_get_next_sibling(child))
    forEachWidget(child, visit);
}

}  // namespace orvel::test
