#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Base/Scheduler.h"
#include "Desktop/Desktop.h"
#include "Engine/Engine.h"
#include "Tests/Contract/RecordingDelegate.h"

// What every implementation of the contracts keeps. Each test runs on the fake one, which the
// model's tests stand on, and on the real one.
namespace orvel::test {

// What is at an address.
struct Site {
  // A page; one that nobody serves, that breaks off after its first bytes, or that never answers;
  // a file that no page shows.
  enum class Kind { Page, Refused, Torn, Silent, File };
  std::string title;
  Kind kind = Kind::Page;
  // It leaves a cookie.
  bool storesData = false;
};

enum class Implementation { Fake, Real };

// One of the two engines, and a web.
class EngineStage {
 public:
  virtual ~EngineStage() = default;
  virtual Engine& engine() = 0;
  virtual void put(const std::string& url, const Site& site) = 0;
  // Turns the loop until the condition holds; returns whether it did in time.
  virtual bool until(const std::function<bool()>& condition) = 0;
  // Turns the loop for a while: only to show that something does not happen.
  virtual void pass() = 0;

  // Puts the view on screen.
  virtual void show(WebView& view) = 0;
  // Puts `markup` all over the page and asks for its menu there; a fake page is told of `hit`.
  virtual void askForMenu(WebView& view, const std::string& markup, const PageHit& hit) = 0;
  // What pages do.
  virtual void hang(WebView& view) = 0;
  virtual void crash(WebView& view) = 0;
  virtual void play(WebView& view) = 0;
  virtual std::filesystem::path folder() const = 0;
};

std::unique_ptr<EngineStage> makeFakeEngineStage();
std::unique_ptr<EngineStage> makeRealEngineStage();

class EngineContract : public testing::TestWithParam<Implementation> {
 protected:
  std::shared_ptr<WebView> makeView(WebViewConfiguration configuration = {}) {
    if (!configuration.websiteDataStore) configuration.websiteDataStore = store;
    auto view = engine.makeWebView(configuration);
    delegate.attachTo(*view);
    return view;
  }
  // A view that shows the page of this address.
  std::shared_ptr<WebView> shown(const std::string& url, WebViewConfiguration configuration = {}) {
    auto view = makeView(std::move(configuration));
    go(*view, url);
    EXPECT_TRUE(until([&] { return delegate.finishes == 1; })) << url;
    delegate.log.clear();
    return view;
  }
  static void go(WebView& view, const std::string& url) { view.load({.url = *URL::parse(url)}); }
  bool until(const std::function<bool()>& condition) { return stage->until(condition); }
  ScriptResult evaluate(WebView& view, const std::string& script, const ContentWorld& world = {},
                        const std::optional<FrameInfo>& frame = {}) {
    std::optional<ScriptResult> result;
    view.evaluateJavaScript(script, world, frame, [&](ScriptResult value) { result = value; });
    EXPECT_TRUE(until([&] { return result.has_value(); })) << script;
    return result.value_or(Failure("no answer"));
  }

  const std::unique_ptr<EngineStage> stage =
      GetParam() == Implementation::Fake ? makeFakeEngineStage() : makeRealEngineStage();
  Engine& engine = stage->engine();
  const std::shared_ptr<WebsiteDataStore> store = engine.nonPersistentDataStore();
  RecordingDelegate delegate;
};

// One of the two desktops, and somebody before it.
class DesktopStage {
 public:
  virtual ~DesktopStage() = default;
  virtual Desktop desktop() = 0;
  virtual DesktopWindow& window() = 0;
  virtual bool until(const std::function<bool()>& condition) = 0;
  virtual void pass() = 0;

  // Answers the file panel on screen; absent cancels it.
  virtual void chooseFile(const std::optional<std::filesystem::path>& file) = 0;
  virtual void focusField() = 0;
  virtual void runShortOfMemory() = 0;
  // Answers the alert on screen by its button of this number.
  virtual void choose(size_t button) = 0;
  // Takes the dialog on screen away, without a choice.
  virtual void dismiss() = 0;
  // Presses and lets go, in this order: "Control_L+Tab".
  virtual void press(const std::string& keys) = 0;
  // What reached the window's own content: keys and presses of a button.
  virtual int eventsOfContent() const = 0;
  virtual void click(double x, double y) = 0;
};

std::unique_ptr<DesktopStage> makeFakeDesktopStage();
std::unique_ptr<DesktopStage> makeRealDesktopStage();

inline std::string nameOf(const testing::TestParamInfo<Implementation>& info) {
  return info.param == Implementation::Fake ? "Fake" : "Real";
}

#define ORVEL_BOTH(suite)                                                                        \
  INSTANTIATE_TEST_SUITE_P(, suite, testing::Values(Implementation::Fake, Implementation::Real), \
                           nameOf)

}  // namespace orvel::test
