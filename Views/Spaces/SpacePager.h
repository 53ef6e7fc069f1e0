#pragma once

#include <gtkmm/widget.h>

#include <list>
#include <memory>
#include <vector>

#include "DesignSystem/SpringAnimation.h"
#include "DesignSystem/StyleSheet.h"
#include "Views/Spaces/SpaceSection.h"

namespace orvel {

// The tabs of the active space and, while spaces change, of those that leave and come, side by
// side: pages in a row that is moved by the fingers or by a spring. Following the fingers places
// the pages anew and does nothing else. Each page has its own space's theme. The next page is built
// ahead, row by row while nothing else is to be done, so that a swipe begins without a halt.
class SpacePager final : public Gtk::Widget {
 public:
  // All of these outlive the pager.
  SpacePager(BrowserStore& store, SidebarDrag& drag, const Observable<ColorScheme>& scheme);
  ~SpacePager() override;

  // The active space's page.
  SpaceSection& section() { return *pageOf(active_)->section; }
  // The page of a space; null for one that is not side by side with the active one now.
  SpaceSection* sectionOf(const std::shared_ptr<Space>& space);
  // How far, in pages, the view stands from the active space's page; positive is toward the next.
  double distance() const { return view_.value() - activePlace_; }

 protected:
  void on_map() override;
  Gtk::SizeRequestMode get_request_mode_vfunc() const override;
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void size_allocate_vfunc(int width, int height, int baseline) override;

 private:
  struct Page {
    Page(BrowserStore& store, SidebarDrag& drag)
        : section(std::make_unique<SpaceSection>(store, drag)),
          theme(section->Gtk::Widget::gobj()) {}

    std::unique_ptr<SpaceSection> section;
    ThemeRoot theme;
    Effect look;
    double place = 0;  // in the row of pages
  };
  // Of a space that stands `position` pages from the active one.
  struct Place {
    std::shared_ptr<Space> space;
    int position = 0;
  };

  void follow(const Wake& wake);
  void setPages(const std::vector<Place>& places);
  void addSpare();
  void addPage(const std::shared_ptr<Space>& space);
  Page* pageOf(const std::shared_ptr<Space>& space);
  void showTheme(Page& page);
  void prepareLater();
  // Builds a little of the next page; returns whether there is more to build.
  bool prepare();

  BrowserStore& store_;
  SidebarDrag& drag_;
  const Observable<ColorScheme>& scheme_;
  std::list<Page> pages_;
  // Pages that no space shows now, kept with their rows for the next one.
  std::list<Page> spares_;
  std::shared_ptr<Space> active_;
  double activePlace_ = 0;
  SpringAnimation view_;  // the place in view
  Effect follow_;
  sigc::connection preparing_;
};

}  // namespace orvel
