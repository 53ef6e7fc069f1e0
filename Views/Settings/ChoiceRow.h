#pragma once

#include <gtkmm/box.h>
#include <gtkmm/togglebutton.h>

#include <functional>
#include <vector>

namespace orvel {

// A row of buttons of which one is chosen, told to assistive technology as a group of radio buttons
// or as tabs. It is one stop for the Tab key; the arrow keys, Home and End choose within it.
class ChoiceRow final : public Gtk::Box {
 public:
  enum class Kind { Radio, Tabs };

  ChoiceRow(Kind kind, const std::string& name);

  // `chosen` runs when the user chooses the button, also when it is the present one.
  void add(Gtk::ToggleButton& button, bool isChosen, std::function<void()> chosen);
  // Shows another choice.
  void setChosen(size_t index);

 private:
  struct Choice {
    Gtk::ToggleButton& button;
    std::function<void()> chosen;
  };

  void showStop(const Choice& choice);
  bool keyPressed(guint key);

  Kind kind_;
  std::vector<Choice> choices_;
};

}  // namespace orvel
