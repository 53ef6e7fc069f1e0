#pragma once

#include <adwaita.h>

#include <array>

#include "Base/GRef.h"
#include "Desktop/Windows.h"

namespace orvel {

// A toolkit window under the contract. The window outlives this object or takes it along.
class GtkDesktopWindow : public DesktopWindow {
 public:
  explicit GtkDesktopWindow(GtkWindow* window) : window_(window) {}

  // The program draws its own window buttons; without them hiding and fading do nothing.
  void setButtons(const std::array<GtkWidget*, 3>& buttons) { buttons_ = buttons; }
  GtkWindow* native() const { return window_; }

  void present() override;
  void hide() override;
  void close() override;
  void minimize() override;
  void toggleMaximized() override;
  void toggleFullscreen() override;
  bool isActive() const override;
  bool isVisible() const override;
  bool isMinimized() const override;
  bool isFullscreen() const override;
  bool isTextEditorFocused() const override;
  void edit(EditingCommand command) override;
  WindowAppearance appearance() const override { return appearance_; }
  void setAppearance(WindowAppearance appearance) override;
  void setButtonHidden(WindowButton button, bool isHidden) override;
  void setButtonAlpha(WindowButton button, double alpha, double duration) override;

 private:
  GtkWidget* button(WindowButton button) const { return buttons_[static_cast<size_t>(button)]; }

  GtkWindow* window_;
  std::array<GtkWidget*, 3> buttons_{};
  std::array<GRef<AdwAnimation>, 3> fades_;
  WindowAppearance appearance_ = WindowAppearance::Auto;
};

}  // namespace orvel
