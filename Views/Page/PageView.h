#pragma once

#include <gtkmm/overlay.h>

#include "Models/Tab/BrowserTab.h"
#include "Views/Page/EmptyState.h"
#include "Views/Page/LoadingBar.h"
#include "Views/Page/PageGestures.h"
#include "Views/Page/PageQuestionView.h"
#include "Views/Support/Menu.h"

namespace orvel {

// Hosts the widget of one web view, which belongs to the view and not to this host.
class WebContainer final : public Gtk::Box {
 public:
  ~WebContainer() override;

  // Null: none.
  void host(GtkWidget* view);

 private:
  // Cleared when the view's widget dies.
  gpointer view_ = nullptr;
};

// The sheet of paper that shows a tab: its page with the loading bar, or the empty state for a tab
// without an address.
class PageView final : public Gtk::Overlay {
 public:
  PageView();

  // Null: no tab.
  void setTab(const TabRef& tab);
  const TabRef& tab() const { return tab_; }
  // Opens a menu where the page was hit.
  void showMenu(const PageHit& hit, std::vector<MenuEntry> entries);
  void setPalette(const Palette& palette);
  // Whether the tab has a page, in place of the empty state.
  bool showsPage() const { return web_.get_visible(); }
  PageQuestionView& question() { return question_; }

 private:
  void follow();

  TabRef tab_;
  Observable<bool> isSeen_ = false;
  EmptyState empty_;
  WebContainer web_;
  PageQuestionView question_;
  // Hides the white of a view that has yet to draw a page.
  Gtk::Box cover_;
  LoadingBar bar_;
  PageGestures gestures_;
  Effect page_;
};

}  // namespace orvel
