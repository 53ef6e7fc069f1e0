#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Base/KeptFile.h"
#include "Base/Observable.h"
#include "Base/Task.h"
#include "BrowserCore/Addresses/ChoiceMemory.h"
#include "BrowserCore/Look/Theme.h"
#include "BrowserCore/Session/SessionRecord.h"
#include "Desktop/EventMonitors.h"
#include "Models/CommandBar/Suggestion.h"
#include "Models/Commands/Menu.h"
#include "Models/Settings/Settings.h"
#include "Models/Sidebar/TabDestination.h"
#include "Models/Spaces/Space.h"
#include "Models/Store/Services.h"
#include "Models/Store/StoreState.h"
#include "Models/Store/UtilityWindow.h"
#include "Models/Tab/BrowserTab.h"
#include "Models/Tab/PageClosing.h"
#include "Models/Tab/PageFullscreen.h"
#include "Models/Tab/PageStates.h"
#include "WebEngine/Blocking/ContentBlocker.h"
#include "WebEngine/ExtensionHost.h"

namespace orvel {

// The model's centre: every profile, space and tab, and everything that the interface observes.
// There is one, made before the run loop starts and alive as long as the process. Main thread only.
//
// Rules that every operation keeps: there is always a space; each space's profile is a member of
// `profiles`; a selection that names no tab reads as none. Operations take what they work on by
// value, so that it may stand in a list that they change, and do nothing in a space that has gone.
class BrowserStore : public std::enable_shared_from_this<BrowserStore> {
 public:
  // Restores the session and starts the background loops.
  [[nodiscard]] static std::shared_ptr<BrowserStore> make(const Services& services);
  ~BrowserStore();

  const Services& services() const { return services_; }

  Observable<std::vector<std::shared_ptr<Profile>>> profiles;
  Observable<std::vector<std::shared_ptr<Space>>> spaces;  // in the sidebar's order
  Observable<bool> isSidebarVisible = true;
  Observable<bool> isSidebarPeeking = false;  // hidden, and floating out over the page
  Observable<double> sidebarWidth = SessionRecord::kDefaultSidebarWidth;  // in points
  Observable<std::optional<CommandBarMode>> commandBar;
  Observable<std::optional<FindState>> find;
  Observable<TabRef> peek;  // the tab over the page; null without
  Observable<std::optional<ReaderArticle>> reader;
  Observable<std::optional<UUID>> capture;  // the tab being captured
  Observable<std::optional<TabSwitcherState>> tabSwitcher;
  Observable<std::optional<SpaceDraft>> spaceDraft;
  Observable<bool> spaceSwitchForward = true;
  Observable<double> spaceSwipeOffset = 0.0;
  Observable<std::optional<UUID>> revealingSpaceID;
  Observable<std::optional<UUID>> leavingSpaceID;
  Observable<std::optional<UUID>> renamingFolderID;
  Observable<std::optional<Toast>> toast;
  Observable<bool> didCopyLink = false;
  Observable<std::vector<ArchivedTabRecord>> archive;  // the newest first
  Settings settings;
  ContentBlocker contentBlocker;
  ExtensionHost extensions;
  // Null when there is none: no visit is recorded then.
  std::unique_ptr<HistoryStore> history;
  // Grows when visits went away other than one by one.
  Observable<uint64_t> historyRevision{0};
  // The main window while there is one: the window's controller sets and clears it.
  DesktopWindow* window = nullptr;
  std::vector<ClosedTab> closedTabs;  // the latest last
  std::vector<std::shared_ptr<LittleWindow>> littleWindows;
  // Opens a little window for a tab. Empty: such a tab goes to the sidebar.
  std::function<std::shared_ptr<LittleWindow>(const TabRef&)> makeLittleWindow;
  Observable<bool> isPeekExpanding = false;
  Observable<std::optional<UUID>> hidingItemsTabID;
  Observable<std::optional<Theme>> previewTheme;
  Observable<std::optional<Space::Appearance>> previewAppearance;
  // The coming toggle of the sidebar starts from a peeking one.
  Observable<bool> sidebarDocksFromPeek = false;
  // What was picked after what was typed, by profile.
  std::unordered_map<UUID, ChoiceMemory> choices;
  Observable<bool> isQuickBarKeyTaken = false;
  PageClosing pageClosing{*this};
  PageFullscreen pageFullscreen{*this};

  const UUID& activeSpaceID() const { return activeSpaceID_.get(); }
  void setActiveSpaceID(const UUID& id);
  // The space on screen: the first with the active id, or else the first.
  std::shared_ptr<Space> activeSpace() const;
  // Every tab of every space once, favorites too.
  TabList everyTab() const;

  // Spaces.
  // Both open a draft, each time a new one; new spaces walk through the themes and the symbols.
  void beginNewSpace();
  void beginEditing(const Space& space);
  // Makes or edits the draft's space and ends the draft. A name of blanks does nothing; a space
  // that went away meanwhile is made anew, and never moves to another profile otherwise.
  void commit(const SpaceDraft& draft);
  void switchTo(std::shared_ptr<Space> space, const Spring& animation = Spring::move);
  // The spaces that stand side by side while they change, in the sidebar's order.
  std::vector<std::shared_ptr<Space>> pagerSpaces() const;
  // -1 left of the active space, 1 right of it; 0 for itself and for one that is no member.
  int pagerPosition(const Space& space) const;
  // The neighbour that a swipe brings in; null without one.
  std::shared_ptr<Space> revealingSpace() const;
  // Whether the space is its profile's last.
  bool deletesProfile(const Space& space) const;
  // For good, with its tabs; its profile's last one takes along the favorites and all web data. The
  // last space of all stays.
  void deleteSpace(std::shared_ptr<Space> space);

  // Toasts.
  struct ToastOptions {
    std::optional<std::string> symbol;
    std::function<void()> undo;
    std::string actionTitle = "Undo";
    std::optional<Duration> lasts;  // absent: 4 s with an undo, 1.6 s without
  };
  void showToast(std::string message, ToastOptions options);
  void showToast(std::string message) { showToast(std::move(message), ToastOptions()); }
  void undoToast();

  // Window, sidebar and keyboard.
  enum class ChromeMotion { AtOnce, Animated };
  void showCommandBar(CommandBarMode mode);
  void dismissCommandBar();
  // Gives the keyboard to the selected tab's page on the next turn, unless someone is typing.
  void focusWebView();
  // The same at once, for the keys that are waiting already.
  void focusWebViewNow();
  void toggleSidebar();
  void setSidebarPeeking(bool wanted);
  void setSidebarWidth(double width);
  void updateWindowChrome(ChromeMotion motion);
  void updateWindowAppearance();
  void perform(const Suggestion& suggestion, CommandBarMode mode);

  // Commands.
  // Set once, before the window is made; null in a program without a menu.
  std::unique_ptr<Menu> mainMenu;
  // Those that the query's words name, the palette's first; the command bar shows the first three.
  std::vector<PaletteCommand> commandsMatching(const std::string& query);
  // The hand-written ones, as they are now.
  std::vector<PaletteCommand> paletteCommands();
  // One for each row of the main menu that can be chosen; made anew when a second has passed.
  std::vector<PaletteCommand> menuCommands();
  // In glyphs; absent for an item without a key.
  static std::optional<std::string> shortcut(const MenuItem& of);
  // Chooses the item that stands there now; does nothing when there is none or it is disabled.
  void performMenuItem(std::span<const std::string> titles);
  // The same by what the item is, also for a hidden one. Answers whether it was chosen.
  bool performAction(ActionID action);
  // The tab that a menu row acts on: the key little window's, or else, while the main window is
  // key, the selected one. Null while another window is.
  TabRef targetTab() const;
  bool isMainWindowKey() const;
  // To the field that has the keyboard, or else to the target tab's page.
  void edit(EditingCommand command);

  // Finding in the selected page.
  void showFindBar();
  void hideFindBar();
  void findNext(BrowserTab::FindDirection direction);

  // What is learned of picks in the command bar; by the active space's profile, never for a private
  // one.
  void learn(const Suggestion& suggestion, const std::string& query);
  // The one that was picked often enough after this query; null without one.
  const Suggestion* topChoice(const std::string& query,
                              std::span<const Suggestion> suggestions) const;
  // Everything, in every profile.
  void forgetChoices();
  // Absent `url`: all of the profile's.
  void forgetChoices(const UUID& profile, const std::optional<URL>& url = std::nullopt);
  // Asks whether to forget every visit and every pick, in every profile.
  void clearHistory();

  // Persistence.
  // Asks for a save within a second. Every change of what is saved ends with it.
  void scheduleSave();
  bool isSavePending() const { return static_cast<bool>(saveTask_); }
  // Hands the session to the disk now.
  void save();
  // What a save writes.
  SessionRecord record() const;
  TabRef makeTab(const TabRecord& record, std::shared_ptr<Profile> profile);
  SidebarItem makeItem(const SidebarItemRecord& record, std::shared_ptr<Profile> profile);
  SidebarItemList makeItems(const std::vector<SidebarItemRecord>& records,
                            std::shared_ptr<Profile> profile);

  // Tabs.
  struct OpenOptions {
    std::shared_ptr<Space> in;  // null or gone: after's space, or else the active one
    TabRef after;
    bool select = true;
    std::optional<WebViewConfiguration> configuration;
    SchemeSource schemeSource = SchemeSource::Given;  // who chose the scheme of the address
  };
  TabRef openTab(const std::optional<URL>& url, OpenOptions options);
  TabRef openTab(const std::optional<URL>& url) { return openTab(url, OpenOptions()); }
  // Null space: the one that has the tab. Does nothing when the space has no such tab.
  void select(TabRef tab, std::shared_ptr<Space> in = nullptr);
  void selectAdjacentTab(int step);
  // From 1 on; 9 is the last.
  void selectTabNumber(int number);
  void closeSelectedTab();
  // Ends a tab of today's; a pinned tab or favorite ends its page and returns home.
  void close(TabRef tab);
  // Closes today's tabs, or those of them that `only` names; a toast offers to undo it.
  void clearToday(std::shared_ptr<Space> space, const std::optional<TabList>& only = std::nullopt);
  void reopenClosedTab();
  void togglePin(TabRef tab);
  // A tab stays with its profile: to a space of another one, or into a folder that has gone, it
  // does not move. Null space: the active one.
  void move(TabRef tab, const TabDestination& destination, std::shared_ptr<Space> in = nullptr);
  // The same for a folder with all it holds, which does not go into itself either.
  void move(FolderRef folder, const PinnedDestination& destination, std::shared_ptr<Space> in);
  // Where the tab stands; absent when it is nowhere.
  std::optional<TabDestination> placeOf(const BrowserTab& tab) const;
  enum class LinkForm { Plain, Markdown };
  void copyLink(TabRef tab = nullptr, LinkForm form = LinkForm::Plain);
  // The first space with the tab among its own; favorites are no space's own. Null without one.
  std::shared_ptr<Space> spaceContaining(const BrowserTab& tab) const;
  // The active space if it is on the profile, or else the first that is. Null without one.
  std::shared_ptr<Space> spaceOn(const Profile& profile) const;
  TabRef tab(const TabDrag& drag) const;

  // Turns an archived tab into one of today's, in its space or else the active one.
  void reopen(ArchivedTabRecord archived);

  // Folders.
  void newFolder(TabRef with = nullptr);
  void rename(FolderRef folder, const std::string& name);
  void toggle(FolderRef folder);
  // Its tabs move to the top of today's; none is closed.
  void deleteFolder(FolderRef folder);

  // Blocking. Each tells by a toast and reloads the selected tab.
  void toggleContentBlocking();
  void toggleCookieRejection();
  // Null tab: the selected one. Does nothing for an address without a host.
  void toggleBlockingOnCurrentSite(TabRef tab = nullptr);

  // Hibernation.
  enum class StateWriting { Background, Now };
  void startHibernating();
  // Gives up the views of tabs that nobody has looked at for `age`.
  Task<> hibernateIdleTabs(Duration age, Date now);
  // Writes every tab's page state and removes the files of tabs that are gone.
  void saveTabStates(StateWriting writing);

  // Links from other applications, little windows, peeks.
  // Answers whether the main window is to come forward.
  bool openExternal(const URL& url);
  // Null profile: the active space's. Null when a private tab has no window to go to.
  TabRef openLittleWindow(const std::optional<URL>& url, std::shared_ptr<Profile> profile = nullptr,
                          std::optional<WebViewConfiguration> configuration = std::nullopt,
                          SchemeSource scheme = SchemeSource::Given);
  void littleWindowDidClose(const LittleWindow& closed);
  std::shared_ptr<LittleWindow> keyLittleWindow() const;
  // The tab that commands act on: the key little window's, or else the selected one.
  TabRef commandTab() const;
  void openPeek(const URL& url, TabRef from);
  // Whether the tab's links to other sites open in a peek.
  bool peeksLinks(const BrowserTab& from) const;
  void closePeek();
  bool openSpotlightItem(const std::string& identifier);

  // Media.
  // Asks the tabs that play, every ten seconds, whether they still do.
  void startMediaMonitoring();

  // The program's small windows.
  // Shows the window; answers whether there is one. The interface sets it; empty: there is none.
  std::function<bool(UtilityWindow)> openUtilityWindow;
  // Shows the window, or says by a toast that it is not there yet.
  void showUtilityWindow(UtilityWindow which);

  // Pictures and downloads.
  void openDownloadsFolder();
  // Copies the visible page.
  void beginCapture(TabRef tab);
  // Null tab and a page that cannot be drawn do nothing; absent `rect`: all that is visible.
  void copyScreenshot(TabRef tab, std::optional<PageRect> rect);

  // Each says by a toast that its feature is missing, until it is built.
  void newLittleWindow();
  void openPrivateWindow();
  void toggleReader();
  void splitWithRecentTab();
  void beginHidingItems(TabRef on);
  void checkForUpdates();

  void closeSplitView();
  // Selects the tab that was used last before the selected one.
  void advanceTabSwitcher();

  // Called where their features belong, and empty until these are built.
  void archiveStaleTabs(Date now);
  void installEscapeMonitor();
  void installSplitFocusMonitor();
  void installTabSwitcherMonitor();
  void endHidingItems();
  void updateSpotlight();
  void orderQuickBarOut();

  // The quick bar's system-wide key.
  // Brings the desktop in line with the setting: gives the former key back and asks for the chosen
  // one. `isQuickBarKeyTaken` tells, on a later turn, that it could not be had; nothing is retried.
  void applyQuickBarKey();
  // What the key does: it opens and closes the command bar, and brings the window where it is not
  // in front.
  void toggleQuickBar();

 private:
  struct SwipeSample {
    double time;
    double travel;
  };
  enum class SwipeEnd { Switches, GoesBack };

  explicit BrowserStore(const Services& services);

  void start();
  static Task<> reopenExtensionPages(std::shared_ptr<BrowserStore> store);
  static Task<> archiveLoop(std::weak_ptr<BrowserStore> store);
  static Task<> hibernationLoop(std::weak_ptr<BrowserStore> store);
  static Task<> hibernate(std::weak_ptr<BrowserStore> store, Duration age, Date now);
  static Task<> mediaLoop(std::weak_ptr<BrowserStore> store);
  static Task<> removeToast(std::weak_ptr<BrowserStore> store, Duration after);
  static Task<> peekSidebar(std::weak_ptr<BrowserStore> store, bool wanted);
  static Task<> removeDataStore(Engine& engine, UUID id);
  static Task<> saveSoon(std::weak_ptr<BrowserStore> store);
  static Task<> hideWindowButtons(std::weak_ptr<BrowserStore> store);
  static Task<> findInPage(std::weak_ptr<BrowserStore> store, TabRef tab, std::string query,
                           BrowserTab::FindDirection direction, uint64_t number);
  static Task<> forgetCopiedLink(std::weak_ptr<BrowserStore> store, Duration after);
  static Task<> copyPicture(std::weak_ptr<BrowserStore> store, TabRef tab,
                            std::optional<PageRect> rect);

  // The session.
  void restore();
  struct LoadedSession {
    SessionRecord record;
    bool isMigrated = false;
  };
  std::optional<LoadedSession> loadSession();
  void apply(const SessionRecord& record);
  void createDefaultSpace();
  std::shared_ptr<Space> spaceWithID(const UUID& id) const;
  // Saves the archive behind the session, so that a tab on its way from one to the other is in one
  // of them at any time.
  void saveArchive();
  FileWriter::Request writingArchive();
  void saveChoices();

  // Spaces.
  std::shared_ptr<Profile> profileFor(const std::optional<UUID>& id, const std::string& name);
  std::shared_ptr<Space> adjacentSpace(int delta) const;
  void removeWebsiteData(const std::shared_ptr<Profile>& profile);
  void installSpaceSwipeMonitor();
  void watchSpaceSwipe(const ScrollEvent& event);
  void trackSpaceSwipe(double travel, double time);
  void forgetOldSwipeSamples(double time);
  // In points a second, over the samples that are kept.
  double swipeSpeed() const;
  void finishSpaceSwipe(double travel, double time, SwipeEnd end);
  // `speed` is that towards the end, and `distance` the way to it.
  static Spring swipeSpring(double speed, double distance);

  // Runs `action` in a task of its own, from the next turn on.
  void later(std::function<void(BrowserStore&)> action);
  void animate(const Spring& spring, const std::function<void()>& change,
               std::function<void()> completion = {});
  bool areWindowButtonsHidden() const;
  void open(const URL& url, CommandBarMode mode, SchemeSource scheme = SchemeSource::Given);

  void addTabCommands(std::vector<PaletteCommand>& commands, const TabRef& tab);
  void addSpaceCommands(std::vector<PaletteCommand>& commands);
  // Adds one for each row of the menu at `path`, and of the menus below it.
  void collect(Menu& menu, const std::vector<std::string>& path,
               std::vector<PaletteCommand>& commands);
  void reloadSelectedTab();
  void setMatchFound(std::optional<bool> isFound);
  // Takes the marks of the latest search off its page.
  void endSearch();
  void detach(const BrowserTab& tab);
  void leaveTab(const TabRef& prior, const TabRef& next, const Space& space, Date now);
  void didActivate(const TabRef& tab, const TabRef& prior);
  void undoClearToday(const std::shared_ptr<Space>& space, const TabList& tabs);
  void undoPin(std::shared_ptr<Space> space, TabRef tab, const TabDestination& former,
               const std::optional<URL>& pinnedURL);
  // The extensions; null for a tab that they must not know of.
  WebExtensionController* extensionsKnowing(const BrowserTab& tab) const;
  bool isOnShow(const BrowserTab& tab) const;
  bool mayHibernate(const BrowserTab& tab, Date cutoff, Date now) const;

  const Services& services_;
  Observable<UUID> activeSpaceID_{UUID::random()};
  struct MenuCommandCache {
    Instant time;
    std::vector<PaletteCommand> commands;
  };
  std::optional<MenuCommandCache> menuCommandCache_;
  // The swipe over the sidebar; positive travel leads to the next space.
  struct {
    std::optional<double> travel;  // absent: no gesture is being followed
    std::vector<SwipeSample> samples;
    uint64_t generation = 0;  // grows with each gesture
  } swipe_;
  Observation swipeMonitor_;
  // What `find` has left its marks on.
  std::weak_ptr<BrowserTab> searchedTab_;
  // Grows with each search and with the bar's end: earlier answers count no more.
  uint64_t latestSearch_ = 0;
  TaskHandle saveTask_;
  TaskHandle toastTask_;
  TaskHandle peekTask_;
  std::vector<TaskHandle> loops_;
  Observation memoryPressure_;
  std::unique_ptr<HotKey> quickBarHotKey_;
  uint64_t quickBarKeyRequest_ = 0;  // grows with each change of the key
  KeptFile sessionFile_;
  bool isArchiveStale_ = false;  // its file is
  PageStates pageStates_;
};

}  // namespace orvel
