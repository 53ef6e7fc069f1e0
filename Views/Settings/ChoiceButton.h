#pragma once

#include <gtkmm/button.h>
#include <gtkmm/label.h>

#include <functional>
#include <string>
#include <vector>

namespace orvel {

// A button that shows one of a few choices and opens them as a menu.
class ChoiceButton final : public Gtk::Button {
 public:
  // How assistive technology is told of it: "Name: Choice", or the name with the choice as its
  // description.
  enum class Spoken { WithChoice, NameAlone };

  // `name` says to assistive technology what is chosen.
  explicit ChoiceButton(std::string name, Spoken spoken = Spoken::WithChoice);

  // Shows the choice at `chosen`; an index past the end shows nothing.
  void setChoices(std::vector<std::string> titles, size_t chosen);
  void setChosen(size_t index);
  // A choice shows at once and runs this, also when it is the present one.
  void onChoice(std::function<void(size_t)> perform) { perform_ = std::move(perform); }

 private:
  void choose(size_t index);

  std::string name_;
  const Spoken spoken_;
  Gtk::Label title_;
  std::vector<std::string> titles_;
  size_t chosen_ = 0;
  std::function<void(size_t)> perform_;
};

}  // namespace orvel
