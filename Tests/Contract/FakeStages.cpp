#include "Tests/Contract/Contract.h"
#include "Tests/Fakes/FakeDesktop.h"
#include "Tests/Fakes/FakeEngine.h"
#include "Tests/Fakes/VirtualScheduler.h"
#include "Tests/Kit/TemporaryFolder.h"

namespace orvel::test {

namespace {

constexpr Duration kLimit = 10s;

bool moveUntil(VirtualScheduler& scheduler, const std::function<bool()>& condition) {
  const Instant end = scheduler.instant() + kLimit;
  for (scheduler.settle(); !condition(); scheduler.advance(10ms))
    if (scheduler.instant() > end) return false;
  return true;
}

class FakeEngineStage final : public EngineStage {
 public:
  FakeEngineStage() { engine_.runsDownloads = true; }

  Engine& engine() override { return engine_; }
  void put(const std::string& url, const Site& site) override {
    using Kind = Site::Kind;
    using Load = FakePage::Load;
    FakePage page{.title = site.title, .storesData = site.storesData};
    page.load = site.kind == Kind::Refused  ? Load::Fail
                : site.kind == Kind::Torn   ? Load::BreakOff
                : site.kind == Kind::Silent ? Load::Wait
                                            : Load::Finish;
    page.error = {.kind = LoadError::Kind::CannotConnect};
    page.canShowMIMEType = site.kind != Kind::File;
    engine_.pages[url] = page;
  }
  bool until(const std::function<bool()>& condition) override {
    return moveUntil(scheduler_, condition);
  }
  void pass() override { scheduler_.advance(1s); }
  void show(WebView& view) override {
    auto& fake = static_cast<FakeWebView&>(view);
    fake.isOnScreen = true;
    fake.place = {.width = 800, .height = 600};
  }
  void askForMenu(WebView& view, const std::string&, const PageHit& hit) override {
    static_cast<FakeWebView&>(view).askForMenu(hit);
  }
  void hang(WebView& view) override { static_cast<FakeWebView&>(view).isHung = true; }
  void crash(WebView& view) override { static_cast<FakeWebView&>(view).die(); }
  void play(WebView& view) override { static_cast<FakeWebView&>(view).play({.audio = true}); }
  std::filesystem::path folder() const override { return folder_.path; }

 private:
  const TemporaryFolder folder_{"fake-stage"};
  VirtualScheduler scheduler_;
  FakeEngine engine_{scheduler_};
};

class FakeDesktopStage final : public DesktopStage {
 public:
  FakeDesktopStage() { desktop_.active = &window_; }

  Desktop desktop() override { return desktop_.desktop(); }
  DesktopWindow& window() override { return window_; }
  bool until(const std::function<bool()>& condition) override {
    return moveUntil(scheduler_, condition);
  }
  void pass() override { scheduler_.advance(1s); }
  void chooseFile(const std::optional<std::filesystem::path>& file) override {
    desktop_.chosenDestination = file;
    desktop_.chosenFiles.reset();
    if (file) desktop_.chosenFiles = {{*file}};
  }
  void focusField() override { window_.isEditing = true; }
  void runShortOfMemory() override {
    if (desktop_.memoryIsShort) desktop_.memoryIsShort();
  }
  void choose(size_t button) override {
    AlertAnswer answer{.button = button};
    for (const auto& field : desktop_.alerts.back().alert.fields)
      answer.fields.push_back(field.text);
    desktop_.openAlerts.back()(answer);
  }
  void dismiss() override { desktop_.openAlerts.back()({}); }
  void press(const std::string& keys) override {
    ModifierKeys held;
    for (size_t at = 0; at <= keys.size(); at = std::min(keys.find('+', at), keys.size()) + 1) {
      const std::string key = keys.substr(at, keys.find('+', at) - at);
      if (key == "Control_L") held.control = true;
      if (key == "Control_L") {
        desktop_.events.offer(window_, ModifiersChanged{held});
        continue;
      }
      const KeyDown down{key == "Tab"      ? KeyDown::Key::Tab
                         : key == "Escape" ? KeyDown::Key::Escape
                                           : KeyDown::Key::Other,
                         held};
      if (desktop_.events.offer(window_, down) == EventUse::PassedOn) ++eventsOfContent_;
    }
    if (held != ModifierKeys()) desktop_.events.offer(window_, ModifiersChanged{});
  }
  void click(double x, double y) override {
    if (desktop_.events.offer(window_, MouseDown{.x = x, .y = y}) == EventUse::PassedOn)
      ++eventsOfContent_;
  }
  int eventsOfContent() const override { return eventsOfContent_; }

 private:
  VirtualScheduler scheduler_;
  FakeDesktop desktop_{scheduler_};
  FakeWindow window_;
  int eventsOfContent_ = 0;
};

}  // namespace

std::unique_ptr<EngineStage> makeFakeEngineStage() { return std::make_unique<FakeEngineStage>(); }
std::unique_ptr<DesktopStage> makeFakeDesktopStage() {
  return std::make_unique<FakeDesktopStage>();
}

}  // namespace orvel::test
