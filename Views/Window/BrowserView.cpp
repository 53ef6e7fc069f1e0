#include "Views/Window/BrowserView.h"

#include <adwaita.h>
#include <gtkmm/eventcontrollermotion.h>

#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/BrowserStore.h"
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
      handle_(store.chrome),
      handleTheme_(handle_.Gtk::Widget::gobj()),
      findBar_(store),
      commandBar_(store),
      toast_(store.toasts),
      sheet_(store, store.spaceEditing,
             [this](double x, double y) { return isWindowButton(x, y); }),
      layers_(makeLayers()),
      docked_(gobj(), 1, [this](double) { queue_allocate(); }),
      floating_(gobj(), 0, [this](double) { queue_allocate(); }) {
  add_css_class("orvel");
  content_.append(page_);
  page_.set_hexpand(true);
  page_.set_vexpand(true);
  for (const auto& layer : layers_) layer.widget.set_parent(*this);
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

std::vector<WindowLayer> BrowserView::makeLayers() {
  using enum WindowLayer::Keyboard;
  const auto whole = [](const WindowRoom& room) {
    return LayerArea{0, 0, room.width, room.height};
  };
  const auto themeOf = [](auto& layer) {
    return [&layer](const Theme& theme, ColorScheme scheme) { layer.set(theme, scheme); };
  };
  const auto inside = [](auto& layer) {
    return [&layer](const Theme& theme, ColorScheme scheme) { layer.setTheme(theme, scheme); };
  };
  return {
      {backdrop_, whole},
      {content_, [](const auto& room) { return room.page; }, themeOf(contentTheme_),
       LostBelowOthers},
      {.widget = upperStrip_,
       .place =
           [](const auto& room) {
             return LayerArea{room.page.x, 0, room.width - room.page.x, kFrame};
           },
       .isShown = [this](const auto&) { return !isPageAlone_; }},
      {findBar_, [this](const auto& room) { return findBarArea(room); }, themeOf(findBar_.theme())},
      {sidebar_, [this](const auto& room) { return sidebarArea(room); }, inside(sidebar_),
       LostBelowOthers, [this](const auto&) { return placement() != Placement::Hidden; }},
      {handle_,
       [](const auto& room) {
         constexpr double kWidth = SidebarResizeHandle::kWidth;
         return LayerArea{room.dockedWidth - kWidth + 2, 0, kWidth, room.height};
       },
       themeOf(handleTheme_), LostBelowOthers,
       [this](const auto& room) {
         return placement() == Placement::Docked && room.width >= kRoomyWidth &&
                docked_.value() > 0.99;
       }},
      {.widget = edge_,
       .place =
           [](const auto& room) {
             return LayerArea{0, 0, kPeekStrip, room.height};
           },
       .isShown = [this](const auto&) { return !isSidebarVisible_ && !isPageAlone_; }},
      {commandBar_, whole, themeOf(commandBar_.theme())},
      {toast_, [this](const auto& room) { return toastArea(room); }, themeOf(toast_.theme())},
      {sheet_, whole, inside(sheet_)},
  };
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
  stockColors_.set(theme, scheme);
  for (const auto& layer : layers_)
    if (layer.setTheme) layer.setTheme(theme, scheme);
  page_.setPalette(palette);
}

void BrowserView::followBackdrop(const Wake& wake) {
  const auto backdropOf = [scheme = scheme_.get()](const Theme& theme) {
    return theme.in(scheme).backdrop;
  };
  const auto& preview = store_.spaceEditing.previewTheme.get();
  auto colors = backdropOf(preview ? *preview : Theme::forHue(store_.activeSpace()->hue));
  const double share = swipeShare(store_.chrome, store_.switching);
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
  for (const auto& layer : layers_)
    if (layer.keyboard == WindowLayer::Keyboard::LostBelowOthers)
      layer.widget.set_can_focus(isFree);
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

bool BrowserView::isWindowButton(double x, double y) {
  const graphene_point_t point = {static_cast<float>(x), static_cast<float>(y)};
  return std::ranges::any_of(sidebar_.topBar().windowButtons(), [&](GtkWidget* button) {
    graphene_rect_t bounds;
    return gtk_widget_get_mapped(button) && gtk_widget_compute_bounds(button, gobj(), &bounds) &&
           graphene_rect_contains_point(&bounds, &point);
  });
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

void BrowserView::place(Gtk::Widget& widget, const LayerArea& area) {
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

WindowRoom BrowserView::roomOf(double width, double height) const {
  const double sidebarWidth = width < kRoomyWidth
                                  ? kMinimumSidebarWidth
                                  : untracked([this] { return shownSidebarWidth(store_.chrome); });
  const double dockedWidth = sidebarWidth * docked_.value();
  const double left = std::max(dockedWidth, kFrame * (1 - docked_.value()));
  return {.width = width,
          .height = height,
          .page = isPageAlone_
                      ? LayerArea{0, 0, width, height}
                      : LayerArea{left, kFrame, width - left - kFrame, height - 2 * kFrame},
          .sidebarWidth = sidebarWidth,
          .dockedWidth = dockedWidth,
          .isSidebarFloating = placement() == Placement::Floating};
}

void BrowserView::size_allocate_vfunc(int width, int height, int) {
  const WindowRoom room = roomOf(width, height);
  sidebar_.setStance(room.isSidebarFloating ? SidebarView::Stance::Floating
                                            : SidebarView::Stance::Docked);
  for (const auto& layer : layers_) {
    if (layer.isShown) layer.widget.set_child_visible(layer.isShown(room));
    place(layer.widget, layer.place(room));
  }
}

LayerArea BrowserView::sidebarArea(const WindowRoom& room) const {
  if (!room.isSidebarFloating)
    return {room.dockedWidth - room.sidebarWidth, 0, room.sidebarWidth, room.height};
  const double hiddenBy = (room.sidebarWidth + 4 * kFloatingInset) * (1 - floating_.value());
  return {kFloatingInset - hiddenBy, kFloatingInset, room.sidebarWidth,
          room.height - 2 * kFloatingInset};
}

LayerArea BrowserView::findBarArea(const WindowRoom& room) const {
  const auto& page = room.page;
  const double width = std::clamp(page.width - 2 * kFindInset, kNarrowestFind, kWidestFind);
  return {page.x + page.width - kFindInset - width, page.y + kFindInset - findBar_.rise(), width,
          0};
}

LayerArea BrowserView::toastArea(const WindowRoom& room) {
  int natural = 0;
  gtk_widget_measure(toast_.Gtk::Widget::gobj(), GTK_ORIENTATION_HORIZONTAL, -1, nullptr, &natural,
                     nullptr, nullptr);
  const double width = std::min(std::clamp<double>(natural, kNarrowestToast, kWidestToast),
                                room.page.width - kFrame);
  int height = 0;
  gtk_widget_measure(toast_.Gtk::Widget::gobj(), GTK_ORIENTATION_VERTICAL, -1, &height, nullptr,
                     nullptr, nullptr);
  return {room.page.x + (room.page.width - width) / 2,
          room.height - kToastBottom - height + toast_.drop(), width, static_cast<double>(height)};
}

}  // namespace orvel
