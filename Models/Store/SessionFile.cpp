#include "Models/Store/SessionFile.h"

#include <unordered_map>
#include <utility>

#include "Base/Assert.h"
#include "Base/Log.h"
#include "Base/Texts.h"
#include "BrowserCore/Look/Theme.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/ComingFeatures.h"
#include "Models/Tab/Hibernation.h"
#include "Models/Windows/WindowChrome.h"

namespace orvel {

SessionFile::SessionFile(BrowserStore& store)
    : store_(store), file_(store.services().files, store.services().paths.session()) {}

// Saving

void SessionFile::scheduleSave() {
  requireMainThread();
  constexpr Duration kDelay = 1s;
  if (saving_) return;
  saving_ = store_.after(kDelay, [this] {
    // The task is over for `scheduleSave` from here on.
    saving_.detach();
    save();
    store_.hibernation.saveChangedStates();
  });
}

SessionRecord SessionFile::record() const {
  SessionRecord session{.activeSpaceID = store_.activeSpaceID.get(),
                        .isSidebarVisible = store_.chrome.isSidebarVisible,
                        .sidebarWidth = store_.chrome.sidebarWidth};
  for (const auto& profile : store_.profiles.get()) {
    ProfileRecord& record =
        session.profiles.emplace_back(ProfileRecord{.id = profile->id, .name = profile->name});
    for (const TabRef& tab : profile->favorites.get()) record.favorites.push_back(tab->record());
  }
  for (const auto& space : store_.spaces.get()) session.spaces.push_back(space->record());
  return session;
}

void SessionFile::save() {
  requireMainThread();
  untracked([this] {
    auto requests = file_.replacing([session = record()] { return session.encoded(); },
                                    [](const WriteResult& result) {
                                      if (!result)
                                        Log::session.error("Couldn't save the session: {}",
                                                           result.error().message());
                                    });
    if (std::exchange(isArchiveStale_, false)) requests.push_back(writingArchive());
    store_.services().files.carryOut(std::move(requests));
    store_.coming.updateSpotlight();
  });
}

void SessionFile::saveArchive() {
  isArchiveStale_ = true;
  save();
}

FileWriter::Request SessionFile::writingArchive() {
  return FileWriter::writing(
      store_.services().paths.archive(),
      [copy = store_.archive.records.peek()] { return ArchivedTabRecord::encoded(copy); },
      store_.whileAlive([this](const WriteResult& result) {
        if (result) return;
        Log::session.error("Couldn't save archived tabs: {}", result.error().message());
        isArchiveStale_ = true;
      }));
}

// Loading

std::optional<SessionFile::Loaded> SessionFile::load() {
  auto contents = store_.services().files.files().read(store_.services().paths.session());
  const auto startFresh = [](const std::string& why) {
    Log::session.fault(
        "Couldn't read the session, starting fresh (kept as session.unreadable.json): {}", why);
    return std::nullopt;
  };
  if (!contents) {
    if (isMissing(contents.error())) return std::nullopt;
    file_.moveAside(store_.services().paths.unreadableSession());
    return startFresh(contents.error().message());
  }
  auto session = SessionRecord::decode(*contents, store_.services().scheduler.now());
  if (!session) {
    file_.keepCopy(store_.services().paths.unreadableSession(), *std::move(contents));
    return startFresh(description(session.error()));
  }
  const bool isMigrated = session->sourceVersion < SessionRecord::currentVersion;
  if (isMigrated) {
    Log::session.notice("Upgrading the session from version {} to {}", session->sourceVersion,
                        SessionRecord::currentVersion);
    file_.keepCopy(store_.services().paths.sessionBackup(session->sourceVersion),
                   *std::move(contents));
  }
  return Loaded{std::move(session->record), isMigrated};
}

void SessionFile::restore() {
  if (const auto session = load()) {
    apply(session->record);
    if (session->isMigrated) scheduleSave();
  }
  if (store_.spaces.peek().empty()) createDefaultSpace();
  if (!store_.spaceWithID(store_.activeSpaceID.get()))
    store_.setActiveSpaceID(store_.spaces.peek().front()->id);
  if (const auto bytes = store_.services().files.files().read(store_.services().paths.archive()))
    store_.archive.restore(
        ArchivedTabRecord::decode(*bytes).value_or(std::vector<ArchivedTabRecord>()));
  // The page on screen starts loading first; no other tab gets a view here.
  if (const TabRef selected = store_.activeSpace()->selectedTab();
      selected && !selected->isDiscarded)
    selected->webView();
}

void SessionFile::apply(const SessionRecord& session) {
  std::vector<std::shared_ptr<Profile>> restoredProfiles;
  std::unordered_map<UUID, std::shared_ptr<Profile>> profilesByID;
  const auto makeTabs = [this](const std::vector<TabRecord>& records,
                               const std::shared_ptr<Profile>& profile) {
    TabList tabs;
    tabs.reserve(records.size());
    for (const TabRecord& record : records) tabs.push_back(makeTab(record, profile));
    return tabs;
  };
  for (const ProfileRecord& record : session.profiles) {
    auto profile = std::make_shared<Profile>(store_.services().engine, record.id, record.name);
    profile->favorites = makeTabs(record.favorites, profile);
    restoredProfiles.push_back(profile);
    profilesByID.emplace(record.id, std::move(profile));
  }
  store_.setProfiles(std::move(restoredProfiles));

  std::vector<std::shared_ptr<Space>> restoredSpaces;
  for (const SpaceRecord& record : session.spaces) {
    const auto found = profilesByID.find(record.profileID);
    if (found == profilesByID.end()) continue;
    const std::shared_ptr<Profile>& profile = found->second;
    auto space =
        std::make_shared<Space>(record.id, profile, record.name, record.symbol, record.hue);
    space->pinned = makeItems(record.pinned, profile);
    space->today = makeTabs(record.today, profile);
    space->selectedTabID = record.selectedTabID;
    space->setSplit(record.split);
    space->splitWidths = record.splitWidths;
    space->appearance = appearanceFrom(record.appearance);
    restoredSpaces.push_back(std::move(space));
  }
  store_.setSpaces(std::move(restoredSpaces));
  if (session.activeSpaceID) store_.setActiveSpaceID(*session.activeSpaceID);
  store_.chrome.restoreSidebar(session.isSidebarVisible, session.sidebarWidth);
}

void SessionFile::createDefaultSpace() {
  auto profile = std::make_shared<Profile>(store_.services().engine, UUID::random(), _("Personal"));
  auto space = std::make_shared<Space>(UUID::random(), profile, _("Personal"), "person.fill",
                                       Theme::all.front().hue);
  auto profiles = store_.profiles.peek();
  profiles.push_back(profile);
  store_.setProfiles(std::move(profiles));
  store_.setSpaces({space});
  store_.setActiveSpaceID(space->id);
}

TabRef SessionFile::makeTab(const TabRecord& record, std::shared_ptr<Profile> profile) {
  return BrowserTab::make(store_.services(), {.id = record.id,
                                              .profile = profile,
                                              .host = store_.tabHost(),
                                              .url = record.url,
                                              .title = record.title,
                                              .pinnedURL = record.pinnedURL,
                                              .lastActiveAt = record.lastActiveAt,
                                              .stateFile = PageState::FormerFile::MayExist});
}

SidebarItemList SessionFile::makeItems(const std::vector<SidebarItemRecord>& records,
                                       std::shared_ptr<Profile> profile) {
  struct Level {
    const std::vector<SidebarItemRecord>* records;
    Observable<SidebarItemList>* items;
  };
  Observable<SidebarItemList> made;
  std::vector<Level> pending{{&records, &made}};
  while (!pending.empty()) {
    const Level level = pending.back();
    pending.pop_back();
    SidebarItemList items;
    items.reserve(level.records->size());
    for (const SidebarItemRecord& record : *level.records) {
      if (const auto* tab = std::get_if<TabRecord>(&record)) {
        items.push_back(makeTab(*tab, profile));
        continue;
      }
      const auto& source = std::get<FolderRecord>(record);
      const auto folder = std::make_shared<Folder>(
          source.id, source.name,
          source.isExpanded ? Folder::Expansion::Expanded : Folder::Expansion::Collapsed);
      pending.push_back({&source.children, &folder->children});
      items.push_back(folder);
    }
    *level.items = std::move(items);
  }
  return made.peek();
}

SidebarItem SessionFile::makeItem(const SidebarItemRecord& record,
                                  std::shared_ptr<Profile> profile) {
  return makeItems({record}, profile).front();
}

}  // namespace orvel
