#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Base/Observable.h"
#include "Base/Scheduler.h"
#include "BrowserCore/Addresses/URL.h"
#include "Engine/Engine.h"
#include "Support/Stores/UserDefaults.h"
#include "WebEngine/Blocking/FilterListUpdater.h"
#include "WebEngine/Blocking/RuleListLoader.h"

namespace orvel {

// Owns the compiled filter lists of this run and puts the right ones, and the scripts that go with
// them, on the controller of every page. Lists are kept compiled by a fingerprint of their text, so
// that a start compiles only what has changed.
//
// Blocking may be off as a whole or paused for a site; the rejection of cookie pop-ups is a switch
// of its own. No failure reaches the user: a list that cannot be had is left out, or stays at what
// it last was.
class ContentBlocker {
 public:
  enum class State { Idle, Preparing, Ready };

  struct NamedRuleList {
    std::string name;
    std::shared_ptr<ContentRuleList> list;

    friend bool operator==(const NamedRuleList&, const NamedRuleList&) = default;
  };

  // The lists by name, in the order in which pages get them. The last is the application's own.
  static constexpr std::string_view listNames[] = {"easylist", "easyprivacy", "cookies", "orvel"};
  // How long first pages are held back for the lists at most.
  static constexpr Duration kMaxHold = 3s;

  // Reads the switches from `defaults`. `scripts` is the folder of the page scripts. What it is
  // given must outlive it.
  ContentBlocker(Scheduler& scheduler, Engine& engine, UserDefaults& defaults,
                 FilterListUpdater& updater, std::filesystem::path scripts);

  // Begins loading the lists, once: those that are there, then what an update brings.
  void start();

  // A controller for a new page, with everything on it that the page is to have.
  std::shared_ptr<UserContentController> makeUserContentController();
  // Brings the controller up to date. Does nothing unless a switch, the pause of its site or the
  // lists have changed since.
  void install(UserContentController& controller);
  // Tells which site the controller's page is on; to be called with `site(for:)` of the address
  // before `install`, for each navigation of the main frame.
  void setCurrentSite(const UserContentController& controller, std::optional<std::string> site);

  void setEnabled(bool isEnabled);
  void setCookieRejectionEnabled(bool isEnabled);

  // Pauses blocking on the site of `url`, or ends the pause that covers it. Returns whether
  // blocking is paused there now.
  bool togglePause(const URL& url);
  // Ends the pause of an entry of `pausedSites`.
  void resume(const std::string& site);
  bool isPaused(const std::optional<URL>& url) const;

  // The host that a pause goes by: in lower case, without a leading "www.". Absent without a host.
  static std::optional<std::string> site(const URL& url);

  // A first load runs at once when this answers false; else it belongs in `readyHandlers`.
  bool holdsFirstLoads() const {
    return state.peek() != State::Ready && !hasTimedOut.peek() && isEnabled.peek();
  }
  // Run, in order, at the end of the first loading of the lists and when it takes too long.
  std::vector<std::function<void()>> readyHandlers;

  // Scripts that every page gets ahead of all others, whatever the switches say. To be set before
  // the first controller is made.
  std::vector<UserScript> standardScripts;

  // To be set by this class alone.
  Observable<State> state{State::Idle};
  Observable<bool> isEnabled;
  Observable<bool> isCookieRejectionEnabled;
  Observable<bool> hasTimedOut{false};
  Observable<std::set<std::string>> pausedSites;
  Observable<std::vector<NamedRuleList>> ruleLists;
  // Raised by one each time `ruleLists` is replaced.
  Observable<int64_t> listGeneration{0};

 private:
  // What was last put on a controller.
  struct Setup {
    bool blocking;
    bool cookieRejection;
    int64_t listGeneration;

    friend bool operator==(const Setup&, const Setup&) = default;
  };

  // A script that every frame of a page gets in the page's own world, from a file.
  class PageScript {
   public:
    explicit PageScript(std::filesystem::path file) : file_(std::move(file)) {}
    // Read when it is first asked for; absent when that failed.
    const std::optional<UserScript>& get(FileSystem& files);

   private:
    std::filesystem::path file_;
    bool isRead_ = false;
    std::optional<UserScript> script_;
  };

  Task<> load();
  Task<> loadLists();
  Future<std::vector<FilterListSource>> readSources();
  Task<> endHold();
  void becomeReady();
  void runReadyHandlers();
  void installEverywhere();
  void storePausedSites(std::set<std::string> sites);
  std::optional<std::string> pausedEntry(const std::optional<std::string>& site) const;
  void forgetGone();

  Scheduler& scheduler_;
  Engine& engine_;
  UserDefaults& defaults_;
  FilterListUpdater& updater_;
  PageScript youTubeScript_;
  PageScript autoconsentScript_;

  // By identity; entries of controllers that are gone are dropped now and then.
  using Identity = const UserContentController*;
  std::unordered_map<Identity, std::weak_ptr<UserContentController>> controllers_;
  std::unordered_map<Identity, Setup> installed_;
  std::unordered_map<Identity, std::string> currentSite_;

  // What the first loading of the lists begins with.
  struct Start {
    Future<std::vector<std::string>> identifiers;
    Future<std::vector<FilterListSource>> sources;
  };
  std::optional<Start> start_;
  // Cancelled when the blocker ends, and only then: as long as they aren't, the blocker is there.
  TaskHandle loading_;
  TaskHandle hold_;
};

}  // namespace orvel
