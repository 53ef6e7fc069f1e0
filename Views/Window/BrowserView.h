#pragma once

#include <gtkmm/windowhandle.h>

#include "DesignSystem/StockColors.h"
#include "Views/CommandBar/CommandBarView.h"
#include "Views/Page/FindBar.h"
#include "Views/Page/PageView.h"
#include "Views/Sidebar/SidebarResizeHandle.h"
#include "Views/Sidebar/SidebarView.h"
#include "Views/Spaces/SpaceSheet.h"
#include "Views/Window/ToastView.h"
#include "Views/Window/WindowLayer.h"

namespace orvel {

// The root of the main window: the backdrop, the sidebar and the page, and what stands over them.
// It reads the store and decides nothing.
class BrowserView final : public Gtk::Widget {
 public:
  // The store outlives the view.
  explicit BrowserView(BrowserStore& store);
  ~BrowserView() override;

  SidebarView& sidebar() { return sidebar_; }
  PageView& page() { return page_; }
  CommandBarView& commandBar() { return commandBar_; }
  FindBar& findBar() { return findBar_; }
  SpaceSheet& sheet() { return sheet_; }
  // The scheme in force, followed.
  const Observable<ColorScheme>& scheme() const { return scheme_; }
  // The keyboard goes from the sidebar to the page, or back.
  void switchRegion();

 protected:
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void size_allocate_vfunc(int width, int height, int baseline) override;

 private:
  // Where the sidebar stands: beside the page, over it, or nowhere.
  enum class Placement { Docked, Floating, Hidden };
  Placement placement() const;
  // The point of the view lies on one of the window's own buttons.
  bool isWindowButton(double x, double y);
  std::vector<WindowLayer> makeLayers();
  void place(Gtk::Widget& widget, const LayerArea& area);
  WindowRoom roomOf(double width, double height) const;
  LayerArea sidebarArea(const WindowRoom& room) const;
  LayerArea findBarArea(const WindowRoom& room) const;
  LayerArea toastArea(const WindowRoom& room);
  void followSidebar(const Wake& wake);
  void followTheme();
  void followBackdrop(const Wake& wake);
  void followPage();
  void followFullscreen();
  void followLayers();
  // Reports the pointer over `widget` as a wish to see the hidden sidebar.
  void watchPeeking(Gtk::Widget& widget);

  BrowserStore& store_;
  Observable<ColorScheme> scheme_;
  BlendedGradient backdrop_;
  Gtk::Box content_;
  ThemeRoot contentTheme_;
  StockColors stockColors_;
  PageView page_;
  Gtk::WindowHandle upperStrip_;
  SidebarView sidebar_;
  SidebarResizeHandle handle_;
  ThemeRoot handleTheme_;
  Gtk::Box edge_;
  FindBar findBar_;
  CommandBarView commandBar_;
  ToastView toast_;
  SpaceSheet sheet_;
  const std::vector<WindowLayer> layers_;  // from the bottom to the top
  bool isSidebarVisible_ = true;
  // An element of the page has the whole window.
  bool isPageAlone_ = false;
  SpringAnimation docked_;
  SpringAnimation floating_;
  gulong schemeHandler_ = 0;
  Effect sidebarEffect_;
  Effect widthEffect_;
  Effect themeEffect_;
  Effect backdropEffect_;
  Effect pageEffect_;
  Effect fullscreenEffect_;
  Effect layersEffect_;
};

}  // namespace orvel
