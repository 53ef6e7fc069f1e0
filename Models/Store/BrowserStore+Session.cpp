#include <utility>

#include "Base/Assert.h"
#include "Base/Log.h"
#include "Models/Store/BrowserStore.h"

// What moves the session to the disk and back. A bad or newer file never stops the program from
// starting, and never costs the user the file.
namespace orvel {

// Saving

void BrowserStore::scheduleSave() {
  requireMainThread();
  if (!saveTask_) saveTask_ = services_.scheduler.start(saveSoon(weak_from_this()));
}

Task<> BrowserStore::saveSoon(std::weak_ptr<BrowserStore> weak) {
  constexpr Duration kDelay = 1s;
  co_await sleep(kDelay);
  const auto store = weak.lock();
  if (!store) co_return;
  // The task is over for `scheduleSave` from here on.
  store->saveTask_.detach();
  store->save();
  untracked([&] { store->pageStates_.writeChanged(store->everyTab()); });
}

SessionRecord BrowserStore::record() const {
  SessionRecord session{.activeSpaceID = activeSpaceID(),
                        .isSidebarVisible = isSidebarVisible,
                        .sidebarWidth = sidebarWidth};
  for (const auto& profile : profiles.get()) {
    ProfileRecord& record =
        session.profiles.emplace_back(ProfileRecord{.id = profile->id, .name = profile->name});
    for (const TabRef& tab : profile->favorites.get()) record.favorites.push_back(tab->record());
  }
  for (const auto& space : spaces.get()) session.spaces.push_back(space->record());
  return session;
}

void BrowserStore::save() {
  requireMainThread();
  untracked([this] {
    auto requests = sessionFile_.replacing([session = record()] { return session.encoded(); },
                                           [](const WriteResult& result) {
                                             if (result.outcome == WriteResult::Outcome::Failed)
                                               Log::session.error("Couldn't save the session: {}",
                                                                  result.error.message());
                                           });
    if (std::exchange(isArchiveStale_, false)) requests.push_back(writingArchive());
    services_.files.carryOut(std::move(requests));
    updateSpotlight();
  });
}

void BrowserStore::saveArchive() {
  isArchiveStale_ = true;
  save();
}

FileWriter::Request BrowserStore::writingArchive() {
  return FileWriter::writing(
      services_.paths.archive(),
      [copy = archive.peek()] { return ArchivedTabRecord::encoded(copy); },
      [weak = weak_from_this()](const WriteResult& result) {
        if (result.outcome != WriteResult::Outcome::Failed) return;
        Log::session.error("Couldn't save archived tabs: {}", result.error.message());
        if (const auto store = weak.lock()) store->isArchiveStale_ = true;
      });
}

// Loading

std::optional<BrowserStore::LoadedSession> BrowserStore::loadSession() {
  auto contents = services_.files.files().read(services_.paths.session());
  const auto startFresh = [](const std::string& why) {
    Log::session.fault(
        "Couldn't read the session, starting fresh (kept as session.unreadable.json): {}", why);
    return std::nullopt;
  };
  if (!contents.bytes) {
    if (contents.isMissing()) return std::nullopt;
    sessionFile_.moveAside(services_.paths.unreadableSession());
    return startFresh(contents.error.message());
  }
  auto decoded = SessionRecord::decode(*contents.bytes, services_.scheduler.now());
  if (auto* session = std::get_if<SessionRecord::Decoded>(&decoded)) {
    const bool isMigrated = session->sourceVersion < SessionRecord::currentVersion;
    if (isMigrated) {
      Log::session.notice("Upgrading the session from version {} to {}", session->sourceVersion,
                          SessionRecord::currentVersion);
      sessionFile_.keepCopy(services_.paths.sessionBackup(session->sourceVersion),
                            std::move(*contents.bytes));
    }
    return LoadedSession{std::move(session->record), isMigrated};
  }
  sessionFile_.keepCopy(services_.paths.unreadableSession(), std::move(*contents.bytes));
  const auto* error = std::get_if<SessionError>(&decoded);
  return startFresh(error ? description(*error)
                          : std::get<JSONCoding::DecodingError>(decoded).description);
}

void BrowserStore::restore() {
  if (const auto session = loadSession()) {
    apply(session->record);
    if (session->isMigrated) scheduleSave();
  }
  if (spaces.peek().empty()) createDefaultSpace();
  if (!spaceWithID(activeSpaceID())) setActiveSpaceID(spaces.peek().front()->id);
  if (const auto bytes = services_.files.files().read(services_.paths.archive()).bytes)
    archive = ArchivedTabRecord::decode(*bytes).value_or(std::vector<ArchivedTabRecord>());
  // The page on screen starts loading first; no other tab gets a view here.
  if (const TabRef selected = activeSpace()->selectedTab(); selected && !selected->isDiscarded)
    selected->webView();
}

void BrowserStore::apply(const SessionRecord& session) {
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
    auto profile = std::make_shared<Profile>(services_.engine, record.id, record.name);
    profile->favorites = makeTabs(record.favorites, profile);
    restoredProfiles.push_back(profile);
    profilesByID.emplace(record.id, std::move(profile));
  }
  profiles = std::move(restoredProfiles);

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
  spaces = std::move(restoredSpaces);
  if (session.activeSpaceID) setActiveSpaceID(*session.activeSpaceID);
  isSidebarVisible = session.isSidebarVisible;
  sidebarWidth = session.sidebarWidth;
}

void BrowserStore::createDefaultSpace() {
  auto profile = std::make_shared<Profile>(services_.engine, UUID::random(), "Personal");
  auto space = std::make_shared<Space>(UUID::random(), profile, "Personal", "person.fill",
                                       Theme::all.front().hue);
  profiles.update([&](auto& list) { list.push_back(profile); });
  spaces.update([&](auto& list) { list.push_back(space); });
  setActiveSpaceID(space->id);
}

TabRef BrowserStore::makeTab(const TabRecord& record, std::shared_ptr<Profile> profile) {
  return BrowserTab::make(services_, {.id = record.id,
                                      .profile = profile,
                                      .store = weak_from_this(),
                                      .url = record.url,
                                      .title = record.title,
                                      .pinnedURL = record.pinnedURL,
                                      .lastActiveAt = record.lastActiveAt,
                                      .stateFile = PageState::FormerFile::MayExist});
}

SidebarItemList BrowserStore::makeItems(const std::vector<SidebarItemRecord>& records,
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

SidebarItem BrowserStore::makeItem(const SidebarItemRecord& record,
                                   std::shared_ptr<Profile> profile) {
  return makeItems({record}, profile).front();
}

}  // namespace orvel
