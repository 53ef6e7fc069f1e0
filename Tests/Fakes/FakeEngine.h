#pragma once

#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Base/Scheduler.h"
#include "Engine/Engine.h"

// An engine that does what a script of the test says: pages that load, fail, open windows, ask for
// devices, play media and die. It keeps every rule of the contract: answers come on a later
// turn, exactly once.
namespace orvel::test {

class FakeEngine;
class FakeWebView;

// What the engine does with an address.
struct FakePage {
  enum class Load { Finish, Fail, BreakOff };  // before the commit, after it
  Load load = Load::Finish;
  std::string title;
  // The page's own redirect: the address that is committed in place of the asked one.
  std::optional<std::string> redirect;
  LoadError error;
  std::string mimeType = "text/html";
  bool canShowMIMEType = true;
  std::optional<std::string> contentDisposition;
};

class FakeDataStore final : public WebsiteDataStore {
 public:
  FakeDataStore(Scheduler& scheduler, std::optional<UUID> identifier)
      : scheduler_(scheduler), identifier_(identifier) {}
  bool isPersistent() const override { return identifier_.has_value(); }
  void fetchDataRecords(std::function<void(std::vector<WebsiteDataRecord>)> answer) override {
    scheduler_.post([answer = std::move(answer)] { answer({}); });
  }
  void removeData(std::vector<WebsiteDataRecord>, std::function<void()> answer) override {
    scheduler_.post(std::move(answer));
  }

 private:
  Scheduler& scheduler_;
  std::optional<UUID> identifier_;
};

class FakeRuleList final : public ContentRuleList {
 public:
  FakeRuleList(std::string identifier, std::string json)
      : json(std::move(json)), identifier_(std::move(identifier)) {}
  const std::string& identifier() const override { return identifier_; }
  const std::string json;

 private:
  std::string identifier_;
};

class FakeRuleStore final : public ContentRuleListStore {
 public:
  explicit FakeRuleStore(Scheduler& scheduler) : scheduler_(scheduler) {}
  void getAvailableIdentifiers(std::function<void(std::vector<std::string>)> answer) override;
  void lookUp(const std::string& identifier, std::function<void(CompiledRules)> answer) override;
  void compile(const std::string& identifier, std::string json,
               std::function<void(CompiledRules)> answer) override;
  void remove(const std::string& identifier,
              std::function<void(std::optional<std::string>)> answer) override;

  std::map<std::string, std::shared_ptr<FakeRuleList>> lists;
  // Answers the compiler's complaint about a list; absent accepts it.
  std::function<std::optional<std::string>(const std::string& identifier, const std::string& json)>
      refuse;
  // How long compiling takes.
  Duration compileTime{0};
  std::vector<std::string> compiled;
  std::set<std::string> damaged;
  // Runs before a list is looked up.
  std::function<void()> willLookUp;

 private:
  Scheduler& scheduler_;
};

class FakeContentController final : public UserContentController {
 public:
  void addUserScript(const UserScript& script) override { scripts.push_back(script); }
  void removeAllUserScripts() override { scripts.clear(); }
  void addContentRuleList(std::shared_ptr<ContentRuleList> list) override {
    ruleLists.push_back(std::move(list));
  }
  void removeAllContentRuleLists() override {
    ruleLists.clear();
    ++clearCount;
  }
  void addScriptMessageHandler(const std::string& name, const ContentWorld& world,
                               ScriptMessageHandler handler) override {
    handlers[{name, world}] = std::move(handler);
  }

  // A script of `world` posts to the handler; answers whether there is one there.
  bool post(const std::string& name, const ContentWorld& world, const std::string& body,
            const FrameInfo& frame = {});

  std::vector<UserScript> scripts;
  std::vector<std::shared_ptr<ContentRuleList>> ruleLists;
  std::map<std::pair<std::string, ContentWorld>, ScriptMessageHandler> handlers;
  int clearCount = 0;
};

class FakeDownload final : public Download, public std::enable_shared_from_this<FakeDownload> {
 public:
  explicit FakeDownload(std::optional<URL> url) : url_(std::move(url)) {}
  std::optional<URL> originalURL() const override { return url_; }
  double fractionCompleted() const override { return fraction_; }
  Observation observeProgress(std::function<void()> changed) override {
    const uint64_t id = ++lastObserver_;
    observers_[id] = std::move(changed);
    return Observation([weak = weak_from_this(), id] {
      if (const auto self = weak.lock()) self->observers_.erase(id);
    });
  }
  void cancel() override { fail({LoadError::Kind::Cancelled, "Fake", 1, "Cancelled", url_}); }
  void setDelegate(std::weak_ptr<DownloadDelegate> delegate) override { delegate_ = delegate; }

  // The server answers: the delegate is asked for a destination.
  void begin(const std::string& suggestedFilename) {
    const auto self = shared_from_this();
    if (const auto delegate = delegate_.lock())
      delegate->decideDestination(self, suggestedFilename,
                                  [self](auto path) { self->destination = path; });
  }
  void setProgress(double fraction) {
    fraction_ = fraction;
    for (const auto& [id, changed] : std::map(observers_)) changed();
  }
  void finish() {
    if (const auto delegate = delegate_.lock()) delegate->didFinish(shared_from_this());
  }
  void fail(const LoadError& error) {
    if (const auto delegate = delegate_.lock()) delegate->didFail(shared_from_this(), error);
  }

  std::optional<std::filesystem::path> destination;

 private:
  std::optional<URL> url_;
  double fraction_ = 0;
  std::map<uint64_t, std::function<void()>> observers_;
  uint64_t lastObserver_ = 0;
  std::weak_ptr<DownloadDelegate> delegate_;
};

class FakeWebView final : public WebView, public std::enable_shared_from_this<FakeWebView> {
 public:
  FakeWebView(FakeEngine& engine, const WebViewConfiguration& configuration);

  void setNavigationDelegate(NavigationDelegate* delegate) override { navigation_ = delegate; }
  void setUIDelegate(UIDelegate* delegate) override { ui_ = delegate; }
  const WebViewConfiguration& configuration() const override { return configuration_; }
  void load(const URLRequest& request) override;
  void loadHTMLString(const std::string& html, const std::optional<URL>& baseURL) override;
  void reload(ReloadSource source) override;
  void stopLoading() override;
  void goBack() override { move(-1); }
  void goForward() override { move(1); }
  std::optional<InteractionState> interactionState() const override;
  bool setInteractionState(const std::string& bytes) override;
  std::optional<std::string> title() const override { return title_; }
  std::optional<URL> url() const override { return url_; }
  bool isLoading() const override { return isLoading_; }
  double estimatedProgress() const override { return progress_; }
  bool canGoBack() const override { return position_ > 0; }
  bool canGoForward() const override { return position_ + 1 < static_cast<int>(history_.size()); }
  Observation observe(WebViewProperty property, std::function<void()> changed) override;
  bool isResponsive() const override { return isResponsive_; }
  void endProcess() override;
  void requestClose(std::function<void(bool)> answer) override;
  bool isBlank() const override { return history_.empty(); }
  void exitFullscreen() override;
  double pageZoom() const override { return zoom_; }
  void setPageZoom(double zoom) override { zoom_ = zoom; }
  bool isInWindow() const override { return isOnScreen; }
  void focus() override { ++focusCount; }
  bool isEditing() const override { return hasFocusedField; }
  void edit(EditingCommand command) override { edits.push_back(command); }
  void removeFromParent() override { isOnScreen = false; }
  GtkWidget* widget() override { return pageWidget; }
  void takeSnapshot(const SnapshotRequest& request, std::function<void(ImageRef)> answer) override;
  void createPDF(std::function<void(PDFResult)> answer) override;
  void print() override {}
  void find(const std::string& text, const FindConfiguration& configuration,
            std::function<void(bool)> answer) override;
  void endFind() override { hasMarks = false; }
  void evaluateJavaScript(const std::string& script, const ContentWorld& world,
                          const std::optional<FrameInfo>& frame,
                          std::function<void(ScriptResult)> answer) override;
  void callAsyncJavaScript(const std::string& body, const std::string&, const ContentWorld& world,
                           std::function<void(ScriptResult)> answer) override {
    evaluateJavaScript(body, world, std::nullopt, std::move(answer));
  }
  void pauseAllMediaPlayback() override;
  void setMuted(bool wanted) override { isMuted = wanted; }
  void requestMediaPlaybackState(std::function<void(MediaPlaybackState)> answer) override;
  CaptureState cameraCaptureState() const override { return camera; }
  CaptureState microphoneCaptureState() const override { return microphone; }

  // What the page does.
  void setTitle(const std::string& title);
  void setProgress(double progress);
  // The page changes its own address without a load.
  void setURL(const std::string& url);
  // The page starts a navigation, which is put to the delegate; answers its decision.
  NavigationPolicy navigate(NavigationAction action);
  NavigationPolicy clickLink(const std::string& url, ModifierFlags modifiers = {},
                             MouseButton button = MouseButton::Left);
  void setResponsive(bool isResponsive);
  // An element of the page fills the screen.
  void enterFullscreen();
  // Answers the view that the delegate made, or null.
  std::shared_ptr<WebView> openWindow(const std::string& url);
  void closeWindow() {
    if (ui_) ui_->webViewDidClose(*this);
  }
  void die();

  NavigationDelegate* navigationDelegate() const { return navigation_; }
  UIDelegate* uiDelegate() const { return ui_; }
  FakeContentController& controller() const {
    return static_cast<FakeContentController&>(*configuration_.userContentController);
  }

  // What stands for the page on screen; not owned.
  GtkWidget* pageWidget = nullptr;
  bool isOnScreen = false;
  int focusCount = 0;
  int endedProcesses = 0;
  // The page guards changes: the user is asked before it is left.
  bool guardsChanges = false;
  bool isFullscreen = false;
  bool hasFocusedField = false;
  std::vector<EditingCommand> edits;
  int stopCount = 0;
  int pauseCount = 0;
  bool isMuted = false;
  size_t observerCount() const { return observers_.size(); }
  MediaPlaybackState media = MediaPlaybackState::None;
  CaptureState camera = CaptureState::None;
  CaptureState microphone = CaptureState::None;
  std::string pageText;
  std::vector<std::string> searches;  // those that `find` was asked for
  bool hasMarks = false;              // those of `find`
  // What was shown by `loadHTMLString` last.
  std::string html;
  std::vector<URLRequest> requests;
  ImageRef snapshot;
  std::vector<std::string> restoredStates;

 private:
  void notify(WebViewProperty property);
  void begin(const URL& url);
  void navigateTo(const URL& url, NavigationType type);
  void decideAndBegin(NavigationAction action, std::function<void(NavigationPolicy)> decided);
  void becomeDownload(const URL& url);
  void commit(const URL& url, const FakePage& page);
  void respond(const URL& url);
  void move(int step);
  void setLoading(bool isLoading, double progress);

  struct Observer {
    WebViewProperty property;
    std::function<void()> changed;
  };

  FakeEngine& engine_;
  WebViewConfiguration configuration_;
  NavigationDelegate* navigation_ = nullptr;
  UIDelegate* ui_ = nullptr;
  std::optional<std::string> title_;
  std::optional<URL> url_;
  bool isLoading_ = false;
  bool isResponsive_ = true;
  double progress_ = 0;
  double zoom_ = 1;
  std::vector<URL> history_;
  int position_ = -1;
  bool isMovingInHistory_ = false;
  // Counts loads, so that an overtaken one ends without effect.
  uint64_t generation_ = 0;
  std::map<uint64_t, Observer> observers_;
  uint64_t lastObserver_ = 0;
};

class FakeEngine final : public Engine {
 public:
  explicit FakeEngine(Scheduler& scheduler) : ruleStore(scheduler), scheduler_(scheduler) {}

  std::string name() const override { return "Fake"; }
  std::string version() const override { return "1.0"; }
  std::shared_ptr<WebsiteDataStore> dataStoreForIdentifier(const UUID& identifier) override;
  std::shared_ptr<WebsiteDataStore> nonPersistentDataStore() override {
    return std::make_shared<FakeDataStore>(scheduler_, std::nullopt);
  }
  void removeDataStoreForIdentifier(
      const UUID& identifier, std::function<void(std::optional<std::string>)> answer) override;
  std::shared_ptr<UserContentController> makeUserContentController() override {
    return std::make_shared<FakeContentController>();
  }
  std::shared_ptr<WebView> makeWebView(const WebViewConfiguration& configuration) override;
  std::shared_ptr<ContentRuleListStore> contentRuleListStore() override {
    if (!hasRuleStore) return nullptr;
    return {&ruleStore, [](ContentRuleListStore*) {}};
  }
  void setDownloadDelegate(std::weak_ptr<DownloadDelegate> delegate) override {
    downloadDelegate = std::move(delegate);
  }
  void setURLSchemeHandler(const std::string&, URLSchemeHandler) override {}

  Scheduler& scheduler() { return scheduler_; }
  // What is at an address; an address that has no entry loads as a page with its own text as title.
  FakePage pageAt(const URL& url) const;

  std::map<std::string, FakePage> pages;
  FakeRuleStore ruleStore;
  bool hasRuleStore = true;
  // How many removals of a data store fail before one succeeds.
  int failingRemovals = 0;
  std::vector<UUID> removedStores;
  // Every view that was ever made, in order; gone ones are expired.
  std::vector<std::weak_ptr<FakeWebView>> views;
  std::vector<std::shared_ptr<FakeDownload>> downloads;
  std::weak_ptr<DownloadDelegate> downloadDelegate;

 private:
  Scheduler& scheduler_;
  std::map<UUID, std::weak_ptr<FakeDataStore>> stores_;
};

}  // namespace orvel::test
