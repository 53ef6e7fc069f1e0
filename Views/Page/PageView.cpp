#include "Views/Page/PageView.h"

#include "Engine/WebView.h"
#include "Views/Window/Keyboard.h"

namespace orvel {

WebContainer::~WebContainer() { host(nullptr); }

void WebContainer::host(GtkWidget* view) {
  if (view == view_ && (!view || gtk_widget_get_parent(view) == Gtk::Widget::gobj())) return;
  if (view_) {
    auto* former = GTK_WIDGET(view_);
    g_object_remove_weak_pointer(G_OBJECT(former), &view_);
    if (gtk_widget_get_parent(former) == Gtk::Widget::gobj()) {
      releaseKeyboard(former);
      gtk_box_remove(gobj(), former);
    }
  }
  view_ = view;
  if (!view) return;
  g_object_add_weak_pointer(G_OBJECT(view), &view_);
  gtk_widget_set_hexpand(view, TRUE);
  gtk_widget_set_vexpand(view, TRUE);
  gtk_box_append(gobj(), view);
}

PageView::PageView() : gestures_(web_, [this] { return tab_; }) {
  add_css_class("sheet");
  set_overflow(Gtk::Overflow::HIDDEN);
  auto* layers = Gtk::make_managed<Gtk::Overlay>();
  layers->set_child(empty_);
  layers->add_overlay(web_);
  set_child(*layers);
  cover_.add_css_class("cover");
  cover_.set_can_target(false);
  add_overlay(cover_);
  add_overlay(question_);
  add_overlay(bar_);
  signal_map().connect([this] { untracked([this] { isSeen_ = true; }); });
  signal_unmap().connect([this] { untracked([this] { isSeen_ = false; }); });
  setTab(nullptr);
}

void PageView::setTab(const TabRef& tab) {
  tab_ = tab;
  bar_.setTab(tab);
  page_ = effect([this] { follow(); });
  question_.setTab(tab);
}

void PageView::follow() {
  // A view that replaces another in place is hosted anew.
  if (tab_) tab_->webViewRevision.get();
  const bool hasPage = tab_ && !tab_->isDiscarded && (tab_->url.get() || tab_->liveWebView());
  std::shared_ptr<WebView> view;
  if (hasPage) {
    // A page whose process ended while nobody saw it comes back when somebody does.
    if (isSeen_) tab_->webView();
    view = tab_->liveWebView();
    // Below a question nothing takes the keyboard.
    web_.set_can_focus(!tab_->questions.current.get());
  }
  web_.host(view ? view->widget() : nullptr);
  web_.set_visible(hasPage);
  cover_.set_visible(hasPage && (!view || tab_->isBlank));
  empty_.set_visible(!hasPage);
}

void PageView::showMenu(const PageHit& hit, std::vector<MenuEntry> entries) {
  presentMenu(web_, hit.x, hit.y, std::move(entries));
}

void PageView::setPalette(const Palette& palette) {
  empty_.setPalette(palette);
  bar_.setPalette(palette);
}

}  // namespace orvel
