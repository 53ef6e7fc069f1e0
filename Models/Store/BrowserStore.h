#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Base/Published.h"
#include "Base/Task.h"
#include "Models/CommandBar/CommandBarMode.h"
#include "Models/CommandBar/Suggestion.h"
#include "Models/Sidebar/TabDestination.h"
#include "Models/Spaces/Space.h"
#include "Models/Store/Services.h"
#include "Models/Tab/BrowserTab.h"
#include "Models/Windows/Interface.h"
#include "Models/Windows/Toast.h"

namespace orvel {

class Archive;
class BlockingSwitches;
class ComingFeatures;
class CommandList;
class CommandTarget;
class ContentBlocker;
class CopiedLink;
class Downloads;
class ExtensionHost;
class Folders;
class Hibernation;
class LittleWindows;
class PageClosing;
class PageFullscreen;
class PageSearch;
class Peek;
class PickedChoices;
class QuickBar;
class SessionFile;
class SiteSettings;
class Settings;
class SpaceEditing;
class SpaceSwipe;
class SpaceSwitching;
class Toasts;
class WindowChrome;

// The model's center: every profile, space and tab, and, by topic, everything that the interface
// observes. There is one, made before the run loop starts and alive as long as the process. Main
// thread only.
//
// Rules that every operation keeps: there is always a space; each space's profile is a member of
// `profiles`; a selection that names no tab reads as none. Operations take what they work on by
// value, so that it may stand in a list that they change, and do nothing in a space that has gone.
class BrowserStore : public std::enable_shared_from_this<BrowserStore> {
  struct Topics;
  const Services& services_;
  const std::unique_ptr<Topics> topics_;

 public:
  // Restores the session and starts the background loops.
  [[nodiscard]] static std::shared_ptr<BrowserStore> make(const Services& services);
  ~BrowserStore();

  const Services& services() const { return services_; }

  // The topics. Each is a class of its own with its state and its operations; include its header to
  // use it.
  SessionFile& session;
  Archive& archive;
  WindowChrome& chrome;
  Toasts& toasts;
  LittleWindows& littleWindows;
  SpaceEditing& spaceEditing;
  SpaceSwitching& switching;
  SpaceSwipe& spaceSwipe;
  Folders& folders;
  Downloads& downloads;
  CopiedLink& copiedLink;
  CommandList& commands;
  CommandTarget& target;
  QuickBar& quickBar;
  PickedChoices& choices;
  PageSearch& pageSearch;
  PageClosing& pageClosing;
  PageFullscreen& pageFullscreen;
  Peek& peek;
  Hibernation& hibernation;
  BlockingSwitches& blocking;
  SiteSettings& siteSettings;
  ComingFeatures& coming;

  Settings& settings;
  ContentBlocker& contentBlocker;
  ExtensionHost& extensions;

  // Profiles and spaces.
  Published<std::vector<std::shared_ptr<Profile>>, BrowserStore> profiles;
  Published<std::vector<std::shared_ptr<Space>>, BrowserStore> spaces;  // in the sidebar's order
  Published<UUID, BrowserStore> activeSpaceID{UUID::random()};
  void setProfiles(std::vector<std::shared_ptr<Profile>> members);
  void setSpaces(std::vector<std::shared_ptr<Space>> ordered);
  void setActiveSpaceID(const UUID& id);
  // The space on screen: the first with the active id, or else the first.
  std::shared_ptr<Space> activeSpace() const;
  // Null without one.
  std::shared_ptr<Space> spaceWithID(const UUID& id) const;
  // The first space with the tab among its own; favorites are no space's own. Null without one.
  std::shared_ptr<Space> spaceContaining(const BrowserTab& tab) const;
  // The active space if it is on the profile, or else the first that is. Null without one.
  std::shared_ptr<Space> spaceOn(const Profile& profile) const;

  // Tabs.
  // Every tab of every space once, favorites too.
  TabList everyTab() const;
  TabRef tab(const TabDrag& drag) const;
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
  // Ends a tab of today's; a pinned tab or favorite ends its page and returns home.
  void close(TabRef tab);
  // Closes today's tabs, or those of them that `only` names; a toast offers to undo it.
  void clearToday(std::shared_ptr<Space> space, const std::optional<TabList>& only = std::nullopt);
  void togglePin(TabRef tab);
  // A tab stays with its profile: to a space of another one, or into a folder that has gone, it
  // does not move. Null space: the active one.
  void move(TabRef tab, const TabDestination& destination, std::shared_ptr<Space> in = nullptr);
  // The same for a folder with all it holds, which does not go into itself either.
  void move(FolderRef folder, const PinnedDestination& destination, std::shared_ptr<Space> in);
  // Where the tab stands; absent when it is nowhere.
  std::optional<TabDestination> placeOf(const BrowserTab& tab) const;
  // What a tab of this store asks its surroundings.
  std::weak_ptr<TabHost> tabHost();
  // The extensions; null for a tab that they must not know of.
  WebExtensionController* extensionsKnowing(const BrowserTab& tab) const;

  // The command bar.
  Published<std::optional<CommandBarMode>, BrowserStore> commandBar;
  void showCommandBar(CommandBarMode mode);
  // Takes it away; `dismissCommandBar` gives the keyboard back to the page, too.
  void hideCommandBar();
  void dismissCommandBar();
  void perform(const Suggestion& suggestion, CommandBarMode mode);

  // History.
  // Null when there is none: no visit is recorded then.
  std::unique_ptr<HistoryStore> history;
  // Grows when visits went away other than one by one.
  Published<uint64_t, BrowserStore> historyRevision{0};
  // Asks whether to forget every visit and every pick, in every profile.
  void clearHistory();

  // Windows.
  // The interface that there is, or one without windows.
  Interface& interface() const { return *interface_; }
  // Null: it has gone.
  void setInterface(Interface* interface);
  // The main window; null while there is none.
  DesktopWindow* window() const { return interface_->window(); }
  // Shows the window, or says by a toast that it is not there yet.
  void showUtilityWindow(UtilityWindow which);
  // Gives the keyboard to the selected tab's page on the next turn, unless someone is typing.
  void focusWebView();
  // The same at once, for the keys that are waiting already.
  void focusWebViewNow();

  // What nearly every topic calls.
  void showToast(std::string message, ToastOptions options = {});
  // Asks for a save within a second. Every change of what is saved ends with it.
  void scheduleSave();
  // Changes and completes by the desktop's animator.
  void animate(const Spring& spring, const std::function<void()>& change,
               std::function<void()> completion = {});
  // Runs `action` in a task of its own, from the next turn on, unless the store has gone by then.
  void later(std::function<void()> action);
  // The same after `delay`, and unless the handle was cancelled.
  TaskHandle after(Duration delay, std::function<void()> action);
  // `action` for a caller who may outlive the store: it does nothing then.
  template <class Action>
  auto whileAlive(Action action) const {
    return [weak = weak_from_this(), action = std::move(action)](auto&&... arguments) {
      if (const auto store = weak.lock()) action(std::forward<decltype(arguments)>(arguments)...);
    };
  }

 private:
  explicit BrowserStore(const Services& services);
  void start();
  void open(const URL& url, CommandBarMode mode, SchemeSource scheme = SchemeSource::Given);
  void detach(const BrowserTab& tab);
  void leaveTab(const TabRef& prior, const TabRef& next, const Space& space, Date now);
  void didActivate(const TabRef& tab, const TabRef& prior);
  void undoClearToday(const std::shared_ptr<Space>& space, const TabList& tabs);
  void undoPin(std::shared_ptr<Space> space, TabRef tab, const TabDestination& former,
               const std::optional<URL>& pinnedURL);

  Interface* interface_;
};

}  // namespace orvel
