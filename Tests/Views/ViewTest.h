#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>
#include <vector>

namespace orvel::test {

// Runs the main loop until the condition holds; returns whether it did within two seconds.
bool runUntil(const std::function<bool()>& condition);
// Runs the main loop until a window has drawn so many frames.
void runFrames(int count = 2);

void forEachController(GtkWidget* widget, const std::function<void(GtkEventController*)>& visit);
// Presses a key on the widget's own key controllers; returns whether one used it.
bool pressKey(GtkWidget* widget, guint key, GdkModifierType state = GdkModifierType(0));

// Whether assistive technology is told this: nothing but a state or a property's value as C passes
// it.
template <class Value>
bool hasState(GtkWidget* widget, GtkAccessibleState state, Value value) {
  char* difference = gtk_test_accessible_check_state(GTK_ACCESSIBLE(widget), state, value);
  g_free(difference);
  return !difference;
}
template <class Value>
bool hasProperty(GtkWidget* widget, GtkAccessibleProperty property, Value value) {
  char* difference = gtk_test_accessible_check_property(GTK_ACCESSIBLE(widget), property, value);
  g_free(difference);
  return !difference;
}

// Every widget below this one, itself first.
void forEachWidget(GtkWidget* root, const std::function<void(GtkWidget*)>& visit);
// The first of them of which the condition holds; null without one.
GtkWidget* findWidget(GtkWidget* root, const std::function<bool(GtkWidget*)>& condition);
GtkWidget* withTooltip(GtkWidget* root, const char* text);
GtkWidget* buttonOf(GtkWidget* root, const char* label);
GtkWidget* withClass(GtkWidget* root, const char* styleClass);
// Where a point of the widget lies in the other one.
graphene_point_t placeIn(GtkWidget* other, GtkWidget* widget, float x = 0, float y = 0);
// The label on screen that reads so.
GtkWidget* labelOf(GtkWidget* root, const char* text);

// The rows of the open menus below a widget.
struct MenuRow {
  std::string title;
  std::string keys;
  GtkWidget* widget = nullptr;
};
std::vector<MenuRow> menuRows(GtkWidget* root);

}  // namespace orvel::test
