#include <utility>

#include "Engine/WebKitGtk/View/WebKitWebView.h"
#include "Engine/WebKitGtk/WebKitEngine.h"

// The page's process: whether it answers, and its end.
namespace orvel {

namespace {

constexpr Duration kStuckAfter = 5s;
constexpr Duration kMaxClosing = 3s;
constexpr Duration kMaxDrawing = 300ms;

}  // namespace

void WebKitWebView::connectProcess() {
  using Self = WebKitWebView;
  connect(
      "notify::is-web-process-responsive", +[](::WebKitWebView*, GParamSpec*, gpointer data) {
        static_cast<Self*>(data)->notify(WebViewProperty::IsResponsive);
      });
  connect(
      "web-process-terminated",
      +[](::WebKitWebView*, WebKitWebProcessTerminationReason, gpointer data) {
        const auto self = static_cast<Self*>(data)->shared_from_this();
        self->endFinding();
        self->answers_.fail(PendingAnswers::EndsWith::View);
        self->setPlayingMedia({});
        self->committedURL_.reset();
        self->isSubstituteComing_ = false;
        self->answerClosing(true);
        self->setBlank(true);
        if (self->navigation_ && !self->isEndingProcess_)
          self->navigation_->webContentProcessDidTerminate(*self);
      });
  connect(
      "close", +[](::WebKitWebView*, gpointer data) {
        const auto self = static_cast<Self*>(data)->shared_from_this();
        if (self->closing_)
          self->answerClosing(true);
        else if (self->ui_)
          self->ui_->webViewDidClose(*self);
      });
}

bool WebKitWebView::isResponsive() const {
  return webkit_web_view_get_is_web_process_responsive(view_.get());
}

void WebKitWebView::endProcess() {
  forgetNavigation();
  isEndingProcess_ = true;
  webkit_web_view_terminate_web_process(view_.get());
  isEndingProcess_ = false;
  notify(WebViewProperty::IsResponsive);
}

void WebKitWebView::navigate(std::function<void()> begin) {
  if (!isResponsive()) endProcess();
  begin();
  // A first load may wait as long as its process takes to start.
  if (!hasShownPage_) return;
  stuckNavigation_ = std::move(begin);
  stuckTimer_ = engine_.scheduler().start(replaceStuckProcess(weak_from_this()));
  // What the process is sent it answers in order.
  const uint64_t number = ++lastNavigation_;
  evaluateJavaScript("0", ContentWorld::defaultClient(), std::nullopt,
                     [weak = weak_from_this(), number](const ScriptResult& result) {
                       const auto self = weak.lock();
                       if (self && result && self->lastNavigation_ == number)
                         self->forgetNavigation();
                     });
}

void WebKitWebView::forgetNavigation() {
  stuckNavigation_ = nullptr;
  stuckTimer_.cancel();
}

Task<> WebKitWebView::replaceStuckProcess(std::weak_ptr<WebKitWebView> weak) {
  const SleepResult slept = co_await sleep(kStuckAfter);
  const auto self = weak.lock();
  if (slept == SleepResult::Cancelled || !self || !self->stuckNavigation_) co_return;
  const auto begin = self->stuckNavigation_;
  self->endProcess();
  begin();
}

// Drawing

void WebKitWebView::setBlank(bool isBlank) {
  if (std::exchange(isBlank_, isBlank) != isBlank) notify(WebViewProperty::IsBlank);
}

void WebKitWebView::awaitDrawing() {
  callAsyncJavaScript(
      "await new Promise(done => requestAnimationFrame(() => "
      "requestAnimationFrame(done)))",
      "{}", ContentWorld::defaultClient(), [weak = weak_from_this()](const ScriptResult& result) {
        const auto self = weak.lock();
        if (self && result) self->setBlank(false);
      });
  engine_.scheduler().start(endAwaitingDrawing(weak_from_this())).detach();
}

Task<> WebKitWebView::endAwaitingDrawing(std::weak_ptr<WebKitWebView> weak) {
  co_await sleep(kMaxDrawing);
  if (const auto self = weak.lock()) self->setBlank(false);
}

// Closing

void WebKitWebView::requestClose(std::function<void(bool)> answer) {
  answerClosing(false);
  if (!isResponsive()) return answer(true);
  closing_ = std::move(answer);
  closingTimer_ = engine_.scheduler().start(endUnansweredClosing(weak_from_this()));
  const auto self = shared_from_this();
  webkit_web_view_try_close(view_.get());
}

void WebKitWebView::answerClosing(bool mayClose) {
  closingTimer_.cancel();
  if (const auto answer = std::exchange(closing_, nullptr)) answer(mayClose);
}

Task<> WebKitWebView::endUnansweredClosing(std::weak_ptr<WebKitWebView> weak) {
  const SleepResult slept = co_await sleep(kMaxClosing);
  const auto self = weak.lock();
  if (slept == SleepResult::Done && self) self->answerClosing(true);
}

}  // namespace orvel
