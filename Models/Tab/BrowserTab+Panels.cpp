#include "Base/Texts.h"
#include "Models/Tab/BrowserTab.h"

// What pages and servers ask the user, and the windows that pages open.
namespace orvel {

namespace {

// A page may ask with megabytes of text; nobody reads more than this.
constexpr size_t kLongestText = 4096;

std::string bounded(const std::string& text, std::string_view ellipsis = "…") {
  if (text.size() <= kLongestText) return text;
  size_t end = kLongestText;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end).append(ellipsis);
}

Alert pageAlert(const FrameInfo& frame, const std::string& message,
                std::vector<std::string> buttons) {
  return {.messageText = frame.securityOriginHost,
          .informativeText = bounded(message),
          .buttons = std::move(buttons)};
}

}  // namespace

std::shared_ptr<WebView> BrowserTab::createWebView(WebView& opener,
                                                   const WebViewConfiguration& configuration,
                                                   const NavigationAction& action) {
  if (handOver(opener, action)) return nullptr;
  const auto address = action.request ? std::optional(action.request->url) : std::nullopt;
  const TabRef opened = host()->openWindow(address, *this, configuration);
  return opened ? opened->webView() : nullptr;
}

void BrowserTab::webViewDidClose(WebView&) { host()->close(*this); }

void BrowserTab::showScriptDialog(const WebView& view, Alert alert, PageQuestions::Answer answer) {
  using Audience = ScriptDialogs::Audience;
  scriptDialogs_.show(std::move(alert), view.isInWindow() ? Audience::Present : Audience::Absent,
                      std::move(answer));
}

void BrowserTab::runJavaScriptAlertPanel(WebView& view, const std::string& message,
                                         const FrameInfo& frame, std::function<void()> answer) {
  showScriptDialog(view, pageAlert(frame, message, {_("OK")}),
                   [answer = std::move(answer)](const AlertAnswer&) { answer(); });
}

void BrowserTab::runJavaScriptConfirmPanel(WebView& view, const std::string& message,
                                           const FrameInfo& frame,
                                           std::function<void(bool)> answer) {
  showScriptDialog(
      view, pageAlert(frame, message, {_("OK"), _("Cancel")}),
      [answer = std::move(answer)](const AlertAnswer& given) { answer(given.isFirstButton()); });
}

void BrowserTab::runJavaScriptTextInputPanel(
    WebView& view, const std::string& prompt, const std::string& defaultText,
    const FrameInfo& frame, std::function<void(std::optional<std::string>)> answer) {
  Alert alert = pageAlert(frame, prompt, {_("OK"), _("Cancel")});
  alert.fields = {{.text = bounded(defaultText, "")}};
  showScriptDialog(view, std::move(alert), [answer = std::move(answer)](const AlertAnswer& given) {
    if (given.isFirstButton() && !given.fields.empty())
      answer(given.fields.front());
    else
      answer(std::nullopt);
  });
}

void BrowserTab::runBeforeUnloadPanel(WebView& view, const FrameInfo&,
                                      std::function<void(bool)> answer) {
  if (closing_) {
    closing_->hasAskedUser = true;
    if (!view.isInWindow()) host()->select(*this);
  } else if (!view.isInWindow()) {
    return answer(true);
  }
  questions.ask({.voice = PageQuestion::Voice::Program,
                 .alert = {.messageText = _("Leave this page?"),
                           .informativeText = _("What you have entered may be lost."),
                           .buttons = {_("Stay"), _("Leave")}},
                 .escape = 0},
                [weak = weak_from_this(), answer = std::move(answer)](const AlertAnswer& given) {
                  const bool isLeaving = given.button == 1u;
                  if (const auto tab = weak.lock(); tab && !isLeaving) tab->scriptDialogs_.stay();
                  answer(isLeaving);
                });
}

void BrowserTab::runOpenPanel(
    WebView& view, const OpenPanelParameters& parameters,
    std::function<void(std::optional<std::vector<std::filesystem::path>>)> answer) {
  if (!view.isInWindow()) return answer(std::nullopt);
  services_.desktop.dialogs.showOpenPanel(
      host()->window(),
      {.allowsMultipleSelection = parameters.allowsMultipleSelection,
       .allowsFiles = true,
       .allowsDirectories = parameters.allowsDirectories,
       .mimeTypes = parameters.mimeTypes},
      std::move(answer));
}

void BrowserTab::didReceiveAuthenticationChallenge(
    WebView& view, const AuthenticationChallenge& challenge,
    std::function<void(std::optional<Credential>)> answer) {
  if (!view.isInWindow()) return answer(std::nullopt);
  std::string explanation = challenge.isProxy ? _("The proxy asks you to sign in.")
                                              : _("The server asks you to sign in.");
  if (challenge.isRetry) explanation = _("The user name or password was not accepted.");
  if (challenge.isInsecure)
    explanation += " " + std::string(_("Your password will be sent unencrypted."));
  if (!challenge.realm.empty()) explanation += "\n“" + bounded(challenge.realm) + "”";
  questions.ask({.voice = PageQuestion::Voice::Program,
                 .symbol = "lock.fill",
                 .alert = {.messageText = challenge.host,
                           .informativeText = std::move(explanation),
                           .buttons = {_("OK"), _("Cancel")},
                           .fields = {{.label = _("User name")},
                                      {.label = _("Password"), .isSecret = true}}}},
                [answer = std::move(answer)](const AlertAnswer& given) {
                  if (given.isFirstButton() && given.fields.size() == 2)
                    answer(Credential{given.fields[0], given.fields[1]});
                  else
                    answer(std::nullopt);
                });
}

void BrowserTab::denyDevice(const std::string& message,
                            std::function<void(PermissionDecision)> answer) {
  host()->showToast(message, {});
  answer(PermissionDecision::Deny);
}

void BrowserTab::requestMediaCapturePermission(WebView&, const std::string&, CaptureDeviceType,
                                               std::function<void(PermissionDecision)> answer) {
  denyDevice(_("Camera and microphone aren’t available yet"), std::move(answer));
}

void BrowserTab::requestGeolocationPermission(WebView&, const std::string&,
                                              std::function<void(PermissionDecision)> answer) {
  denyDevice(_("Your location isn’t available yet"), std::move(answer));
}

void BrowserTab::fullscreenDidChange(WebView&, bool isFullscreen) {
  host()->fullscreenDidChange(*this, isFullscreen);
}

}  // namespace orvel
