#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Base/FileWriter.h"
#include "Models/Spaces/Profile.h"

namespace orvel {

// The folder that holds a page state for each tab that has one.
class PageStates {
 public:
  PageStates(FileWriter& writer, std::filesystem::path folder);

  // Writes the states of the tabs whose pages have changed since they were written.
  void writeChanged(const TabList& tabs);
  // Writes the states of all live pages too, which may have been scrolled.
  void writeAll(const TabList& tabs);
  // Removes those of the files found that belong to none of the tabs.
  void removeOthers(const std::vector<std::string>& found, const TabList& tabs);

 private:
  void write(const TabRef& tab);

  FileWriter& writer_;
  const std::filesystem::path folder_;
};

}  // namespace orvel
