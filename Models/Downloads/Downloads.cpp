#include "Models/Downloads/Downloads.h"

#include "Base/Texts.h"
#include "BrowserCore/Downloads/DownloadName.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Windows/Ask.h"

namespace orvel {

URLRequest pageRequest(const BrowserTab& tab, const URL& address) {
  URLRequest request{.url = address};
  const auto view = tab.liveWebView();
  const auto origin = view ? view->committedOrigin() : std::nullopt;
  const bool isDowngrade = origin && origin->starts_with("https:") && !address.hasScheme("https");
  if (origin && !isDowngrade) request.headers = {{"Referer", *origin + "/"}};
  return request;
}

Downloads::Downloads(BrowserStore& store) : store_(store) {}

DownloadManager& Downloads::manager() const { return *store_.services().downloads; }

void Downloads::start() {
  store_.services().engine.setDownloadDelegate(store_.services().downloads);
  manager().onBegin = store_.whileAlive([this](const std::string& name) {
    store_.showToast(filled(_("Downloading {name}"), {{"name", name}}),
                     {.symbol = "arrow.down.circle"});
  });
  manager().onFinish = store_.whileAlive([this](const std::string& name) {
    store_.showToast(filled(_("Downloaded {name}"), {{"name", name}}));
  });
}

void Downloads::open(const DownloadManager::Item& item) {
  if (isProgram(item.destination.filename().string())) return reveal(item);
  const auto opened = [this, name = item.destination.filename().string()](bool isOpened) {
    if (!isOpened) store_.showToast(filled(_("{name} can’t be opened"), {{"name", name}}));
  };
  store_.services().desktop.workspace.openFile(item.destination, store_.whileAlive(opened));
}

void Downloads::reveal(const DownloadManager::Item& item) {
  store_.services().desktop.workspace.reveal(item.destination);
}

void Downloads::openFolder() {
  const auto opened = [this](bool isOpened) {
    if (!isOpened) store_.showToast(_("The downloads folder can’t be opened"));
  };
  store_.services().desktop.workspace.openFile(store_.services().paths.downloads,
                                               store_.whileAlive(opened));
}

static Alert quitQuestion(size_t count) {
  return {
      .messageText = _("Quit while downloading?"),
      .informativeText = counted(ngettext("{count} download is not finished, and ends.",
                                          "{count} downloads are not finished, and end.", count),
                                 count),
      .buttons = {_("Quit"), _("Cancel")},
      .isDestructive = true};
}

Task<bool> Downloads::mayQuit() {
  if (isAskingToQuit_) co_return false;
  const size_t count = manager().activeItems().size();
  if (count == 0) co_return true;
  isAskingToQuit_ = true;
  auto asking = ask(store_, quitQuestion(count));
  const AlertAnswer given = co_await std::move(asking);
  isAskingToQuit_ = false;
  co_return given.isFirstButton();
}

void Downloads::saveAs(const TabRef& tab, const URL& address) {
  const auto isFree = [](const std::string&) { return false; };
  const std::string name = address.hasScheme("data") ? "" : address.decodedPath();
  store_.services().desktop.dialogs.showSavePanel(
      store_.window(), {.proposedName = downloadName(name, isFree)},
      store_.whileAlive([this, tab, address](const std::optional<std::filesystem::path>& file) {
        if (!file) return;
        const auto download = tab->profile->dataStore()->startDownload(pageRequest(*tab, address));
        if (!download) return;
        manager().choose(*download, *file);
        download->setDelegate(store_.services().downloads);
      }));
}

void Downloads::closeEmpty(const TabRef& tab) {
  const auto space = store_.spaceContaining(*tab);
  if (!space) return;
  if (space->selectedTab() == tab)
    if (const TabRef before = lastUsed(*space, *tab)) store_.select(before, space);
  store_.close(tab);
  store_.archive.forgetClosed({tab});
}

TabRef Downloads::lastUsed(const Space& space, const BrowserTab& except) {
  TabRef latest;
  for (const TabRef& tab : space.allTabs())
    if (tab.get() != &except && tab->lastActiveAt &&
        (!latest || tab->lastActiveAt > latest->lastActiveAt))
      latest = tab;
  return latest;
}

}  // namespace orvel
