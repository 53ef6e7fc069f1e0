#pragma once

#include <gmock/gmock.h>

#include "Tests/Views/SampleStore.h"
#include "Tests/Views/ViewTest.h"
#include "Views/Window/BrowserView.h"
#include "Views/Window/MainWindow.h"

namespace orvel::test {

using testing::ElementsAre;

// A test with the main window on screen over the sample session.
struct ShownWindow : testing::Test {
  SampleStore sample;
  std::unique_ptr<MainWindow> window;

  void SetUp() override {
    window = std::make_unique<MainWindow>(nullptr, sample.store());
    window->present();
    sample.world.desktop.active = &window->desktopWindow();
    ASSERT_TRUE(runUntil([this] { return gtk_widget_get_mapped(root()); }));
    settle();
  }
  void settle() {
    sample.world.scheduler.settle();
    sample.showPages();
    runFrames();
  }
  BrowserStore& store() { return sample.store(); }
  Space& space();
  // Opens tabs that are not selected, in the active space or another.
  void openPages(int count, const std::shared_ptr<Space>& in = nullptr);
  GtkWidget* root() { return GTK_WIDGET(window->native()); }
  GtkWidget* focus() { return gtk_window_get_focus(window->native()); }

  void click(GtkWidget* widget) {
    ASSERT_NE(widget, nullptr);
    ASSERT_TRUE(gtk_widget_is_sensitive(widget));
    g_signal_emit_by_name(widget, "clicked");
    settle();
  }
  // Presses a key on the widget itself.
  bool press(Gtk::Widget& widget, guint key) {
    const bool isUsed = pressKey(widget.gobj(), key);
    settle();
    return isUsed;
  }
  // Types into a field, which reads it when the toolkit is done with it.
  void insert(KeyTextField& field, const char* text) {
    g_signal_emit_by_name(field.entry().gobj(), "insert-at-cursor", text);
    runFrames(1);
    settle();
  }
};

}  // namespace orvel::test
