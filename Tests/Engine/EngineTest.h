#pragma once

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "Base/GLibScheduler.h"
#include "Engine/WebKitGtk/WebKitEngine.h"
#include "Tests/Kit/Eventually.h"
#include "Tests/Kit/TemporaryFolder.h"
#include "Tests/Kit/TestServer.h"

namespace orvel::test {

// Half a second of sound in a loop, made by the page,
// from an element in it.
inline constexpr const char* kSound = R"js(
{
  const rate = 8000, count = rate / 2, bytes = new DataView(new ArrayBuffer(44 + count));
  [...'RIFF....WAVEfmt '].forEach((c, i) => bytes.setUint8(i, c.charCodeAt(0)));
  [...'data'].forEach((c, i) => bytes.setUint8(36 + i, c.charCodeAt(0)));
  [[4, 36 + count], [16, 16], [24, rate], [28, rate], [40, count]].forEach(
      ([at, value]) => bytes.setUint32(at, value, true));
  [[20, 1], [22, 1], [32, 1], [34, 8]].forEach(([at, value]) => bytes.setUint16(at, value, true));
  for (let i = 0; i < count; ++i) bytes.setUint8(44 + i, 128 + 100 * Math.sin(i / 3));
  window.sound = new Audio(URL.createObjectURL(new Blob([bytes], {type: 'audio/wav'})));
  document.body.append(sound);
  sound.loop = true;
  sound.play();
}
1
)js";

// The real engine, with folders of its own, on the test server's web.
class RealEngine {
 public:
  RealEngine();
  virtual ~RealEngine();

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

struct EngineTest : testing::Test, RealEngine {};

}  // namespace orvel::test
