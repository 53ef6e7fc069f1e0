#pragma once

#include <webkit/webkit.h>

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "Base/GRef.h"
#include "Base/Task.h"
#include "Engine/Delegates.h"
#include "Engine/WebKitGtk/Policy/NavigationClassifier.h"
#include "Engine/WebKitGtk/View/PendingAnswers.h"
#include "Engine/WebView.h"

namespace orvel {

class WebKitContentController;
class WebKitEngine;

// One web view of the engine. Its topics have source files of their own: loading and mirroring
// (WebKitWebView.cpp), decisions (+Policy), panels and permissions (+Panels), the page's process
// and its end (+Process), scripts, pictures and find (+Content), media (+Media), its place in a
// window (+Widget), its menu and the developer tools (+Menu).
class WebKitWebView final : public WebView, public std::enable_shared_from_this<WebKitWebView> {
 public:
  WebKitWebView(WebKitEngine& engine, WebKitWebContext* context,
                const WebViewConfiguration& configuration);
  ~WebKitWebView() override;
  // Connects to the engine; once, right after the view is owned by a shared pointer.
  void start();

  void setNavigationDelegate(NavigationDelegate* delegate) override { navigation_ = delegate; }
  void setUIDelegate(UIDelegate* delegate) override { ui_ = delegate; }
  const WebViewConfiguration& configuration() const override { return configuration_; }

  void load(const URLRequest& request) override;
  void loadHTMLString(const std::string& html, const std::optional<URL>& baseURL) override;
  void reload(ReloadSource source) override;
  void stopLoading() override;
  void goBack() override;
  void goForward() override;
  std::optional<InteractionState> interactionState() const override;
  bool setInteractionState(const std::string& bytes) override;

  std::optional<std::string> title() const override;
  std::optional<URL> url() const override;
  std::optional<std::string> committedOrigin() const override;
  bool isLoading() const override;
  double estimatedProgress() const override;
  bool canGoBack() const override;
  bool canGoForward() const override;
  Observation observe(WebViewProperty property, std::function<void()> changed) override;
  bool isResponsive() const override;
  void endProcess() override;
  void requestClose(std::function<void(bool)> answer) override;
  bool isBlank() const override { return isBlank_; }
  void setBackground(const Color& color, double opacity) override;
  void setAccessiblePatterns(const std::vector<std::string>& patterns) override;
  double pageZoom() const override;
  void setPageZoom(double zoom) override;
  void exitFullscreen() override;
  bool isInWindow() const override;
  bool holdsPoint(double x, double y) const override;
  void focus() override;
  bool isEditing() const override;
  bool isInspectorOpen() const override { return isInspectorOpen_; }
  void openInspector() override;
  void closeInspector() override;
  void edit(EditingCommand command) override;
  void removeFromParent() override;
  GtkWidget* widget() override { return GTK_WIDGET(view_.get()); }

  void takeSnapshot(const SnapshotRequest& request, std::function<void(ImageRef)> answer) override;
  void createPDF(std::function<void(PageFile)> answer) override;
  void createArchive(std::function<void(PageFile)> answer) override;
  void readSource(std::function<void(std::optional<std::string>)> answer) override;
  void print() override;
  void find(const std::string& text, const FindConfiguration& configuration,
            std::function<void(bool)> answer) override;
  void endFind() override;
  void evaluateJavaScript(const std::string& script, const ContentWorld& world,
                          const std::optional<FrameInfo>& frame,
                          std::function<void(ScriptResult)> answer) override;
  void callAsyncJavaScript(const std::string& body, const std::string& arguments,
                           const ContentWorld& world,
                           std::function<void(ScriptResult)> answer) override;
  PlayingMedia playingMedia() const override { return playingMedia_; }
  void pauseAllMediaPlayback() override;
  void controlMedia(MediaCommand command) override;
  void setMuted(bool isMuted) override;
  void requestMediaPlaybackState(std::function<void(MediaPlaybackState)> answer) override;
  CaptureState cameraCaptureState() const override;
  CaptureState microphoneCaptureState() const override;
  void endCapture() override;

  ::WebKitWebView* native() const { return view_.get(); }
  void downloadStarted(std::shared_ptr<Download> download);

 private:
  // The latest search, and who waits for an answer, the first asked first: the engine answers each
  // search by one of two signals, in their order.
  struct Finding {
    std::string text;
    bool isCaseSensitive = false;
    std::deque<std::function<void(bool)>> answers;
  };
  WebKitContentController& controller() const;
  template <class Handler>
  void connect(const char* signal, Handler handler) {
    g_signal_connect(view_.get(), signal, G_CALLBACK(handler), this);
  }
  void shareProcess();
  void applySettings();
  void connectGestures();
  void updateGestures();
  // The page has left its address alone for a second.
  static Task<> endOfChanges(std::weak_ptr<WebKitWebView> view);
  void connectLoading();
  void connectPolicy();
  void loadChanged(WebKitLoadEvent event);
  // The program is about to have the engine load `address` in the main frame.
  void noteProgramLoad(const char* address);
  // Gives the program's load up unless it is answered in time.
  void awaitAnswer();
  // The load that is under way needs no more waiting; one that has not begun goes on to.
  void endWaiting();
  void stopWaiting();
  void stopNative();
  void goTo(WebKitBackForwardListItem* item);
  static Task<> endUnanswered(std::weak_ptr<WebKitWebView> view, Duration after);
  void connectPanels();
  void runScriptDialog(WebKitScriptDialog* dialog);
  // Whether what the page asks to print is refused.
  bool refusesToPrint(WebKitPrintOperation* operation);
  void countInputs();
  void connectMenu();
  void showMenu(WebKitContextMenu* menu, WebKitHitTestResult* hit);
  void connectFind();
  void connectMedia();
  void answerFinding(bool isFound);
  // No answer will come any more.
  void endFinding();
  void notify(WebViewProperty property);
  // The engine's own address of the view: of the latest load, also before it is answered.
  std::optional<URL> nativeURL() const;
  // The main frame as it is shown: what is still being loaded has no part in its origin.
  FrameInfo mainFrame() const;

  // Process
  void connectProcess();
  // Begins a navigation of the program, and begins it anew in another process unless the page's
  // takes it up in time.
  void navigate(std::function<void()> begin);
  // The page's process answers, or nothing is asked of it any more.
  void forgetNavigation();
  static Task<> replaceStuckProcess(std::weak_ptr<WebKitWebView> view);
  // Takes the view for drawn with the second frame of its first page, or a little later.
  void awaitDrawing();
  void setBlank(bool isBlank);
  static Task<> endAwaitingDrawing(std::weak_ptr<WebKitWebView> view);
  void answerClosing(bool mayClose);
  static Task<> endUnansweredClosing(std::weak_ptr<WebKitWebView> view);

  // Policy
  bool decideAction(WebKitNavigationPolicyDecision* decision, bool isNewWindow);
  bool decideResponse(WebKitResponsePolicyDecision* decision);
  void answerResponse(GRef<WebKitPolicyDecision> decision, const NavigationResponse& response);
  // The request for the main frame's document goes out: which of the navigations that could not be
  // told apart it is for is known now.
  void mainFrameRequests(const URL& address);
  void refuseRestrictedPort(const URL& address);
  void askLate(NavigationAction action);
  // What the main frame asks for may have to be asked over http instead.
  void notePlainRequest(const NavigationAction& action);
  bool loadFailed(WebKitLoadEvent event, const char* uri, const GError& error);
  // The load has come to nothing, unless there is another way.
  void failed(const LoadError& error);
  bool fallBackToHTTP(const LoadError& error);
  // The load that waited for a way back to http has none.
  void giveUp(const LoadError& error);
  // The entry of the history with this address that is nearest to the present one; null without
  // one.
  WebKitBackForwardListItem* historyItem(const URL& url) const;

  // Content
  // Evaluates in every frame of the page, or in that of this number; answers each one's result, and
  // nothing when the page does not answer.
  using FrameResults = std::vector<ScriptResult>;
  void evaluateInFrames(const std::string& script, const ContentWorld& world, uint64_t frame,
                        std::function<void(FrameResults)> answer);
  // Fails a question that the page does not take up, whatever it does with it afterwards.
  void awaitTakingUp(std::function<void()> takenUp);
  // Something in the page has begun or ended to play: asks soon, once for a burst of changes.
  void mediaChanged();
  static Task<> askForMedia(std::weak_ptr<WebKitWebView> view);
  void setPlayingMedia(PlayingMedia media);

  WebKitEngine& engine_;
  WebViewConfiguration configuration_;
  GRef<::WebKitWebView> view_;
  NavigationDelegate* navigation_ = nullptr;
  UIDelegate* ui_ = nullptr;
  // Shared by the views that share a web process: a page and the windows it opened.
  std::shared_ptr<int> processUsers_ = std::make_shared<int>(0);

  struct Observer {
    WebViewProperty property;
    std::function<void()> changed;
  };
  std::map<uint64_t, Observer> observers_;
  uint64_t lastObserver_ = 0;

  int addressChanges_ = 0;  // since the page last rested
  TaskHandle restTimer_;
  // When the page may print by itself again; absent while its dialog is open.
  std::optional<Instant> printsAgainAt_ = Instant();
  NavigationClassifier classifier_;
  // A load that waits for the https-first rule.
  std::optional<URL> waitingLoad_;
  // A load that was stopped and has not ended yet; one that is decided on only now is refused.
  std::optional<std::string> stoppedAddress_;
  // The answer to the program's latest load; absent once it has come.
  struct Awaited {
    Duration timeout;
    bool hasStarted = false;
  };
  std::optional<Awaited> awaited_;
  TaskHandle answerTimer_;
  // The load that was under way is stopped. Of one that would have changed the page's process the
  // engine says nothing, of others that they are cancelled.
  bool isStopped_ = false;
  // What a restored history is loading: the engine reports it as a load like any other.
  std::optional<std::string> restoredAddress_;
  // The http address that was asked for last in the main frame: it may be upgraded.
  struct PlainRequest {
    URL url;
    bool isHistory = false;
  };
  std::optional<PlainRequest> plainRequest_;
  bool isBlank_;
  // A page has been shown since the view was made.
  bool hasShownPage_ = false;
  // The program's latest navigation until the page's process has shown that it answers.
  std::function<void()> stuckNavigation_;
  uint64_t lastNavigation_ = 0;
  TaskHandle stuckTimer_;
  bool isEndingProcess_ = false;
  // Who waits to hear whether the page may be closed; empty when nobody does.
  std::function<void(bool)> closing_;
  TaskHandle closingTimer_;
  // The http address of the awaited load, where the program supplied its https.
  std::optional<URL> suppliedPlain_;
  // The latest navigations that were put to the delegate as a sub-frame's for want of knowledge.
  std::deque<NavigationAction> undecided_;
  // What the delegate has allowed the main frame to load, until it is requested.
  std::optional<URL> allowedURL_;
  // A question that was put when the request was under way already, and who waits for its answer.
  struct LateQuestion {
    std::optional<NavigationPolicy> policy;
    PolicyHandler waiting;
  };
  std::shared_ptr<LateQuestion> lateQuestion_;
  // Where the main frame's latest load has got to.
  enum class Phase { Started, Committed, Ended };
  Phase phase_ = Phase::Ended;
  // The page stands in for another one: that which comes next, or the one under way.
  bool isSubstituteComing_ = false;
  bool isSubstitute_ = false;
  // What the main frame has asked for since its load began.
  std::optional<URL> requestedURL_;
  // Of the page that is shown; the view's own address is already that of the next one.
  std::optional<URL> committedURL_;
  bool isCommittedSubstitute_ = false;
  // The answer that the load was given up for.
  std::optional<LoadError> refusal_;
  Finding finding_;
  PendingAnswers answers_;
  // Goes with the last reference to a dialog that the page waits for.
  std::weak_ptr<WebKitScriptDialog> dialog_;
  PlayingMedia playingMedia_;
  TaskHandle mediaTimer_;
  bool isInspectorOpen_ = false;
  uint64_t inputs_ = 0;  // presses of keys and buttons
};

}  // namespace orvel
