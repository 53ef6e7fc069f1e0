#include "Views/Sidebar/SidebarMenus.h"

#include "Base/Texts.h"
#include "DesignSystem/ShownText.h"
#include "Models/Sidebar/CopiedLink.h"
#include "Models/Sidebar/Folders.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/ComingFeatures.h"
#include "Models/Tab/PageClosing.h"

namespace orvel {

namespace {

MenuEntry moveEntry(BrowserStore& store, const std::shared_ptr<Space>& space, const TabRef& tab,
                    const char* title, TabDestination destination) {
  return {.title = title, .perform = [&store, space, tab, destination = std::move(destination)] {
            store.move(tab, destination, space);
          }};
}

MenuEntry folderEntries(BrowserStore& store, const std::shared_ptr<Space>& space,
                        const TabRef& tab) {
  MenuEntry entry{.title = _("Move to Folder")};
  for (const auto& folder : foldersOf(space->pinned)) {
    auto target = moveEntry(store, space, tab, "", PinnedDestination{folder, std::nullopt});
    target.title = shownText(folder->name.get());
    target.symbol = "folder";
    entry.submenu.push_back(std::move(target));
  }
  entry.submenu.push_back({.title = _("New Folder"),
                           .perform = [&store, tab] { store.folders.newFolder(tab); },
                           .symbol = "folder.badge.plus",
                           .beginsSection = true});
  return entry;
}

void askToDelete(BrowserStore& store, const std::shared_ptr<Space>& space) {
  const auto title = filled(_("Delete “{space}”?"), {{"space", shownText(space->name.peek())}});
  const std::string warning =
      store.spaceEditing.deletesProfile(*space)
          ? _("Its tabs, favorites and all website data (cookies, logins, site storage) will be "
              "permanently removed.")
          : _("Its pinned and today tabs will be removed. Logins stay with the spaces that share "
              "its profile.");
  store.services().desktop.dialogs.showAlert(
      store.window(),
      {.messageText = title,
       .informativeText = warning,
       .buttons = {_("Delete Space"), _("Cancel")},
       .isDestructive = true},
      [weak = store.weak_from_this(), space](const AlertAnswer& answer) {
        const auto store = weak.lock();
        if (store && answer.isFirstButton()) store->spaceEditing.deleteSpace(space);
      });
}

}  // namespace

std::vector<MenuEntry> tabMenu(BrowserStore& store, const std::shared_ptr<Space>& space,
                               const TabRef& tab) {
  const auto place = store.placeOf(*tab);
  const bool isFavorite = place && std::holds_alternative<FavoritesDestination>(*place);
  const bool isPinned = place && std::holds_alternative<PinnedDestination>(*place);
  const bool isOfToday = place && std::holds_alternative<TodayDestination>(*place);

  std::vector<MenuEntry> entries;
  if (!isFavorite)
    entries.push_back(moveEntry(store, space, tab, _("Add to Favorites"), FavoritesDestination{}));
  if (!isOfToday)
    entries.push_back(moveEntry(store, space, tab, _("Move to Today"), TodayDestination{}));
  if (!isPinned) {
    entries.push_back(moveEntry(store, space, tab, _("Pin Tab"), PinnedDestination{}));
    entries.back().accelerator = "<Control>d";
  }
  entries.push_back(folderEntries(store, space, tab));

  entries.push_back({.title = _("Open in Split View"),
                     .perform = [&store] { store.coming.splitWithRecentTab(); },
                     .beginsSection = true});
  entries.push_back({.title = tab->isMuted ? _("Unmute Tab") : _("Mute Tab"),
                     .perform = [tab] { tab->toggleMute(); }});
  if (tab->hasWanderedFromPin())
    entries.push_back({.title = _("Back to Pinned Page"), .perform = [tab] {
                         if (const auto& home = tab->pinnedURL.get()) tab->load(*home);
                       }});

  const bool hasAddress = tab->url.get().has_value();
  const auto whenLoaded = [hasAddress](std::function<void()> perform) {
    return hasAddress ? std::move(perform) : std::function<void()>();
  };
  entries.push_back({.title = _("Copy Link"),
                     .perform = whenLoaded([&store, tab] { store.copiedLink.copyLink(tab); }),
                     .accelerator = "<Control><Shift>c",
                     .beginsSection = true});
  entries.push_back(
      {.title = _("Copy as Markdown Link"),
       .perform = whenLoaded([&store, tab] { store.copiedLink.copyLink(tab, LinkForm::Markdown); }),
       .accelerator = "<Control><Alt><Shift>c"});
  entries.push_back({.title = _("Duplicate Tab"), .perform = [&store, space, tab] {
                       store.openTab(tab->url.get(), {.in = space, .after = tab});
                     }});

  entries.push_back({.title = isOfToday ? _("Close Tab") : _("Reset Tab"),
                     .perform = [&store, tab] { store.pageClosing.close(tab); },
                     .accelerator = "<Control>w",
                     .beginsSection = true});
  return entries;
}

std::vector<MenuEntry> folderMenu(BrowserStore& store, const FolderRef& folder) {
  return {
      {.title = _("Rename"), .perform = [&store, folder] { store.folders.beginRenaming(folder); }},
      {.title = _("Delete Folder"),
       .perform = [&store, folder] { store.folders.deleteFolder(folder); },
       .beginsSection = true},
  };
}

std::vector<MenuEntry> spaceMenu(BrowserStore& store, const std::shared_ptr<Space>& space) {
  // The last space stays.
  const bool canDelete = store.spaces.peek().size() > 1;
  return {
      {.title = _("Edit Space…"),
       .perform = [&store, space] { store.spaceEditing.beginEditing(*space); }},
      {.title = _("Delete Space…"),
       .perform =
           canDelete ? [&store, space] { askToDelete(store, space); } : std::function<void()>(),
       .beginsSection = true},
  };
}

}  // namespace orvel
