#pragma once

#include <gtkmm/box.h>
#include <gtkmm/label.h>

#include "DesignSystem/SiteIcon.h"
#include "Models/CommandBar/Suggestion.h"

namespace orvel {

// What a row of the command bar's list shows, taken out of the model.
struct SuggestionRowContent {
  enum class Kind { Plain, Answer, Command };

  std::string id;
  Kind kind = Kind::Plain;
  SuggestionPresentation shown;
  ImageRef siteIcon;  // of a tab; null for a tab without one

  friend bool operator==(const SuggestionRowContent&, const SuggestionRowContent&) = default;
};

// Reads a suggestion, and its tab where it has one, in the running effect.
[[nodiscard]] SuggestionRowContent contentOf(const Suggestion& suggestion, SearchEngine engine);

// One row: icon, title, where it leads, and when chosen what picking it does.
class SuggestionRow final : public Gtk::Box {
 public:
  SuggestionRow();

  // Does nothing for the content that is shown already.
  void show(const SuggestionRowContent& content);
  void setSelected(bool isSelected);

 private:
  void showIcon();
  void showTexts();

  SuggestionRowContent content_;
  Gtk::Image* symbol_;
  SiteIcon site_;
  Gtk::Box texts_;
  Gtk::Label title_;
  Gtk::Label subtitle_;
  Gtk::Label action_;
};

}  // namespace orvel
