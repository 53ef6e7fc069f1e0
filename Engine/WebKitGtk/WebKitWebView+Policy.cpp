#include <utility>

#include "BrowserCore/Text.h"
#include "Engine/WebKitGtk/HTTPSFirst.h"
#include "Engine/WebKitGtk/LoadErrors.h"
#include "Engine/WebKitGtk/WebKitDownload.h"
#include "Engine/WebKitGtk/WebKitEngine.h"
#include "Engine/WebKitGtk/WebKitWebView.h"

namespace orvel {

namespace {

constexpr size_t kMostUndecided = 64;

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
          .command = (state & GDK_CONTROL_MASK) != 0,
          .option = (state & GDK_ALT_MASK) != 0};
}

std::optional<URLRequest> requestOf(WebKitURIRequest* request) {
  auto url = URL::parse(webkit_uri_request_get_uri(request));
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
      +[](::WebKitWebView*, WebKitLoadEvent, const char* uri, GError* error,
          gpointer data) -> gboolean {
        const auto self = static_cast<Self*>(data)->shared_from_this();
        return self->loadFailed(uri, *error);
      });
  g_signal_connect(webkit_web_view_get_network_session(view_.get()), "download-started",
                   G_CALLBACK(+[](WebKitNetworkSession*, WebKitDownload* download, gpointer data) {
                     auto* self = static_cast<Self*>(data);
                     if (webkit_download_get_web_view(download) == self->native())
                       self->downloadStarted(download);
                   }),
                   this);
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
  const char* viewAddress = webkit_web_view_get_uri(view_.get());
  question.viewAddress = viewAddress ? viewAddress : "";
  question.isRedirect = webkit_navigation_action_is_redirect(native);
  question.hasUserGesture = action.hasUserGesture;
  question.isHistory = action.navigationType == NavigationType::BackForward ||
                       action.navigationType == NavigationType::Reload ||
                       restoredAddress_ == question.address;
  const auto verdict = classifier_.classify(question, engine_.scheduler().instant());
  if (verdict.source) action.sourceFrame = verdict.source;

  using Target = NavigationClassifier::Target;
  const bool isMainFrame = !isNewWindow && verdict.target == Target::MainFrame;
  if (!isNewWindow) action.targetFrame = FrameInfo{isMainFrame ? 0u : 1u, isMainFrame, {}};
  if (isMainFrame && !action.sourceFrame) action.sourceFrame = mainFrame();

  if (action.request && !isNewWindow) {
    if (action.request->url.hasScheme("http") && verdict.target != Target::SubFrame)
      plainRequest_ = PlainRequest{action.request->url, question.isHistory};
    if (verdict.target == Target::Unknown && undecided_.size() < kMostUndecided)
      undecided_[question.address] = action;
    else
      undecided_.erase(question.address);
  }
  if (!navigation_) return false;
  navigation_->decidePolicyForAction(
      *this, action,
      [decision = GRef<WebKitPolicyDecision>::retain(WEBKIT_POLICY_DECISION(raw))](
          NavigationPolicy policy) { settle(decision.get(), policy); });
  return true;
}

bool WebKitWebView::decideResponse(WebKitResponsePolicyDecision* raw) {
  auto* request = webkit_response_policy_decision_get_request(raw);
  auto* native = webkit_response_policy_decision_get_response(raw);
  const bool isMainFrame = webkit_response_policy_decision_is_main_frame_main_resource(raw);
  const char* asked = webkit_uri_request_get_uri(request);
  const char* answered = webkit_uri_response_get_uri(native);
  const auto url = URL::parse(answered ? answered : asked);
  if (isMainFrame) endWaiting();
  if (!navigation_ || !url) return false;

  NavigationResponse response{.url = *url, .isForMainFrame = isMainFrame};
  response.status = static_cast<int>(webkit_uri_response_get_status_code(native));
  if (const char* type = webkit_uri_response_get_mime_type(native)) response.mimeType = type;
  response.canShowMIMEType = webkit_response_policy_decision_is_mime_type_supported(raw);
  if (auto* headers = webkit_uri_response_get_http_headers(native))
    if (const char* value = soup_message_headers_get_list(headers, "Content-Disposition"))
      response.contentDisposition = value;

  const auto decision = GRef<WebKitPolicyDecision>::retain(WEBKIT_POLICY_DECISION(raw));
  // What could not be told before is known now: the main frame's navigation is put to the delegate
  // after all. Refusing it here leaves the old page in place.
  const auto late = isMainFrame ? undecided_.extract(asked) : decltype(undecided_)::node_type();
  if (late.empty()) {
    answerResponse(decision, response);
    return true;
  }
  NavigationAction action = late.mapped();
  action.targetFrame = FrameInfo{};
  if (!action.sourceFrame) action.sourceFrame = mainFrame();
  navigation_->decidePolicyForAction(
      *this, action, [weak = weak_from_this(), decision, response](NavigationPolicy policy) {
        if (policy != NavigationPolicy::Allow) return settle(decision.get(), policy);
        if (const auto self = weak.lock()) self->answerResponse(decision, response);
      });
  return true;
}

void WebKitWebView::answerResponse(GRef<WebKitPolicyDecision> decision,
                                   const NavigationResponse& response) {
  if (!navigation_) return webkit_policy_decision_use(decision.get());
  navigation_->decidePolicyForResponse(
      *this, response, [decision](NavigationPolicy policy) { settle(decision.get(), policy); });
}

bool WebKitWebView::loadFailed(const char* uri, const GError& raw) {
  endWaiting();
  const LoadError error =
      std::exchange(hasTimedOut_, false) ? timeoutError(uri) : loadError(raw, uri);
  if (fallBackToHTTP(error)) return true;
  hasCommitted_ = false;
  if (navigation_) navigation_->didFailProvisionalNavigation(*this, error);
  // The engine's own error page is never shown.
  return true;
}

WebKitBackForwardListItem* WebKitWebView::historyItem(const URL& url) const {
  auto* list = webkit_web_view_get_back_forward_list(view_.get());
  const auto itemAt = [&](int offset) -> WebKitBackForwardListItem* {
    auto* item = webkit_back_forward_list_get_nth_item(list, offset);
    return item && url.text() == webkit_back_forward_list_item_get_uri(item) ? item : nullptr;
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
  if (!plainRequest_ || !error.failingURL || !error.failingURL->hasScheme("https")) return false;
  const std::string_view plain = plainRequest_->url.text();
  const std::string_view failed = error.failingURL->text();
  if (plain.substr(plain.find(':')) != failed.substr(failed.find(':'))) return false;
  const PlainRequest request = *std::exchange(plainRequest_, std::nullopt);
  waitingLoad_ = request.url;
  // The engine has just told that nothing loads.
  notify(WebViewProperty::IsLoading);
  engine_.httpsFirst().addException(request.url, [weak = weak_from_this(), request] {
    const auto self = weak.lock();
    if (!self || self->waitingLoad_ != request.url) return;
    auto* item = request.isHistory ? self->historyItem(request.url) : nullptr;
    if (!item) return self->load({.url = request.url});
    self->waitingLoad_.reset();
    webkit_web_view_go_to_back_forward_list_item(self->view_.get(), item);
  });
  return true;
}

void WebKitWebView::downloadStarted(WebKitDownload* download) {
  auto adapter = WebKitDownloadAdapter::follow(download);
  if (navigation_) navigation_->didBecomeDownload(*this, adapter);
}

}  // namespace orvel
