#include "Models/Tab/PageQuestions.h"

#include <algorithm>

namespace orvel {

uint64_t PageQuestions::ask(PageQuestion question, Answer answer) {
  const uint64_t id = question.id = ++lastID_;
  waiting_.push_back({std::move(question), std::move(answer)});
  showNext();
  return id;
}

void PageQuestions::answer(uint64_t id, AlertAnswer given) {
  const auto found =
      std::ranges::find(waiting_, id, [](const Waiting& waiting) { return waiting.question.id; });
  if (found == waiting_.end()) return;
  const Answer answer = std::move(found->answer);
  waiting_.erase(found);
  showNext();
  answer(std::move(given));
}

void PageQuestions::withdrawAll() {
  const auto all = std::exchange(waiting_, {});
  showNext();
  for (const Waiting& waiting : all) waiting.answer({});
}

void PageQuestions::showNext() {
  current = waiting_.empty() ? std::nullopt : std::optional(waiting_.front().question);
}

}  // namespace orvel
