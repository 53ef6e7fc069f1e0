#pragma once

#include <vector>

#include "Models/Tab/PageQuestions.h"

namespace orvel {

// The dialogs of one page's scripts. From the second on the user may silence the page, and one that
// goes on without end is held, so that it cannot take the processor or the user's patience.
class ScriptDialogs {
 public:
  // `isStuck` is called when a page has asked very often without being heard; what it asks waits
  // until `goOn`.
  ScriptDialogs(PageQuestions& questions, std::function<void()> isStuck)
      : questions_(questions), isStuck_(std::move(isStuck)) {}

  enum class Audience { Present, Absent };
  // Nobody sees the dialog of an absent audience or a silenced page: no button was chosen.
  void show(Alert alert, Audience audience, PageQuestions::Answer answer);
  // The page is being left: nothing more is heard of it, until it stays after all.
  void leave();
  void stay() { isLeaving_ = false; }
  // Another page is there.
  void pageDidChange();
  // Answers what was held.
  void goOn();

 private:
  // So many unheard dialogs are no accident.
  static constexpr int kMaxUnheard = 50;

  PageQuestions& questions_;
  const std::function<void()> isStuck_;
  int shown_ = 0;
  int unheard_ = 0;
  bool isSilenced_ = false;
  bool isLeaving_ = false;
  // A page waits for each dialog's answer, but the windows that it opened ask by themselves.
  std::vector<PageQuestions::Answer> held_;
};

}  // namespace orvel
