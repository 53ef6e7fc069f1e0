#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Base/Scheduler.h"
#include "Engine/Engine.h"

namespace orvel::test {

class FakeEngine;

// What the engine does with an address.
struct FakePage {
  enum class Load { Finish, Fail, BreakOff, Wait };  // before the commit, after it, for ever
  Load load = Load::Finish;
  std::string title;
  // The page's own redirect: the address that is committed in place of the asked one.
  std::optional<std::string> redirect;
  LoadError error;
  std::string mimeType = "text/html";
  bool canShowMIMEType = true;
  std::optional<std::string> contentDisposition;
  // It leaves data in the store.
  bool storesData = false;
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

  // A script of `world` posts to the handler; returns whether there is one there.
  bool post(const std::string& name, const ContentWorld& world, const std::string& body,
            const FrameInfo& frame = {});

  std::vector<UserScript> scripts;
  std::vector<std::shared_ptr<ContentRuleList>> ruleLists;
  std::map<std::pair<std::string, ContentWorld>, ScriptMessageHandler> handlers;
  int clearCount = 0;
};

class FakeDownload final : public Download, public std::enable_shared_from_this<FakeDownload> {
 public:
  // With a scheduler the end of a cancelled one is told on a later turn, as of any.
  explicit FakeDownload(std::optional<URL> url, Scheduler* scheduler = nullptr)
      : url_(std::move(url)), scheduler_(scheduler) {}
  std::optional<URL> originalURL() const override { return url_; }
  std::optional<uint64_t> expectedBytes() const override { return expected; }
  bool isEphemeral() const override { return isPrivate; }
  double fractionCompleted() const override { return fraction_; }
  Observation observeProgress(std::function<void()> changed) override {
    const uint64_t id = ++lastObserver_;
    observers_[id] = std::move(changed);
    return Observation([weak = weak_from_this(), id] {
      if (const auto self = weak.lock()) self->observers_.erase(id);
    });
  }
  void cancel() override;
  void setDelegate(std::weak_ptr<DownloadDelegate> delegate) override { delegate_ = delegate; }

  // The server answers: the delegate is asked for a destination.
  void begin(const std::string& suggestedFilename);
  void setProgress(double fraction) {
    fraction_ = fraction;
    for (const auto& [id, changed] : std::map(observers_)) changed();
  }
  void finish();
  void fail(const LoadError& error);
  bool hasEnded() const { return hasEnded_; }

  std::optional<std::filesystem::path> destination;
  std::optional<uint64_t> expected;
  bool isPrivate = false;

 private:
  std::optional<URL> url_;
  Scheduler* scheduler_;
  bool hasEnded_ = false;
  double fraction_ = 0;
  std::map<uint64_t, std::function<void()>> observers_;
  uint64_t lastObserver_ = 0;
  std::weak_ptr<DownloadDelegate> delegate_;
};

class FakeWebView final : public WebView, public std::enable_shared_from_this<FakeWebView> {
 public:
  FakeWebView(FakeEngine& engine, const WebViewConfiguration& configuration);
  ~FakeWebView() override { endCalls(); }

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
  std::optional<std::string> committedOrigin() const override;
  bool isLoading() const override { return isLoading_; }
  double estimatedProgress() const override { return progress_; }
  bool canGoBack() const override { return position_ > 0; }
  bool canGoForward() const override { return position_ + 1 < static_cast<int>(history_.size()); }
  Observation observe(WebViewProperty property, std::function<void()> changed) override;
  bool isResponsive() const override { return isResponsive_; }
  void endProcess() override;
  void requestClose(std::function<void(bool)> answer) override;
  bool isBlank() const override { return history_.empty(); }
  void setBackground(const Color& color, double opacity) override { background = {color, opacity}; }
  void setAccessiblePatterns(const std::vector<std::string>&) override {}
  void exitFullscreen() override;
  double pageZoom() const override { return zoom_; }
  void setPageZoom(double zoom) override { zoom_ = zoom; }
  bool isInWindow() const override { return isOnScreen; }
  bool holdsPoint(double x, double y) const override {
    return isOnScreen && x >= place.x && x < place.x + place.width && y >= place.y &&
           y < place.y + place.height;
  }
  void focus() override { ++focusCount; }
  bool isEditing() const override { return false; }
  bool isInspectorOpen() const override { return hasInspector; }
  void openInspector() override { hasInspector = true; }
  void closeInspector() override { hasInspector = false; }
  void controlMedia(MediaCommand command) override { mediaCommands.push_back(command); }
  void edit(EditingCommand command) override { edits.push_back(command); }
  void removeFromParent() override { isOnScreen = false; }
  GtkWidget* widget() override { return pageWidget; }
  void takeSnapshot(const SnapshotRequest& request, std::function<void(ImageRef)> answer) override;
  void createPDF(std::function<void(PageFile)> answer) override;
  void createArchive(std::function<void(PageFile)> answer) override;
  void readSource(std::function<void(std::optional<std::string>)> answer) override;
  void print() override { ++prints; }
  void find(const std::string& text, const FindConfiguration& configuration,
            std::function<void(bool)> answer) override;
  void endFind() override { hasMarks = false; }
  void evaluateJavaScript(const std::string& script, const ContentWorld& world,
                          const std::optional<FrameInfo>& frame,
                          std::function<void(ScriptResult)> answer) override;
  // A page without scripts: everything answers null, but for a promise that never comes.
  void callAsyncJavaScript(const std::string& body, const std::string& arguments,
                           const ContentWorld& world,
                           std::function<void(ScriptResult)> answer) override;
  PlayingMedia playingMedia() const override { return playing_; }
  void pauseAllMediaPlayback() override;
  void setMuted(bool wanted) override { isMuted = wanted; }
  void requestMediaPlaybackState(std::function<void(MediaPlaybackState)> answer) override;
  CaptureState cameraCaptureState() const override { return camera; }
  CaptureState microphoneCaptureState() const override { return microphone; }
  void endCapture() override {
    camera = microphone = CaptureState::None;
    notify(WebViewProperty::Capture);
  }

  // What the page does.
  void setTitle(const std::string& title);
  void setProgress(double progress);
  // The page changes its own address without a load.
  void setURL(const std::string& url);
  // The page starts a navigation, which is put to the delegate; returns its decision.
  NavigationPolicy navigate(NavigationAction action);
  NavigationPolicy clickLink(const std::string& url, ModifierFlags modifiers = {},
                             MouseButton button = MouseButton::Left);
  void setResponsive(bool isResponsive);
  void play(PlayingMedia playing);
  // The page answers nothing any more.
  bool isHung = false;
  // An element of the page fills the screen.
  void enterFullscreen();
  // Returns the view that the delegate made, or null.
  std::shared_ptr<WebView> openWindow(const std::string& url);
  // The page's menu is asked for.
  void askForMenu(const PageHit& hit) {
    if (ui_) ui_->showContextMenu(*this, hit);
  }
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
  PageRect place;  // in its window
  std::pair<Color, double> background{Color::hex(0xFFFFFF), 1};
  int focusCount = 0;
  int endedProcesses = 0;
  // The page guards changes: the user is asked before it is left.
  bool guardsChanges = false;
  bool isFullscreen = false;
  std::vector<EditingCommand> edits;
  std::vector<MediaCommand> mediaCommands;
  bool hasInspector = false;
  uint64_t inputs = 1;  // presses of keys and buttons
  int prints = 0;
  std::optional<std::string> source;
  int stopCount = 0;
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
  using ScriptAnswer = std::function<void(ScriptResult)>;
  void fail(LoadError error);
  void show(const URL& url);
  void endCalls();
  // After the page has shown not to answer, where it is hung.
  template <class T>
  void answerLater(std::function<void(T)> answer, T value, T failure);

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
  PlayingMedia playing_;
  Duration timeout_{0};
  std::optional<URL> committed_;
  std::vector<ScriptAnswer> calls_;  // those that wait for a promise
};

}  // namespace orvel::test
