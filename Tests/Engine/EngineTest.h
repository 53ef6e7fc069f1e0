#pragma once

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "Base/GLibScheduler.h"
#include "Engine/WebKitGtk/WebKitEngine.h"
#include "Tests/Kit/Eventually.h"
#include "Tests/Kit/TemporaryFolder.h"
#include "Tests/Kit/TestServer.h"

namespace orvel::test {

// The real engine, with folders of its own, on the test server's web.
class EngineTest : public testing::Test {
 protected:
  EngineTest();
  ~EngineTest() override;

  std::shared_ptr<WebView> makeView(WebViewConfiguration configuration = {});
  // Puts the view on screen, in a window that lives as long as the test.
  void show(WebView& view);
  // Loads and waits for the page's end; fails the test when it does not come.
  void load(WebView& view, const std::string& url);
  // The value of a script in the page's world as JSON text; empty when it threw.
  std::string evaluate(WebView& view, const std::string& script);

  // Where the engine keeps everything that reaches the disk.
  static const std::filesystem::path& engineFolder();

  TemporaryFolder folder{"engine"};
  // One of each for the whole process, as in the program: the network process reads its proxy once,
  // and the engine does not survive the end of its contexts.
  TestServer& server;
  GLibScheduler& scheduler;
  WebKitEngine* engine;
  std::shared_ptr<WebsiteDataStore> store;

 private:
  std::vector<GtkWidget*> windows_;
};

}  // namespace orvel::test
