#pragma once

#include <deque>
#include <optional>
#include <string>

#include "Base/Time.h"
#include "Engine/WebKitGtk/WebKitContentController.h"

namespace orvel {

// Tells which frame a navigation is for, which the engine does not say before its response: from
// the clicks that the page's frames reported, from what the program itself loads, and from
// redirects, which are the main frame's exactly when they are to the view's own address.
class NavigationClassifier {
 public:
  enum class Target { MainFrame, SubFrame, NewWindow, Unknown };
  struct Verdict {
    Target target = Target::Unknown;
    // The frame of the click; absent when no click was reported.
    std::optional<FrameInfo> source;
  };
  struct Question {
    std::string address;
    std::string viewAddress;
    bool isRedirect = false;
    bool isLoading = false;
    bool hasUserGesture = false;
    // A load by the program, in history, or a reload: always the main frame's.
    bool isHistory = false;
  };

  void noteReport(NavigationReport report, Instant now);
  void noteProgramLoad(std::string address);

  // Uses the report or load up that it is decided by.
  Verdict classify(const Question& question, Instant now);

 private:
  struct Entry {
    NavigationReport report;
    Instant time;
  };
  std::deque<Entry> reports_;
  std::optional<std::string> programLoad_;
};

}  // namespace orvel
