#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "BrowserCore/Addresses/URL.h"

namespace orvel {

struct ApplicationInfo {
  // Its desktop file's id, for example "org.example.Mail.desktop".
  std::string id;
  // As people read it, in their language.
  std::string displayName;
};

// Other applications and the file manager.
class Workspace {
 public:
  virtual ~Workspace() = default;
  // The user's application for the URL's scheme, other than this one; absent without one.
  virtual std::optional<ApplicationInfo> applicationToOpen(const URL& url) const = 0;
  // Hands the URL to that application. Fails silently.
  virtual void open(const URL& url) = 0;
  // Opens the file with the user's application for its type. Tells false on a later turn when
  // there is no such application, or the file is not there.
  virtual void openFile(const std::filesystem::path& file,
                        std::function<void(bool isOpened)> answer) = 0;
  // Shows the file selected in the file manager.
  virtual void reveal(const std::filesystem::path& file) = 0;
  // This program is the user's handler of http and https.
  virtual bool isDefaultBrowser() const = 0;
  // Tells on a later turn what has come of it.
  virtual void makeDefaultBrowser(std::function<void(bool isDefault)> answer) = 0;
  // Tells the desktop that a download has come; may do nothing.
  virtual void noteDownloadFinished(const std::filesystem::path& file) = 0;
};

}  // namespace orvel
