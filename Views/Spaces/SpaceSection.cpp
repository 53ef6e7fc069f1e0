#include "Views/Spaces/SpaceSection.h"

#include <gtkmm/viewport.h>

#include "Base/Texts.h"
#include "Models/Sidebar/Folders.h"
#include "Models/Store/BrowserStore.h"
#include "Views/Sidebar/FavoritesRow.h"
#include "Views/Sidebar/FolderRow.h"
#include "Views/Sidebar/HeadingRow.h"
#include "Views/Sidebar/SidebarDrops.h"
#include "Views/Sidebar/SidebarLayout.h"
#include "Views/Sidebar/TabRow.h"

namespace orvel {

SpaceSection::SpaceSection(BrowserStore& store, SidebarDrag& drag)
    : context_{store, store.folders, nullptr, drag}, list_(*this, _("Tabs"), kTabDragType) {
  add_css_class("tabs");
  add_css_class("theme-root");
  set_focusable(false);
  set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  set_vexpand(true);
  auto* viewport = Gtk::make_managed<Gtk::Viewport>(get_hadjustment(), get_vadjustment());
  viewport->set_scroll_to_focus(true);
  viewport->set_child(list_);
  set_child(*viewport);
  list_.setAdjustment(get_vadjustment());
}

void SpaceSection::show(std::shared_ptr<Space> space) {
  if (space == context_.space) return;
  rows_.stop();
  selection_.stop();
  renaming_.stop();
  list_.setRows({});
  get_vadjustment()->set_value(0);
  context_.space = std::move(space);
  if (!context_.space) return;
  rows_ = effect([this, isFirst = true](const Wake& wake) mutable {
    const bool moves = !std::exchange(isFirst, false) && wake.transaction;
    showRows(moves ? std::optional(wake.transaction->spring) : std::nullopt);
  });
  selection_ = effect([this] {
    context_.space->selectedTabID.get();
    scrollToSelection();
  });
  renaming_ = effect([this] { showRenaming(); });
}

void SpaceSection::showRows(const std::optional<Spring>& motion) {
  auto rows = sidebarRows(*context_.space, favoriteColumns(context_.store.chrome));
  untracked([&] {
    list_.setRows(std::move(rows), motion);
    if (isRenamingAhead_) showRenaming();
  });
}

void SpaceSection::scrollToSelection() {
  const auto& selected = context_.space->selectedTabID.peek();
  if (!selected) return;
  for (const auto& row : list_.rows())
    if (row.key.kind == SidebarRow::Kind::Tab && row.tabs.front()->id == *selected)
      return list_.scrollTo(row.key);
}

void SpaceSection::showRenaming() {
  const auto& renamed = context_.folders.renamingFolderID.get();
  const auto row = std::ranges::find_if(
      list_.rows(), [&](const SidebarRow& one) { return one.folder && one.folder->id == renamed; });
  isRenamingAhead_ = renamed && row == list_.rows().end();
  if (renamed && !isRenamingAhead_)
    untracked([&] { list_.focusRow(static_cast<size_t>(row - list_.rows().begin())); });
}

std::unique_ptr<RowWidget> SpaceSection::makeRow(SidebarRow::Kind kind) {
  switch (kind) {
    case SidebarRow::Kind::Heading:
      return std::make_unique<HeadingRow>(context_);
    case SidebarRow::Kind::Favorites:
      return std::make_unique<FavoritesRow>(context_);
    case SidebarRow::Kind::Folder:
      return std::make_unique<FolderRow>(context_);
    case SidebarRow::Kind::Tab:
      return std::make_unique<TabRow>(context_);
    case SidebarRow::Kind::NewTab:
      break;
  }
  return std::make_unique<NewTabRow>(context_);
}

size_t SpaceSection::columns() const {
  return untracked([this] { return favoriteColumns(context_.store.chrome); });
}

std::optional<RowDrop> SpaceSection::dropAt(const RowPoint& point, Dragged what) {
  if (!context_.space || (what == Dragged::Own && !context_.drag.tab)) return std::nullopt;
  const auto drop = sidebarDrop(list_.rows(), point, columns());
  return drop ? std::optional(drop->place) : std::nullopt;
}

bool SpaceSection::drop(const RowPoint& point) {
  const auto drop = sidebarDrop(list_.rows(), point, columns());
  // Only what stands in the sidebar now can be dropped: the tab may have closed on its way.
  const auto tab = context_.drag.tab ? context_.store.tab(TabDrag{context_.drag.tab->id}) : nullptr;
  if (!tab || !drop) return false;
  context_.store.move(tab, drop->destination, context_.space);
  return true;
}

void SpaceSection::dropLink(const RowPoint& point, const URL& link) {
  const auto drop = sidebarDrop(list_.rows(), point, columns());
  if (!drop || !context_.space) return;
  const auto tab = context_.store.openTab(link, {.in = context_.space, .select = false});
  context_.store.move(tab, drop->destination, context_.space);
}

bool SpaceSection::moveRow(size_t index, int step) {
  const auto destination = sidebarMove(list_.rows(), index, step);
  if (!destination) return false;
  const SidebarRow row = list_.rows()[index];
  if (row.folder)
    context_.store.move(row.folder, std::get<PinnedDestination>(*destination), context_.space);
  else
    context_.store.move(row.tabs.front(), *destination, context_.space);
  return true;
}

}  // namespace orvel
