#pragma once

#include <gtkmm/overlay.h>

#include "DesignSystem/ChartPaper.h"

namespace orvel {

// What fills the page of a tab without an address: the program's name over a chart, and the keys
// that lead on from here.
class EmptyState final : public Gtk::Overlay {
 public:
  EmptyState();

  void setPalette(const Palette& palette) { chart_.setPalette(palette); }

 private:
  ChartPaper chart_;
};

}  // namespace orvel
