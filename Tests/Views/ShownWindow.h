#pragma once

#include <gtest/gtest.h>

#include "Tests/Views/SampleStore.h"
#include "Tests/Views/ViewTest.h"
#include "Views/BrowserView.h"
#include "Views/MainWindow.h"

namespace orvel::test {

// A test with the main window on screen over the sample session.
struct ShownWindow : testing::Test {
  SampleStore sample;
  std::unique_ptr<MainWindow> window;

  void SetUp() override {
    window = std::make_unique<MainWindow>(nullptr, sample.store());
    window->present();
    sample.world.desktop.key = &window->desktopWindow();
    ASSERT_TRUE(runUntil([this] { return gtk_widget_get_mapped(GTK_WIDGET(window->native())); }));
    settle();
  }
  void settle() {
    sample.world.scheduler.settle();
    sample.showPages();
    runFrames();
  }
  BrowserStore& store() { return sample.store(); }
};

}  // namespace orvel::test
