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
  // `name` says to assistive technology what is chosen.
  explicit ChoiceButton(std::string name);

  // Shows the choice at `chosen`; an index past the end shows nothing.
  void setChoices(std::vector<std::string> titles, size_t chosen);
  void setChosen(size_t index);
  // A choice shows at once and runs this, also when it is the present one.
  void onChoice(std::function<void(size_t)> perform) { perform_ = std::move(perform); }

 private:
  void choose(size_t index);

  std::string name_;
  Gtk::Label title_;
  std::vector<std::string> titles_;
  size_t chosen_ = 0;
  std::function<void(size_t)> perform_;
};

}  // namespace orvel
