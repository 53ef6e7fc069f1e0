#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Base/Image.h"

namespace orvel {

// A window that a dialog belongs to. Null where a dialog takes one: it stands alone.
class DesktopWindow;

struct Alert {
  std::string messageText;
  std::string informativeText;
  // In order of importance: the first is the default, the last of several is what Escape means.
  std::vector<std::string> buttons;
  // The first button does something that cannot be undone: the last is the default then.
  bool isDestructive = false;
  ImageRef icon;
  // A text field with this text in it, secret when so marked.
  struct Field {
    std::string label;
    std::string text;
    bool isSecret = false;
  };
  std::vector<Field> fields;
  // A check box of this title.
  struct CheckBox {
    std::string title;
    bool isOn = false;
  };
  std::optional<CheckBox> suppression;
};

struct AlertAnswer {
  // The index of the chosen button. Absent when the alert was taken away without a choice (its
  // window closed, the program ends).
  std::optional<size_t> button;
  // The texts of the alert's fields.
  std::vector<std::string> fields;
  bool isSuppressionOn = false;

  bool isFirstButton() const { return button == 0u; }
};

struct OpenPanel {
  std::string title;
  bool allowsMultipleSelection = false;
  bool allowsFiles = true;
  bool allowsDirectories = false;
  // MIME types; empty: any.
  std::vector<std::string> mimeTypes;
};

struct SavePanel {
  std::string title;
  std::string proposedName;
};

// Questions to the user. Never a nested main loop: every answer comes on a later turn, exactly
// once.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual void showAlert(DesktopWindow* parent, const Alert& alert,
                         std::function<void(AlertAnswer)> answer) = 0;
  // Absent: cancelled.
  virtual void showOpenPanel(
      DesktopWindow* parent, const OpenPanel& panel,
      std::function<void(std::optional<std::vector<std::filesystem::path>>)> answer) = 0;
  virtual void showSavePanel(DesktopWindow* parent, const SavePanel& panel,
                             std::function<void(std::optional<std::filesystem::path>)> answer) = 0;
};

}  // namespace orvel
