#pragma once

#include <gtk/gtk.h>

#include <functional>

namespace orvel::test {

// Runs the main loop until the condition holds; answers whether it did within two seconds.
bool runUntil(const std::function<bool()>& condition);
// Runs the main loop through a few frames.
void runFrames(int count = 4);

// Presses a key on the widget's own key controllers; answers whether one used it.
bool pressKey(GtkWidget* widget, guint key, GdkModifierType state = GdkModifierType(0));

// Every widget below this one, itself first.
void forEachWidget(GtkWidget* root, const std::function<void(GtkWidget*)>& visit);

}  // namespace orvel::test
