#pragma once

#include <gtkmm/box.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>

#include "DesignSystem/StyleSheet.h"
#include "Models/CommandBar/CommandBar.h"
#include "Views/CommandBar/CommandBarList.h"
#include "Views/Support/KeyTextField.h"

namespace orvel {

// The dimmed layer over the window with the command bar's card on it, while the store asks for one;
// gone otherwise. Each appearance is a new `CommandBar`.
class CommandBarView final : public Gtk::Widget {
 public:
  // The store outlives the view.
  explicit CommandBarView(BrowserStore& store);
  ~CommandBarView() override;

  ThemeRoot& theme() { return theme_; }
  // Null while none is asked for.
  CommandBar* bar() { return bar_.get(); }
  KeyTextField& field() { return field_; }
  CommandBarList& list() { return list_; }
  Gtk::Widget& card() { return card_; }

  // The pointer is at a point of the layer: a row under it is chosen, unless it was the list that
  // moved.
  void pointerMoved(double x, double y);
  // The main button goes down and up: picks a row; outside the card the bar is dismissed.
  void pressed(double x, double y);
  void released(double x, double y);

 protected:
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void size_allocate_vfunc(int width, int height, int baseline) override;

 private:
  KeyTextField::Actions fieldActions();
  void buildCard();
  void installPointer();
  void follow(const Wake& wake);
  void begin(CommandBarMode mode);
  void end();
  void showRows(const Wake& wake);
  void showSelection();
  void revealSelection();
  std::optional<size_t> rowAt(double x, double y);
  void scaleCard(int width, int height, int x, int y);

  BrowserStore& store_;
  ThemeRoot theme_;
  Gtk::Box card_;
  Gtk::Box header_;
  Gtk::Image symbol_;
  KeyTextField field_;
  Gtk::ScrolledWindow scroller_;
  CommandBarList list_;
  Gtk::Box footer_;
  std::shared_ptr<CommandBar> bar_;
  std::optional<std::pair<double, double>> pointer_;
  std::optional<size_t> pressedRow_;
  SpringAnimation presence_;
  Effect follow_;
  Effect rows_;
  Effect selection_;
};

}  // namespace orvel
