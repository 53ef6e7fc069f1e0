#include "Views/Settings/ChoiceButton.h"

#include <gtkmm/box.h>

#include "DesignSystem/Icons.h"
#include "Views/Support/Menu.h"

namespace orvel {

ChoiceButton::ChoiceButton(std::string name, Spoken spoken)
    : name_(std::move(name)), spoken_(spoken) {
  add_css_class("choice");
  set_valign(Gtk::Align::CENTER);
  auto* content = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 8);
  title_.set_ellipsize(Pango::EllipsizeMode::END);
  title_.set_xalign(0);
  title_.set_hexpand(true);
  content->append(title_);
  auto* chevron = makeIcon("chevron.down", 10);
  chevron->add_css_class("quiet");
  content->append(*chevron);
  set_child(*content);
  // The title fills the button, and the button no more than it is given.
  set_hexpand(false);
  signal_clicked().connect([this] {
    std::vector<MenuEntry> entries;
    for (size_t i = 0; i < titles_.size(); ++i)
      entries.push_back(
          {.title = titles_[i], .perform = [this, i] { choose(i); }, .isOn = i == chosen_});
    presentMenu(*this, 0, get_height(), std::move(entries));
  });
}

void ChoiceButton::setChoices(std::vector<std::string> titles, size_t chosen) {
  titles_ = std::move(titles);
  setChosen(chosen);
}

void ChoiceButton::setChosen(size_t index) {
  chosen_ = index;
  const auto title = index < titles_.size() ? titles_[index] : std::string();
  title_.set_text(title);
  const bool isNameAlone = spoken_ == Spoken::NameAlone;
  setAccessibleLabel(*this, isNameAlone ? name_ : name_ + ": " + title);
  if (isNameAlone) setAccessibleDescription(*this, title);
}

void ChoiceButton::choose(size_t index) {
  setChosen(index);
  if (perform_) perform_(index);
}

}  // namespace orvel
