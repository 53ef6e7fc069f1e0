#pragma once

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/entry.h>

#include <vector>

#include "Models/Spaces/SpaceEditing.h"
#include "Views/Settings/ChoiceButton.h"
#include "Views/Spaces/ColorWell.h"

namespace orvel {

class BrowserStore;

// The form of one draft: the space that is made or edited. A chosen color or appearance shows at
// once in the whole window.
class SpaceEditor final : public Gtk::Box {
 public:
  // The store outlives the editor.
  SpaceEditor(BrowserStore& store, SpaceDraft draft);

  Gtk::Entry& name() { return name_; }
  Gtk::Button& commitButton() { return commit_; }
  // Draws anew what depends on the scheme.
  void redraw();
  // Leaves the space, or the lack of one, as it was before the draft.
  void cancel();

 private:
  bool isNew() const { return !draft_.spaceID; }
  void addField(const std::string& title, Gtk::Widget& field);
  void addName();
  void addColors();
  void addIcons();
  void addAppearance();
  void addLogins();
  void addButtons();
  void showWhetherComplete();
  void commit();

  BrowserStore& store_;
  SpaceDraft draft_;
  Gtk::Entry name_;
  std::vector<ColorWell*> wells_;
  ChoiceButton logins_;
  Gtk::Button cancel_;
  Gtk::Button commit_;
};

}  // namespace orvel
