#include "Views/Spaces/SpacePager.h"

#include <glibmm/main.h>

#include <algorithm>
#include <cmath>

#include "DesignSystem/Icons.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/BrowserStore.h"
#include "Views/Sidebar/SidebarLayout.h"

namespace orvel {

SpacePager::SpacePager(BrowserStore& store, SidebarDrag& drag,
                       const Observable<ColorScheme>& scheme)
    : Glib::ObjectBase("OrvelSpacePager"),
      store_(store),
      drag_(drag),
      scheme_(scheme),
      view_(gobj(), 0, [this](double) { queue_allocate(); }) {
  set_overflow(Gtk::Overflow::HIDDEN);
  set_vexpand(true);
  follow_ = effect([this](const Wake& wake) { follow(wake); });
}

SpacePager::~SpacePager() {
  preparing_.disconnect();
  for (auto* pages : {&pages_, &spares_})
    for (auto& page : *pages) page.section->unparent();
}

void SpacePager::follow(const Wake& wake) {
  const auto active = store_.activeSpace();
  std::vector<Place> places;
  for (const auto& space : store_.switching.pagerSpaces())
    places.push_back({space, store_.switching.pagerPosition(*space)});
  const double share = swipeShare(store_.chrome, store_.switching);
  // Two may stand on the same side; the one that the fingers bring is seen.
  if (const auto revealing = store_.switching.revealingSpace()) {
    const int position = store_.switching.pagerPosition(*revealing);
    std::erase_if(places, [&](const Place& place) {
      return place.position == position && place.space != revealing && place.space != active;
    });
  }
  untracked([&] {
    if (active_ && active_ != active)
      activePlace_ += store_.switching.spaceSwitchForward.peek() ? 1 : -1;
    active_ = active;
    setPages(places);
    const double target = activePlace_ - share;
    if (wake.transaction)
      view_.animateTo(target, wake.transaction->spring);
    else if (view_.target() != target)
      view_.set(target);
    prepareLater();
  });
}

void SpacePager::prepareLater() {
  if (preparing_.connected()) return;
  preparing_ = Glib::signal_idle().connect([this] { return prepare(); }, Glib::PRIORITY_LOW);
}

bool SpacePager::prepare() {
  constexpr size_t kMaxPages = 3;
  constexpr double kRowPitch = 32;
  const bool isWanted = store_.spaces.peek().size() > 1 && pages_.size() < kMaxPages;
  if (!isWanted || !get_mapped()) return false;
  if (spares_.empty()) {
    addSpare();
    return true;
  }
  auto& list = spares_.back().section->list();
  if (!list.get_realized()) {
    gtk_widget_realize(list.Gtk::Widget::gobj());
    return true;
  }
  // In view, and half as many on either side.
  const auto rows = static_cast<size_t>(2 * get_height() / kRowPitch);
  return list.buildAhead(rows);
}

void SpacePager::addSpare() {
  auto& section = *spares_.emplace_back(store_, drag_).section;
  section.set_child_visible(false);
  setAccessibleHidden(section, true);
  section.set_parent(*this);
}

void SpacePager::setPages(const std::vector<Place>& places) {
  for (auto page = pages_.begin(); page != pages_.end();) {
    const auto next = std::next(page);
    if (std::ranges::find(places, page->section->space(), &Place::space) == places.end()) {
      page->look.stop();
      page->section->show(nullptr);
      page->section->set_child_visible(false);
      setAccessibleHidden(*page->section, true);
      spares_.splice(spares_.end(), pages_, page);
    }
    page = next;
  }
  for (const auto& [space, position] : places) {
    if (!pageOf(space)) addPage(space);
    auto& page = *pageOf(space);
    page.place = activePlace_ + position;
    page.section->set_can_focus(space == active_);
    page.section->set_can_target(space == active_);
  }
  queue_allocate();
}

void SpacePager::addPage(const std::shared_ptr<Space>& space) {
  if (spares_.empty()) addSpare();
  pages_.splice(pages_.end(), spares_, std::prev(spares_.end()));
  auto& page = pages_.back();
  page.section->show(space);
  setAccessibleHidden(*page.section, false);
  page.look = effect([this, &page] { showTheme(page); });
}

SpacePager::Page* SpacePager::pageOf(const std::shared_ptr<Space>& space) {
  const auto page =
      std::ranges::find_if(pages_, [&](const Page& one) { return one.section->space() == space; });
  return page == pages_.end() ? nullptr : &*page;
}

SpaceSection* SpacePager::sectionOf(const std::shared_ptr<Space>& space) {
  auto* page = pageOf(space);
  return page ? page->section.get() : nullptr;
}

void SpacePager::showTheme(Page& page) {
  const auto& space = page.section->space();
  const auto& preview = store_.spaceEditing.previewTheme.get();
  const bool isTried = preview && store_.activeSpace() == space;
  page.theme.set(isTried ? *preview : Theme::forHue(space->hue), scheme_.get());
}

void SpacePager::on_map() {
  Gtk::Widget::on_map();
  prepareLater();
}

Gtk::SizeRequestMode SpacePager::get_request_mode_vfunc() const {
  return Gtk::SizeRequestMode::CONSTANT_SIZE;
}

void SpacePager::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural,
                               int& minimumBaseline, int& naturalBaseline) const {
  minimumBaseline = naturalBaseline = -1;
  minimum = natural = 0;
  for (const auto& page : pages_) {
    int least = 0;
    int wanted = 0;
    gtk_widget_measure(page.section->Gtk::Widget::gobj(), static_cast<GtkOrientation>(orientation),
                       -1, &least, &wanted, nullptr, nullptr);
    minimum = std::max(minimum, least);
    natural = std::max(natural, wanted);
  }
}

void SpacePager::size_allocate_vfunc(int width, int height, int) {
  const double sign = get_direction() == Gtk::TextDirection::RTL ? -1 : 1;
  for (auto& page : pages_) {
    const double x = std::round((page.place - view_.value()) * width);
    auto* native = page.section->Gtk::Widget::gobj();
    page.section->set_child_visible(std::abs(x) < width);
    // GTK insists on having asked before it allocates.
    int minimum = 0;
    gtk_widget_measure(native, GTK_ORIENTATION_HORIZONTAL, -1, &minimum, nullptr, nullptr, nullptr);
    const graphene_point_t at = {static_cast<float>(sign * x), 0};
    gtk_widget_allocate(native, std::max(width, minimum), height, -1,
                        gsk_transform_translate(nullptr, &at));
  }
}

}  // namespace orvel
