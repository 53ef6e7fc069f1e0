#pragma once

#include <map>
#include <string>
#include <vector>

#include "BrowserCore/Text/Text.h"
#include "Desktop/Desktop.h"

// A desktop that writes down what it was asked and answers as the test says.
namespace orvel::test {

class FakeWindow final : public DesktopWindow {
 public:
  void present() override {
    isShown = isActiveWindow = true;
    ++presentCount;
  }
  void hide() override { isShown = isActiveWindow = false; }
  void close() override {
    ++closeCount;
    isShown = isActiveWindow = false;
  }
  void minimize() override { ++minimizeCount; }
  void toggleMaximized() override {}
  void toggleFullscreen() override { isFull = !isFull; }
  void edit(EditingCommand command) override { edits.push_back(command); }
  bool isActive() const override { return isActiveWindow; }
  bool isVisible() const override { return isShown; }
  bool isMinimized() const override { return false; }
  bool isFullscreen() const override { return isFull; }
  bool isTextEditorFocused() const override { return isEditing; }
  WindowAppearance appearance() const override { return current; }
  void setAppearance(WindowAppearance appearance) override { current = appearance; }
  void setButtonHidden(WindowButton button, bool isHidden) override { hidden[button] = isHidden; }
  void setButtonAlpha(WindowButton, double, double) override {}

  bool isShown = false;
  bool isActiveWindow = false;
  bool isEditing = false;
  int presentCount = 0;
  int closeCount = 0;
  int minimizeCount = 0;
  bool isFull = false;
  std::vector<EditingCommand> edits;
  WindowAppearance current = WindowAppearance::Auto;
  std::map<WindowButton, bool> hidden;
};

// All services of a desktop in one object; `desktop()` is what the model gets.
class FakeDesktop final : public DesktopApplication,
                          public Dialogs,
                          public HotKeys,
                          public MemoryPressure,
                          public Clipboard,
                          public SystemSearch,
                          public Workspace {
 public:
  explicit FakeDesktop(Scheduler& scheduler)
      : animator(scheduler, [this] { return isMotionOn; }), scheduler_(scheduler) {}

  Desktop desktop() { return {animator, *this, *this, *this, events, *this, *this, *this, *this}; }

  // Application
  bool isActive() const override { return true; }
  void activate() override {}
  DesktopWindow* activeWindow() const override { return active; }
  void terminate() override { ++terminateCount; }

  // Dialogs
  void showAlert(DesktopWindow* parent, const Alert& alert,
                 std::function<void(AlertAnswer)> answer) override {
    alerts.push_back({parent, alert});
    if (auto given = answerAlert ? answerAlert(alert) : std::nullopt)
      scheduler_.post([answer = std::move(answer), given] { answer(*given); });
    else
      openAlerts.push_back(std::move(answer));
  }
  void showOpenPanel(
      DesktopWindow*, const OpenPanel& panel,
      std::function<void(std::optional<std::vector<std::filesystem::path>>)> answer) override {
    openPanels.push_back(panel);
    scheduler_.post([this, answer = std::move(answer)] { answer(chosenFiles); });
  }
  void showSavePanel(DesktopWindow*, const SavePanel& panel,
                     std::function<void(std::optional<std::filesystem::path>)> answer) override {
    savePanels.push_back(panel);
    scheduler_.post([this, answer = std::move(answer)] { answer(chosenDestination); });
  }

  // Hot keys
  void registerSpace(ModifierKeys, std::function<void()> pressed,
                     std::function<void(std::unique_ptr<HotKey>)> answer) override {
    if (!isHotKeyTaken) hotKeyPressed = std::move(pressed);
    scheduler_.post([answer = std::move(answer), isTaken = isHotKeyTaken] {
      answer(isTaken ? nullptr : std::make_unique<HotKey>());
    });
  }

  // Memory
  Observation observe(std::function<void()> event) override {
    memoryIsShort = std::move(event);
    return Observation([this] { memoryIsShort = nullptr; });
  }

  // Clipboard
  void setText(const std::string& text) override {
    clipboardText = text;
    clipboardImage = nullptr;
  }
  void setImage(const ImageRef& image) override {
    clipboardImage = image;
    clipboardText.reset();
  }
  void getText(std::function<void(std::optional<std::string>)> answer) override {
    scheduler_.post([answer = std::move(answer), text = clipboardText] { answer(text); });
  }

  // Search
  void deleteDomain(const std::string&, std::function<void()> answer) override {
    scheduler_.post(std::move(answer));
  }
  void deleteItems(std::vector<std::string>, std::function<void()> answer) override {
    scheduler_.post(std::move(answer));
  }
  void index(std::vector<SearchableItem>, std::function<void()> answer) override {
    scheduler_.post(std::move(answer));
  }

  // Workspace
  std::optional<ApplicationInfo> applicationToOpen(const URL& url) const override {
    const auto found = applications.find(text::lowerASCII(url.scheme()));
    if (found == applications.end()) return std::nullopt;
    return found->second;
  }
  void open(const URL& url) override { opened.push_back(url); }
  void openFile(const std::filesystem::path&, std::function<void(bool)> answer) override {
    scheduler_.post([answer = std::move(answer)] { answer(true); });
  }
  void reveal(const std::filesystem::path&) override {}
  bool isDefaultBrowser() const override { return isDefault; }
  void makeDefaultBrowser(std::function<void(bool)> answer) override {
    isDefault = isInstalled;
    scheduler_.post([answer = std::move(answer), isDefault = isDefault] { answer(isDefault); });
  }
  void noteDownloadFinished(const std::filesystem::path& file) override {
    finishedDownloads.push_back(file);
  }

  Animator animator;
  EventMonitors events;
  bool isMotionOn = false;
  int terminateCount = 0;
  bool isInstalled = true;  // or else the program cannot be the default browser
  bool isDefault = false;
  DesktopWindow* active = nullptr;

  struct ShownAlert {
    DesktopWindow* parent;
    Alert alert;
  };
  std::vector<ShownAlert> alerts;
  // Answers each alert; absent leaves it open, to be answered by the test with `openAlerts`.
  std::function<std::optional<AlertAnswer>(const Alert&)> answerAlert;
  std::vector<std::function<void(AlertAnswer)>> openAlerts;
  std::vector<OpenPanel> openPanels;
  std::optional<std::vector<std::filesystem::path>> chosenFiles;
  std::vector<SavePanel> savePanels;
  std::optional<std::filesystem::path> chosenDestination;

  bool isHotKeyTaken = false;
  std::function<void()> hotKeyPressed;
  std::function<void()> memoryIsShort;
  std::optional<std::string> clipboardText;
  ImageRef clipboardImage;
  // Applications by scheme.
  std::map<std::string, ApplicationInfo> applications;
  std::vector<URL> opened;
  std::vector<std::filesystem::path> finishedDownloads;

 private:
  Scheduler& scheduler_;
};

}  // namespace orvel::test
