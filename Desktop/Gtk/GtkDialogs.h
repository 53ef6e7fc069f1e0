#pragma once

#include "Desktop/Dialogs.h"

namespace orvel {

// Questions as the desktop asks them: message dialogs, and file panels through the portal where the
// desktop has one.
class GtkDialogs final : public Dialogs {
 public:
  void showAlert(DesktopWindow* parent, const Alert& alert,
                 std::function<void(AlertAnswer)> answer) override;
  void showOpenPanel(
      DesktopWindow* parent, const OpenPanel& panel,
      std::function<void(std::optional<std::vector<std::filesystem::path>>)> answer) override;
  void showSavePanel(DesktopWindow* parent, const SavePanel& panel,
                     std::function<void(std::optional<std::filesystem::path>)> answer) override;
};

}  // namespace orvel
