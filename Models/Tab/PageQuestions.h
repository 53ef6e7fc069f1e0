#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Base/Observable.h"
#include "Desktop/Dialogs.h"

namespace orvel {

// What is asked within the sheet of one page. It blocks that page alone.
struct PageQuestion {
  // A page's words never stand in the form of the program's own, so that no page can put a question
  // in its name.
  enum class Voice { Page, Program };

  uint64_t id = 0;
  Voice voice = Voice::Page;
  std::vector<std::string> symbols;  // of the program's questions; may be empty
  Alert alert;
  // A page that has the keyboard keeps it: nobody has asked for the question, and a key on its way
  // to the page must not answer it.
  bool leavesKeyboard = false;
  // The button that Escape means; absent: the last one.
  std::optional<size_t> escape;

  size_t escapeButton() const {
    return escape.value_or(alert.buttons.empty() ? 0 : alert.buttons.size() - 1);
  }
  friend bool operator==(const PageQuestion& a, const PageQuestion& b) { return a.id == b.id; }
};

// The questions of one page, answered one after the other.
class PageQuestions {
 public:
  using Answer = std::function<void(AlertAnswer)>;

  // The one on screen; absent without any.
  Observable<std::optional<PageQuestion>> current;
  // Grows when the page that is asked about is to have the keyboard: the question means it then.
  Observable<int> calls = 0;

  // Gives the question its id, which is answered. `answer` is called exactly once.
  uint64_t ask(PageQuestion question, Answer answer);
  // Does nothing for a question that is no more.
  void answer(uint64_t id, AlertAnswer given);
  // Answers that no button was chosen.
  void withdraw(uint64_t id) { answer(id, {}); }
  void withdrawAll();

 private:
  struct Waiting {
    PageQuestion question;
    Answer answer;
  };
  void showNext();

  std::deque<Waiting> waiting_;
  uint64_t lastID_ = 0;
};

}  // namespace orvel
