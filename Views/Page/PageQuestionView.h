#pragma once

#include <gtkmm/box.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/entry.h>
#include <gtkmm/scrolledwindow.h>

#include "DesignSystem/SpringAnimation.h"
#include "Models/Tab/BrowserTab.h"

namespace orvel {

// The dimmed layer over a page's sheet with the question that its tab has; gone without one. A
// page's own words stand under its host, at the start; the program's in serif, centered.
class PageQuestionView final : public Gtk::Box {
 public:
  PageQuestionView();

  // Null: no tab. The question that stands there already shows at once.
  void setTab(const TabRef& tab);
  // Whether a question is on screen, which has the page's keyboard.
  bool isShown() const { return shown_.has_value(); }
  Gtk::Button* button(size_t index);

 private:
  enum class Appearing { AtOnce, Fading };
  void follow(Appearing appearing);
  void begin(const PageQuestion& question);
  void addPageHead(const PageQuestion& question);
  void addPageWords(const PageQuestion& question);
  void addProgramWords(const PageQuestion& question);
  void addFields(Gtk::Box& box, const Alert& alert);
  void addSuppression(Gtk::Box& box, const Alert& alert);
  void addButtons(Gtk::Box& box, const PageQuestion& question);
  void takeKeyboardFromPage(Appearing appearing);
  // For the question's field, or else its default button.
  void takeKeyboard();
  void answer(std::optional<size_t> button);

  TabRef tab_;
  Gtk::Box card_;
  GtkWidget* clamp_;
  std::optional<PageQuestion> shown_;
  std::vector<Gtk::Button*> buttons_;
  std::vector<Gtk::Entry*> fields_;
  Gtk::CheckButton* suppression_ = nullptr;
  SpringAnimation presence_;
  Effect follow_;
  Effect calls_;
};

}  // namespace orvel
