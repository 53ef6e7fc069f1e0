#pragma once

#include <adwaita.h>

#include "Base/Scheduler.h"
#include "Desktop/Desktop.h"

namespace orvel {

class GtkClipboard final : public Clipboard {
 public:
  void setText(const std::string& text) override;
  void setImage(const ImageRef& image) override;
  void getText(std::function<void(std::optional<std::string>)> answer) override;
};

// Other applications, through GIO and the portals it uses.
class GtkWorkspace final : public Workspace {
 public:
  explicit GtkWorkspace(Scheduler& scheduler) : scheduler_(scheduler) {}
  std::optional<ApplicationInfo> applicationToOpen(const URL& url) const override;
  void open(const URL& url) override;
  void openFile(const std::filesystem::path& file, std::function<void(bool)> answer) override;
  void reveal(const std::filesystem::path& file) override;
  bool isDefaultBrowser() const override;
  void makeDefaultBrowser(std::function<void(bool)> answer) override;
  void noteDownloadFinished(const std::filesystem::path& file) override;

 private:
  Scheduler& scheduler_;
};

class GtkMemoryPressure final : public MemoryPressure {
 public:
  Observation observe(std::function<void()> event) override;
};

// A desktop without system-wide keys: every key counts as taken.
class NoHotKeys final : public HotKeys {
 public:
  explicit NoHotKeys(Scheduler& scheduler) : scheduler_(scheduler) {}
  void registerSpace(ModifierKeys modifiers, std::function<void()> pressed,
                     std::function<void(std::unique_ptr<HotKey>)> answer) override;

 private:
  Scheduler& scheduler_;
};

// A desktop without a search of its own: what is handed over is forgotten.
class NoSystemSearch final : public SystemSearch {
 public:
  explicit NoSystemSearch(Scheduler& scheduler) : scheduler_(scheduler) {}
  void deleteDomain(const std::string& domain, std::function<void()> answer) override;
  void deleteItems(std::vector<std::string> identifiers, std::function<void()> answer) override;
  void index(std::vector<SearchableItem> items, std::function<void()> answer) override;

 private:
  Scheduler& scheduler_;
};

}  // namespace orvel
