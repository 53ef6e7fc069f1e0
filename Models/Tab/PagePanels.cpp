#include "Models/Tab/PagePanels.h"

#include "Base/Texts.h"
#include "Models/Tab/BrowserTab.h"

namespace orvel {

namespace {

// A page may ask with megabytes of text; nobody reads more than this.
constexpr size_t kMaxText = 4096;

std::string bounded(const std::string& text, std::string_view ellipsis = "…") {
  if (text.size() <= kMaxText) return text;
  size_t end = kMaxText;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end).append(ellipsis);
}

Alert pageAlert(const FrameInfo& frame, const std::string& message,
                std::vector<std::string> buttons) {
  return {.messageText = frame.securityOriginHost,
          .informativeText = bounded(message),
          .buttons = std::move(buttons)};
}

// In quotation marks that the text's own marks of direction cannot reach.
std::string quoted(std::string text) {
  constexpr std::string_view kBegin = "\u2068";
  constexpr std::string_view kEnd = "\u2069";
  for (size_t at = 0; (at = text.find(kEnd, at)) != std::string::npos;) text.erase(at, kEnd.size());
  return std::string("“").append(kBegin).append(text).append(kEnd).append("”");
}

}  // namespace

PagePanels::PagePanels(BrowserTab& tab, const Services& services, OtherApplications& applications)
    : tab_(tab),
      services_(services),
      applications_(applications),
      dialogs_(tab.questions, [this] { askAboutUnresponsivePage(); }) {}

std::shared_ptr<WebView> PagePanels::createWebView(WebView& opener,
                                                   const WebViewConfiguration& configuration,
                                                   const NavigationAction& action) {
  if (applications_.handOver(opener, action) || !popUps_.allows(action)) return nullptr;
  const auto address = action.request ? std::optional(action.request->url) : std::nullopt;
  const TabRef opened = tab_.host()->openWindow(address, tab_, configuration);
  return opened ? opened->webView() : nullptr;
}

void PagePanels::webViewDidClose(WebView&) { tab_.host()->close(tab_); }

void PagePanels::showScriptDialog(const WebView& view, Alert alert, PageQuestions::Answer answer) {
  using Audience = ScriptDialogs::Audience;
  dialogs_.show(std::move(alert), view.isInWindow() ? Audience::Present : Audience::Absent,
                std::move(answer));
}

void PagePanels::runJavaScriptAlertPanel(WebView& view, const std::string& message,
                                         const FrameInfo& frame, std::function<void()> answer) {
  showScriptDialog(view, pageAlert(frame, message, {_("OK")}),
                   [answer = std::move(answer)](const AlertAnswer&) { answer(); });
}

void PagePanels::runJavaScriptConfirmPanel(WebView& view, const std::string& message,
                                           const FrameInfo& frame,
                                           std::function<void(bool)> answer) {
  showScriptDialog(
      view, pageAlert(frame, message, {_("OK"), _("Cancel")}),
      [answer = std::move(answer)](const AlertAnswer& given) { answer(given.isFirstButton()); });
}

void PagePanels::runJavaScriptTextInputPanel(
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

void PagePanels::runBeforeUnloadPanel(WebView& view, const FrameInfo&,
                                      std::function<void(bool)> answer) {
  if (closing_) {
    closing_->hasAskedUser = true;
    if (!view.isInWindow()) tab_.host()->select(tab_);
  } else if (!view.isInWindow()) {
    return answer(true);
  }
  tab_.questions.ask(
      {.voice = PageQuestion::Voice::Program,
       .alert = {.messageText = _("Leave this page?"),
                 .informativeText = _("What you have entered may be lost."),
                 .buttons = {_("Stay"), _("Leave")}},
       .escape = 0},
      [this, weak = tab_.weak_from_this(), answer = std::move(answer)](const AlertAnswer& given) {
        const bool isLeaving = given.button == 1u;
        if (const auto tab = weak.lock(); tab && !isLeaving) stay();
        answer(isLeaving);
      });
}

void PagePanels::runOpenPanel(
    WebView& view, const OpenPanelParameters& parameters,
    std::function<void(std::optional<std::vector<std::filesystem::path>>)> answer) {
  if (!view.isInWindow()) return answer(std::nullopt);
  services_.desktop.dialogs.showOpenPanel(
      tab_.host()->window(),
      {.allowsMultipleSelection = parameters.allowsMultipleSelection,
       .allowsFiles = true,
       .allowsDirectories = parameters.allowsDirectories,
       .mimeTypes = parameters.mimeTypes},
      std::move(answer));
}

void PagePanels::signIn(const WebView& view, const AuthenticationChallenge& challenge,
                        std::function<void(std::optional<Credential>)> answer) {
  if (!view.isInWindow()) return answer(std::nullopt);
  std::string explanation = challenge.isProxy ? _("The proxy asks you to sign in.")
                                              : _("The server asks you to sign in.");
  if (challenge.isRetry) explanation = _("The user name or password was not accepted.");
  if (challenge.isInsecure)
    explanation += " " + std::string(_("Your password will be sent unencrypted."));
  if (!challenge.realm.empty()) explanation += "\n" + quoted(bounded(challenge.realm));
  tab_.questions.ask({.voice = PageQuestion::Voice::Program,
                      .symbols = {"lock.fill"},
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

void PagePanels::requestMediaCapturePermission(WebView& view, const std::string& originHost,
                                               CaptureDeviceType type,
                                               std::function<void(PermissionDecision)> answer) {
  using enum PageDevice;
  const auto devices = type == CaptureDeviceType::Camera       ? std::vector{Camera}
                       : type == CaptureDeviceType::Microphone ? std::vector{Microphone}
                                                               : std::vector{Camera, Microphone};
  tab_.permissions.decidePermission(view, originHost, devices, std::move(answer));
}

void PagePanels::requestGeolocationPermission(WebView& view, const std::string& originHost,
                                              std::function<void(PermissionDecision)> answer) {
  tab_.permissions.decidePermission(view, originHost, {PageDevice::Location}, std::move(answer));
}

void PagePanels::showContextMenu(WebView&, const PageHit& hit) {
  tab_.host()->showPageMenu(tab_, hit);
}

void PagePanels::fullscreenDidChange(WebView&, bool isFullscreen) {
  tab_.host()->fullscreenDidChange(tab_, isFullscreen);
}

}  // namespace orvel
