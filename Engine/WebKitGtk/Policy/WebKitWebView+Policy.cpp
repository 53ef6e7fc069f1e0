#include <algorithm>
#include <utility>

#include "BrowserCore/Addresses/RestrictedPorts.h"
#include "BrowserCore/Text/Text.h"
#include "Engine/WebKitGtk/Policy/HTTPSFirst.h"
#include "Engine/WebKitGtk/Policy/LoadErrors.h"
#include "Engine/WebKitGtk/Policy/ReportedURL.h"
#include "Engine/WebKitGtk/View/WebKitWebView.h"
#include "Engine/WebKitGtk/WebKitEngine.h"

namespace orvel {

namespace {

constexpr size_t kMaxUndecided = 256;

NavigationType typeOf(WebKitNavigationAction* action) {
  switch (webkit_navigation_action_get_navigation_type(action)) {
    case WEBKIT_NAVIGATION_TYPE_LINK_CLICKED:
      return NavigationType::LinkActivated;
    case WEBKIT_NAVIGATION_TYPE_FORM_SUBMITTED:
      return NavigationType::FormSubmitted;
    case WEBKIT_NAVIGATION_TYPE_BACK_FORWARD:
      return NavigationType::BackForward;
    case WEBKIT_NAVIGATION_TYPE_RELOAD:
      return NavigationType::Reload;
    case WEBKIT_NAVIGATION_TYPE_FORM_RESUBMITTED:
      return NavigationType::FormResubmitted;
    default:
      return NavigationType::Other;
  }
}

MouseButton buttonOf(WebKitNavigationAction* action) {
  switch (webkit_navigation_action_get_mouse_button(action)) {
    case GDK_BUTTON_PRIMARY:
      return MouseButton::Left;
    case GDK_BUTTON_MIDDLE:
      return MouseButton::Middle;
    case GDK_BUTTON_SECONDARY:
      return MouseButton::Right;
    default:
      return MouseButton::None;
  }
}

ModifierFlags modifiersOf(WebKitNavigationAction* action) {
  const unsigned state = webkit_navigation_action_get_modifiers(action);
  return {.shift = (state & GDK_SHIFT_MASK) != 0,
          .control = (state & GDK_CONTROL_MASK) != 0,
          .alt = (state & GDK_ALT_MASK) != 0};
}

std::optional<URLRequest> requestOf(WebKitURIRequest* request) {
  auto url = reportedURL(webkit_uri_request_get_uri(request));
  if (!url) return std::nullopt;
  URLRequest result{.url = *url};
  if (const char* method = webkit_uri_request_get_http_method(request)) result.method = method;
  return result;
}

void settle(WebKitPolicyDecision* decision, NavigationPolicy policy) {
  switch (policy) {
    case NavigationPolicy::Allow:
      return webkit_policy_decision_use(decision);
    case NavigationPolicy::Cancel:
      return webkit_policy_decision_ignore(decision);
    case NavigationPolicy::Download:
      return webkit_policy_decision_download(decision);
  }
}

// A server's or a proxy's error with nothing to show.
bool isEmptyRefusal(WebKitURIResponse* native, const NavigationResponse& response) {
  if (response.status < 400) return false;
  auto* headers = webkit_uri_response_get_http_headers(native);
  const char* length = headers ? soup_message_headers_get_one(headers, "Content-Length") : nullptr;
  return !response.canShowMIMEType || g_strcmp0(length, "0") == 0;
}

}  // namespace

void WebKitWebView::connectPolicy() {
  using Self = WebKitWebView;
  connect(
      "decide-policy",
      +[](::WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
          gpointer data) -> gboolean {
        const auto self = static_cast<Self*>(data)->shared_from_this();
        switch (type) {
          case WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION:
          case WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION:
            return self->decideAction(WEBKIT_NAVIGATION_POLICY_DECISION(decision),
                                      type == WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION);
          case WEBKIT_POLICY_DECISION_TYPE_RESPONSE:
            return self->decideResponse(WEBKIT_RESPONSE_POLICY_DECISION(decision));
        }
        return FALSE;
      });
  connect(
      "load-failed",
      +[](::WebKitWebView*, WebKitLoadEvent event, const char* uri, GError* error,
          gpointer data) -> gboolean {
        const auto self = static_cast<Self*>(data)->shared_from_this();
        return self->loadFailed(event, uri, *error);
      });
  connect(
      "resource-load-started", +[](::WebKitWebView* view, WebKitWebResource* resource,
                                   WebKitURIRequest* request, gpointer data) {
        if (webkit_web_view_get_main_resource(view) != resource) return;
        const auto self = static_cast<Self*>(data)->shared_from_this();
        if (const auto url = reportedURL(webkit_uri_request_get_uri(request)))
          self->mainFrameRequests(*url);
      });
}

bool WebKitWebView::decideAction(WebKitNavigationPolicyDecision* raw, bool isNewWindow) {
  auto* native = webkit_navigation_policy_decision_get_navigation_action(raw);
  NavigationAction action;
  action.request = requestOf(webkit_navigation_action_get_request(native));
  action.navigationType = typeOf(native);
  action.modifierFlags = modifiersOf(native);
  action.buttonNumber = buttonOf(native);
  action.hasUserGesture = webkit_navigation_action_is_user_gesture(native);

  if (action.request && !isNewWindow &&
      std::exchange(stoppedAddress_, std::nullopt) == action.request->url.text()) {
    webkit_policy_decision_ignore(WEBKIT_POLICY_DECISION(raw));
    return true;
  }

  NavigationClassifier::Question question;
  question.address = action.request ? action.request->url.text() : std::string();
  const auto viewURL = nativeURL();
  question.viewAddress = viewURL ? viewURL->text() : std::string();
  question.isRedirect = webkit_navigation_action_is_redirect(native);
  question.isMainFrameWaiting = phase_ == Phase::Started;
  const auto verdict = classifier_.classify(question, engine_.scheduler().instant());
  // The user's clicks are reported. A script's click is one without a button.
  if (verdict.source)
    action.sourceFrame = verdict.source;
  else if (action.navigationType == NavigationType::LinkActivated &&
           action.buttonNumber == MouseButton::None)
    action.navigationType = NavigationType::Other;

  using Target = NavigationClassifier::Target;
  const bool isMainFrame = !isNewWindow && verdict.target == Target::MainFrame;
  if (!isNewWindow) action.targetFrame = FrameInfo{isMainFrame ? 0u : 1u, isMainFrame, {}};
  if (isMainFrame && !action.sourceFrame) action.sourceFrame = mainFrame();

  if (action.request && isMainFrame && hasRestrictedPort(action.request->url)) {
    webkit_policy_decision_ignore(WEBKIT_POLICY_DECISION(raw));
    refuseRestrictedPort(action.request->url);
    return true;
  }
  if (action.request && isMainFrame) notePlainRequest(action);
  if (action.request && !isNewWindow && verdict.target == Target::Unknown) {
    if (undecided_.size() == kMaxUndecided) undecided_.pop_front();
    undecided_.push_back(action);
    // Nothing comes of it, in whichever frame; in the main frame the question follows.
    if (!engine_.canLoad(action.request->url)) {
      webkit_policy_decision_use(WEBKIT_POLICY_DECISION(raw));
      return true;
    }
  }
  if (!navigation_) return false;
  navigation_->decidePolicyForAction(
      *this, action,
      [weak = weak_from_this(), asked = isMainFrame ? action.request : std::nullopt,
       decision = GRef<WebKitPolicyDecision>::retain(WEBKIT_POLICY_DECISION(raw))](
          NavigationPolicy policy) {
        const auto self = weak.lock();
        if (self && asked && policy == NavigationPolicy::Allow) self->allowedURL_ = asked->url;
        settle(decision.get(), policy);
      });
  return true;
}

// The engine itself shows a blank page without a word.
void WebKitWebView::refuseRestrictedPort(const URL& address) {
  engine_.scheduler().post([weak = weak_from_this(), address] {
    if (const auto self = weak.lock()) self->failed(restrictedPortError(address));
  });
}

void WebKitWebView::notePlainRequest(const NavigationAction& action) {
  const URL& url = action.request->url;
  plainRequest_.reset();
  if (url.hasScheme("http"))
    plainRequest_ = PlainRequest{url, action.navigationType == NavigationType::BackForward ||
                                          action.navigationType == NavigationType::Reload ||
                                          restoredAddress_ == url.text()};
  else if (suppliedPlain_ && isUpgrade(url, *suppliedPlain_))
    plainRequest_ = PlainRequest{*suppliedPlain_};
}

void WebKitWebView::mainFrameRequests(const URL& address) {
  const auto isMeant = [&](const URL& asked) {
    return isSameDocument(asked, address) || isUpgrade(address, asked);
  };
  const auto former = std::exchange(requestedURL_, address);
  const auto allowed = std::exchange(allowedURL_, std::nullopt);
  if (isSubstitute_ || (allowed && isMeant(*allowed)) || (former && isMeant(*former))) return;
  const auto found =
      std::find_if(undecided_.rbegin(), undecided_.rend(),
                   [&](const NavigationAction& action) { return isMeant(action.request->url); });
  NavigationAction action{.request = URLRequest{.url = address}};
  if (found != undecided_.rend()) {
    action = std::move(*found);
    undecided_.erase(std::next(found).base());
  }
  notePlainRequest(action);
  askLate(std::move(action));
}

// Refusing it leaves the old page in place.
void WebKitWebView::askLate(NavigationAction action) {
  if (!navigation_) return;
  action.targetFrame = FrameInfo{};
  if (!action.sourceFrame) action.sourceFrame = mainFrame();
  const auto question = lateQuestion_ = std::make_shared<LateQuestion>();
  navigation_->decidePolicyForAction(
      *this, action, [weak = weak_from_this(), question](NavigationPolicy policy) {
        question->policy = policy;
        if (const auto waiting = std::exchange(question->waiting, nullptr)) return waiting(policy);
        const auto self = weak.lock();
        if (policy == NavigationPolicy::Cancel && self && self->lateQuestion_ == question)
          webkit_web_view_stop_loading(self->view_.get());
      });
}

bool WebKitWebView::decideResponse(WebKitResponsePolicyDecision* raw) {
  auto* request = webkit_response_policy_decision_get_request(raw);
  auto* native = webkit_response_policy_decision_get_response(raw);
  const bool isMainFrame = webkit_response_policy_decision_is_main_frame_main_resource(raw);
  const char* asked = webkit_uri_request_get_uri(request);
  const char* answered = webkit_uri_response_get_uri(native);
  const auto url = reportedURL(answered ? answered : asked);
  if (isMainFrame) endWaiting();
  if (!navigation_) return false;
  if (!url) {
    webkit_policy_decision_ignore(WEBKIT_POLICY_DECISION(raw));
    return true;
  }

  NavigationResponse response{.url = *url, .isForMainFrame = isMainFrame};
  response.status = static_cast<int>(webkit_uri_response_get_status_code(native));
  if (const char* type = webkit_uri_response_get_mime_type(native)) response.mimeType = type;
  response.canShowMIMEType = webkit_response_policy_decision_is_mime_type_supported(raw);
  if (auto* headers = webkit_uri_response_get_http_headers(native))
    if (const char* value = soup_message_headers_get_list(headers, "Content-Disposition"))
      response.contentDisposition = value;

  if (isMainFrame && isEmptyRefusal(native, response)) {
    refusal_ = refusalError(response.status, *url);
    webkit_policy_decision_ignore(WEBKIT_POLICY_DECISION(raw));
    return true;
  }

  const auto decision = GRef<WebKitPolicyDecision>::retain(WEBKIT_POLICY_DECISION(raw));
  const auto answer = [weak = weak_from_this(), decision, response](NavigationPolicy policy) {
    if (policy != NavigationPolicy::Allow) return settle(decision.get(), policy);
    if (const auto self = weak.lock()) self->answerResponse(decision, response);
  };
  if (!isMainFrame || !lateQuestion_)
    answer(NavigationPolicy::Allow);
  else if (lateQuestion_->policy)
    answer(*lateQuestion_->policy);
  else
    lateQuestion_->waiting = answer;
  return true;
}

void WebKitWebView::answerResponse(GRef<WebKitPolicyDecision> decision,
                                   const NavigationResponse& response) {
  if (!navigation_) return webkit_policy_decision_use(decision.get());
  navigation_->decidePolicyForResponse(
      *this, response, [decision](NavigationPolicy policy) { settle(decision.get(), policy); });
}

bool WebKitWebView::loadFailed(WebKitLoadEvent event, const char* uri, const GError& raw) {
  endWaiting();
  phase_ = Phase::Ended;
  LoadError error = loadError(raw, uri);
  if (auto refusal = std::exchange(refusal_, std::nullopt))
    if (error.kind == LoadError::Kind::PolicyInterrupted) error = std::move(*refusal);
  // The engine's own error page is never shown.
  if (event == WEBKIT_LOAD_COMMITTED) {
    if (navigation_) navigation_->didFail(*this, error);
    return true;
  }
  if (std::exchange(isStopped_, false) && error.kind == LoadError::Kind::Cancelled) return true;
  if (lateQuestion_ && lateQuestion_->policy == NavigationPolicy::Cancel)
    error.kind = LoadError::Kind::PolicyInterrupted;
  failed(error);
  return true;
}

void WebKitWebView::failed(const LoadError& error) {
  phase_ = Phase::Ended;
  if (!fallBackToHTTP(error) && navigation_)
    navigation_->didFailProvisionalNavigation(*this, error);
}

WebKitBackForwardListItem* WebKitWebView::historyItem(const URL& url) const {
  auto* list = webkit_web_view_get_back_forward_list(view_.get());
  const auto itemAt = [&](int offset) -> WebKitBackForwardListItem* {
    auto* item = webkit_back_forward_list_get_nth_item(list, offset);
    return item && url == reportedURL(webkit_back_forward_list_item_get_uri(item)) ? item : nullptr;
  };
  const auto length = static_cast<int>(webkit_back_forward_list_get_length(list));
  for (int offset = 0; offset < length; ++offset)
    for (const int signedOffset : {offset, -offset})
      if (auto* item = itemAt(signedOffset)) return item;
  return nullptr;
}

// An upgraded load that failed is made again as it was asked for: a step in the history as such, so
// that the page comes back at its place.
bool WebKitWebView::fallBackToHTTP(const LoadError& error) {
  using Kind = LoadError::Kind;
  if (error.kind == Kind::Cancelled || error.kind == Kind::PolicyInterrupted) return false;
  if (!plainRequest_ || !error.failingURL || !isUpgrade(*error.failingURL, plainRequest_->url))
    return false;
  const PlainRequest request = *std::exchange(plainRequest_, std::nullopt);
  // What leads back to https although it was asked over http has no other way.
  if (engine_.httpsFirst().isException(request.url)) return false;
  waitingLoad_ = request.url;
  // The engine has just told that nothing loads.
  notify(WebViewProperty::IsLoading);
  engine_.httpsFirst().addException(
      request.url, [weak = weak_from_this(), request, error](bool isInForce) {
        const auto self = weak.lock();
        if (!self || self->waitingLoad_ != request.url) return;
        if (!isInForce) return self->giveUp(error);
        auto* item = request.isHistory ? self->historyItem(request.url) : nullptr;
        if (!item) return self->load({.url = request.url});
        self->waitingLoad_.reset();
        self->goTo(item);
      });
  return true;
}

void WebKitWebView::giveUp(const LoadError& error) {
  waitingLoad_.reset();
  notify(WebViewProperty::IsLoading);
  if (navigation_) navigation_->didFailProvisionalNavigation(*this, error);
}

void WebKitWebView::downloadStarted(std::shared_ptr<Download> download) {
  if (navigation_) navigation_->didBecomeDownload(*this, std::move(download));
}

}  // namespace orvel
