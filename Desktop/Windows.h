#pragma once

#include "Base/EditingCommand.h"

namespace orvel {

enum class WindowAppearance { Auto, Light, Dark };
enum class WindowButton { Close, Minimize, Maximize };

// One of the program's windows as the model sees it.
class DesktopWindow {
 public:
  virtual ~DesktopWindow() = default;
  // Shows the window, above the others and with the keyboard, as far as the desktop lets it.
  virtual void present() = 0;
  virtual void hide() = 0;
  // Asks the window to close, as its close button does.
  virtual void close() = 0;
  // As its other buttons do.
  virtual void minimize() = 0;
  virtual void toggleMaximized() = 0;
  virtual void toggleFullscreen() = 0;
  // The keyboard goes to this window.
  virtual bool isActive() const = 0;
  virtual bool isVisible() const = 0;
  virtual bool isMinimized() const = 0;
  virtual bool isFullscreen() const = 0;
  // The keyboard focus is in a field where text is typed.
  virtual bool isTextEditorFocused() const = 0;
  // Acts on that field; does nothing without one.
  virtual void edit(EditingCommand command) = 0;

  // The scheme is the whole application's on this desktop; the main window decides it.
  virtual WindowAppearance appearance() const = 0;
  virtual void setAppearance(WindowAppearance appearance) = 0;

  virtual void setButtonHidden(WindowButton button, bool isHidden) = 0;
  // 0 to 1, over `duration` seconds; zero sets it at once.
  virtual void setButtonAlpha(WindowButton button, double alpha, double duration) = 0;
};

// The application among the others of the desktop.
class DesktopApplication {
 public:
  virtual ~DesktopApplication() = default;
  virtual bool isActive() const = 0;
  // Brings the program's windows to the user, as far as the desktop lets it.
  virtual void activate() = 0;
  // The window that the keyboard goes to; null when it is another application's.
  virtual DesktopWindow* activeWindow() const = 0;
  // Ends the run loop; the termination steps follow.
  virtual void terminate() = 0;
};

}  // namespace orvel
