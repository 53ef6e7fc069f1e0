#pragma once

#include <gtkmm/widget.h>

#include <string>

#include "DesignSystem/Palette.h"

namespace orvel {

// A sheet of paper with a folded corner that carries the ending of a file's name.
class FileSign final : public Gtk::Widget {
 public:
  FileSign();

  void setPalette(const Palette& palette);
  void setFile(const std::string& name);

 private:
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;

  Palette palette_{};
  std::string ending_;  // in upper case; empty: none that fits
  Color color_;
};

}  // namespace orvel
