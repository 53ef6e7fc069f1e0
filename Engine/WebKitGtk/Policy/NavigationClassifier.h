#pragma once

#include <deque>
#include <optional>
#include <string>

#include "Base/Time.h"
#include "Engine/WebKitGtk/Scripts/WebKitContentController.h"

namespace orvel {

// Tells which frame a navigation is for, which the engine does not say before its response: from
// the clicks that the page's frames reported, from what the program itself loads, and from
// redirects, which are the main frame's exactly when they are to the view's own address. A frame
// can reload itself and step through the history, too, so that these tell nothing.
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
    // The main frame waits for an answer.
    bool isMainFrameWaiting = false;
  };

  void noteReport(NavigationReport report, Instant now);
  // A load, a reload or a step in the history that the program asked for.
  void noteProgramLoad(std::string address, Instant now);

  // Uses the report or load up that it is decided by.
  Verdict classify(const Question& question, Instant now);

 private:
  struct Entry {
    NavigationReport report;
    Instant time;
  };
  std::deque<Entry> reports_;
  struct ProgramLoad {
    std::string address;
    Instant time;
  };
  std::optional<ProgramLoad> programLoad_;
};

}  // namespace orvel
