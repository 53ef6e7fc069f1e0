#include "Views/Window/BrowserView.h"

#include <adwaita.h>
#include <gtkmm/eventcontrollermotion.h>

#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Tab/PageFullscreen.h"
#include "Models/Windows/WindowChrome.h"
#include "Views/Sidebar/SidebarLayout.h"
#include "Views/Window/Keyboard.h"

namespace orvel {

namespace {

constexpr double kFrame = 8;
constexpr double kPeekStrip = 8;
constexpr double kFloatingInset = 4;
constexpr double kFindInset = 14;
constexpr double kNarrowestFind = 240;
constexpr double kWidestFind = 348;
constexpr double kToastBottom = 28;
constexpr double kNarrowestToast = 240;
constexpr double kWidestToast = 480;
constexpr int kMinimumWidth = 360;
constexpr int kMinimumHeight = 300;

}  // namespace

BrowserView::BrowserView(BrowserStore& store)
    : Glib::ObjectBase("OrvelBrowserView"),
      store_(store),
      scheme_(StyleSheet::scheme()),
      contentTheme_(content_.Gtk::Widget::gobj()),
      stockColors_([&store] { return store.switching.spaceSwipeOffset.peek() != 0; }),
      sidebar_(store, scheme_),
      handle_(store),
      handleTheme_(handle_.Gtk::Widget::gobj()),
      findBar_(store),
      commandBar_(store),
      toast_(store),
      sheet_(store),
      docked_(gobj(), 1, [this](double) { queue_allocate(); }),
      floating_(gobj(), 0, [this](double) { queue_allocate(); }) {
  add_css_class("orvel");
  content_.append(page_);
  page_.set_hexpand(true);
  page_.set_vexpand(true);
  const std::initializer_list<Gtk::Widget*> layers = {
      &backdrop_, &content_, &upperStrip_, &findBar_, &sidebar_,
      &handle_,   &edge_,    &commandBar_, &toast_,   &sheet_};
  for (auto* layer : layers) layer->set_parent(*this);
  watchPeeking(edge_);
  watchPeeking(sidebar_);

  schemeHandler_ = g_signal_connect_swapped(
      adw_style_manager_get_default(), "notify::dark",
      G_CALLBACK(+[](BrowserView* self) { self->scheme_ = StyleSheet::scheme(); }), this);
  followContrast(gobj());
  sidebarEffect_ = effect([this](const Wake& wake) { followSidebar(wake); });
  widthEffect_ = effect([this] {
    store_.chrome.sidebarWidth.get();
    queue_allocate();
  });
  themeEffect_ = effect([this] { followTheme(); });
  backdropEffect_ = effect([this](const Wake& wake) { followBackdrop(wake); });
  pageEffect_ = effect([this] { followPage(); });
  fullscreenEffect_ = effect([this] { followFullscreen(); });
  layersEffect_ = effect([this] { followLayers(); });
}

BrowserView::~BrowserView() {
  g_signal_handler_disconnect(adw_style_manager_get_default(), schemeHandler_);
  while (auto* child = get_first_child()) child->unparent();
}

void BrowserView::watchPeeking(Gtk::Widget& widget) {
  auto motion = Gtk::EventControllerMotion::create();
  motion->signal_enter().connect([this](double, double) { store_.chrome.setSidebarPeeking(true); });
  motion->signal_leave().connect([this] { store_.chrome.setSidebarPeeking(false); });
  widget.add_controller(motion);
}

void BrowserView::followSidebar(const Wake& wake) {
  isSidebarVisible_ = store_.chrome.isSidebarVisible;
  const bool isPeeking = store_.chrome.isSidebarPeeking;
  const auto move = [&](SpringAnimation& amount, bool isShown) {
    if (wake.transaction)
      amount.animateTo(isShown ? 1 : 0, wake.transaction->spring);
    else
      amount.set(isShown ? 1 : 0);
  };
  // A peeking sidebar that docks stands where it is while the page makes room.
  const bool docksFromPeek = store_.chrome.sidebarDocksFromPeek;
  if (docksFromPeek && isSidebarVisible_)
    floating_.set(0);
  else
    move(floating_, !isSidebarVisible_ && isPeeking);
  move(docked_, isSidebarVisible_);
  queue_allocate();
}

void BrowserView::followTheme() {
  const auto& preview = store_.spaceEditing.previewTheme.get();
  const Theme& theme = preview ? *preview : Theme::forHue(store_.activeSpace()->hue);
  const ColorScheme scheme = scheme_;
  const auto palette = paletteOf(theme, scheme);
  contentTheme_.set(theme, scheme);
  stockColors_.set(theme, scheme);
  handleTheme_.set(theme, scheme);
  findBar_.theme().set(theme, scheme);
  commandBar_.theme().set(theme, scheme);
  toast_.theme().set(theme, scheme);
  sidebar_.setTheme(theme, scheme);
  sheet_.setTheme(theme, scheme);
  page_.setPalette(palette);
}

void BrowserView::followBackdrop(const Wake& wake) {
  const auto backdropOf = [scheme = scheme_.get()](const Theme& theme) {
    return theme.in(scheme).backdrop;
  };
  const auto& preview = store_.spaceEditing.previewTheme.get();
  auto colors = backdropOf(preview ? *preview : Theme::forHue(store_.activeSpace()->hue));
  const double share = swipeShare(store_);
  if (const auto next = store_.switching.revealingSpace())
    colors = blend(colors, backdropOf(Theme::forHue(next->hue)), std::abs(share));
  for (auto* ground : {&backdrop_, &sidebar_.ground()}) {
    if (wake.transaction)
      ground->animateTo(colors, wake.transaction->spring);
    else
      ground->set(colors);
  }
}

void BrowserView::followPage() {
  const auto tab = store_.activeSpace()->selectedTab();
  untracked([&] { page_.setTab(tab); });
}

void BrowserView::followFullscreen() {
  isPageAlone_ = store_.pageFullscreen.tab.get() != nullptr;
  setClass(page_.Gtk::Widget::gobj(), "alone", isPageAlone_);
  queue_allocate();
}

void BrowserView::followLayers() {
  // Below a sheet and the command bar nothing takes the keyboard.
  const auto bar = store_.commandBar.get();
  const bool isFree =
      !store_.spaceEditing.spaceDraft.get() && (!bar || bar == CommandBarMode::Quick);
  content_.set_can_focus(isFree);
  sidebar_.set_can_focus(isFree);
  handle_.set_can_focus(isFree);
}

void BrowserView::switchRegion() {
  auto* focus = focusBeside(gobj());
  const bool isInSidebar = focus && gtk_widget_is_ancestor(focus, sidebar_.Gtk::Widget::gobj());
  if (isInSidebar) {
    page_.child_focus(Gtk::DirectionType::TAB_FORWARD);
  } else if (!sidebar_.section().list().child_focus(Gtk::DirectionType::TAB_FORWARD)) {
    sidebar_.child_focus(Gtk::DirectionType::TAB_FORWARD);
  }
}

BrowserView::Placement BrowserView::placement() const {
  if (isPageAlone_) return Placement::Hidden;
  if (docked_.value() > 0.001) return Placement::Docked;
  return floating_.value() > 0.001 ? Placement::Floating : Placement::Hidden;
}

void BrowserView::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural,
                                int& minimumBaseline, int& naturalBaseline) const {
  minimum = natural = orientation == Gtk::Orientation::HORIZONTAL ? kMinimumWidth : kMinimumHeight;
  minimumBaseline = naturalBaseline = -1;
}

void BrowserView::place(Gtk::Widget& widget, const Area& area) {
  int minimumWidth = 0;
  int minimumHeight = 0;
  auto* native = widget.gobj();
  gtk_widget_measure(native, GTK_ORIENTATION_HORIZONTAL, -1, &minimumWidth, nullptr, nullptr,
                     nullptr);
  const int width = std::max({minimumWidth, static_cast<int>(std::lround(area.width)), 0});
  gtk_widget_measure(native, GTK_ORIENTATION_VERTICAL, width, &minimumHeight, nullptr, nullptr,
                     nullptr);
  const int height = std::max({minimumHeight, static_cast<int>(std::lround(area.height)), 0});
  const double x =
      get_direction() == Gtk::TextDirection::RTL ? get_width() - area.x - width : area.x;
  const graphene_point_t at = {static_cast<float>(std::round(x)),
                               static_cast<float>(std::round(area.y))};
  gtk_widget_allocate(native, width, height, -1, gsk_transform_translate(nullptr, &at));
}

void BrowserView::size_allocate_vfunc(int width, int height, int) {
  const double w = width;
  const double h = height;
  const auto where = placement();
  const bool isNarrow = w < kRoomyWidth;
  const double sidebarWidth =
      isNarrow ? kMinimumSidebarWidth : untracked([this] { return shownSidebarWidth(store_); });
  const double dockedWidth = sidebarWidth * docked_.value();

  place(backdrop_, {0, 0, w, h});
  const double left = std::max(dockedWidth, kFrame * (1 - docked_.value()));
  const Area page =
      isPageAlone_ ? Area{0, 0, w, h} : Area{left, kFrame, w - left - kFrame, h - 2 * kFrame};
  place(content_, page);
  upperStrip_.set_child_visible(!isPageAlone_);
  place(upperStrip_, {left, 0, w - left, kFrame});

  sidebar_.set_child_visible(where != Placement::Hidden);
  sidebar_.setStance(where == Placement::Floating ? SidebarView::Stance::Floating
                                                  : SidebarView::Stance::Docked);
  if (where == Placement::Floating) {
    const double x = kFloatingInset - (sidebarWidth + 4 * kFloatingInset) * (1 - floating_.value());
    place(sidebar_, {x, kFloatingInset, sidebarWidth, h - 2 * kFloatingInset});
  } else {
    place(sidebar_, {dockedWidth - sidebarWidth, 0, sidebarWidth, h});
  }

  handle_.set_child_visible(where == Placement::Docked && !isNarrow && docked_.value() > 0.99);
  place(handle_,
        {dockedWidth - SidebarResizeHandle::kWidth + 2, 0, SidebarResizeHandle::kWidth, h});
  edge_.set_child_visible(!isSidebarVisible_ && !isPageAlone_);
  place(edge_, {0, 0, kPeekStrip, h});

  place(commandBar_, {0, 0, w, h});
  place(sheet_, {0, 0, w, h});
  placeFindBar(page);
  placeToast(page);
}

void BrowserView::placeFindBar(const Area& page) {
  const double width = std::clamp(page.width - 2 * kFindInset, kNarrowestFind, kWidestFind);
  place(findBar_, {page.x + page.width - kFindInset - width, page.y + kFindInset - findBar_.rise(),
                   width, 0});
}

void BrowserView::placeToast(const Area& page) {
  int natural = 0;
  gtk_widget_measure(toast_.Gtk::Widget::gobj(), GTK_ORIENTATION_HORIZONTAL, -1, nullptr, &natural,
                     nullptr, nullptr);
  const double width =
      std::min(std::clamp<double>(natural, kNarrowestToast, kWidestToast), page.width - kFrame);
  int height = 0;
  gtk_widget_measure(toast_.Gtk::Widget::gobj(), GTK_ORIENTATION_VERTICAL, -1, &height, nullptr,
                     nullptr, nullptr);
  place(toast_,
        {page.x + (page.width - width) / 2, get_height() - kToastBottom - height + toast_.drop(),
         width, static_cast<double>(height)});
}

}  // namespace orvel
