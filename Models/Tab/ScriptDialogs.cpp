#include "Models/Tab/ScriptDialogs.h"

#include "Base/Texts.h"

namespace orvel {

void ScriptDialogs::show(Alert alert, Audience audience, PageQuestions::Answer answer) {
  if (audience == Audience::Absent || isSilenced_ || isLeaving_) {
    if (++unheard_ <= kMaxUnheard) return answer({});
    held_.push_back(std::move(answer));
    return isStuck_();
  }
  if (++shown_ > 1)
    alert.suppression = Alert::CheckBox{.title = _("Don’t let this page show more messages")};
  questions_.ask({.alert = std::move(alert)},
                 [this, answer = std::move(answer)](AlertAnswer given) {
                   if (given.isSuppressionOn) isSilenced_ = true;
                   answer(std::move(given));
                 });
}

void ScriptDialogs::leave() {
  isLeaving_ = true;
  questions_.withdrawAll();
  goOn();
}

void ScriptDialogs::pageDidChange() {
  shown_ = 0;
  isSilenced_ = isLeaving_ = false;
  questions_.withdrawAll();
  goOn();
}

void ScriptDialogs::goOn() {
  unheard_ = 0;
  for (const auto& answer : std::exchange(held_, {})) answer({});
}

}  // namespace orvel
