#pragma once

#include <gtkmm/button.h>
#include <gtkmm/overlay.h>
#include <gtkmm/stack.h>

#include "DesignSystem/ProgressRing.h"
#include "Views/Downloads/DownloadsList.h"
#include "Views/Support/Panel.h"

namespace orvel {

// Opens the list of downloads. While any is under way, a ring shows how far they are together.
class DownloadsButton final : public Gtk::Button {
 public:
  // The topic outlives the button.
  explicit DownloadsButton(Downloads& downloads);

  void setPalette(const Palette& palette);

 private:
  void showProgress();

  Downloads& downloads_;
  Gtk::Stack sign_;
  Gtk::Image* resting_;
  Gtk::Overlay busy_;
  ProgressRing ring_;
  DownloadsList list_;
  Panel panel_;
  Effect follow_;
};

}  // namespace orvel
