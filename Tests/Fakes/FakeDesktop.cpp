#include "Tests/Fakes/FakeDesktop.h"

#include "BrowserCore/Text.h"

namespace orvel::test {

void FakeDesktop::showAlert(DesktopWindow* parent, const Alert& alert,
                            std::function<void(AlertAnswer)> answer) {
  alerts.push_back({parent, alert});
  if (auto given = answerAlert ? answerAlert(alert) : std::nullopt)
    scheduler_.post([answer = std::move(answer), given] { answer(*given); });
  else
    openAlerts.push_back(std::move(answer));
}

void FakeDesktop::showOpenPanel(
    DesktopWindow*, const OpenPanel& panel,
    std::function<void(std::optional<std::vector<std::filesystem::path>>)> answer) {
  openPanels.push_back(panel);
  scheduler_.post([answer = std::move(answer), files = chosenFiles] { answer(files); });
}

void FakeDesktop::showSavePanel(DesktopWindow*, const SavePanel& panel,
                                std::function<void(std::optional<std::filesystem::path>)> answer) {
  savePanels.push_back(panel);
  scheduler_.post([answer = std::move(answer), file = chosenDestination] { answer(file); });
}

void FakeDesktop::registerSpace(HotKeyModifiers, std::function<void()> pressed,
                                std::function<void(std::unique_ptr<HotKey>)> answer) {
  if (!isHotKeyTaken) hotKeyPressed = std::move(pressed);
  scheduler_.post([answer = std::move(answer), isTaken = isHotKeyTaken] {
    answer(isTaken ? nullptr : std::make_unique<HotKey>());
  });
}

Observation FakeDesktop::observe(std::function<void()> event) {
  memoryIsShort = std::move(event);
  return Observation([this] { memoryIsShort = nullptr; });
}

std::optional<ApplicationInfo> FakeDesktop::applicationToOpen(const URL& url) const {
  const auto found = applications.find(text::lowerASCII(url.scheme()));
  if (found == applications.end()) return std::nullopt;
  return found->second;
}

}  // namespace orvel::test
