#include <utility>

#include "Engine/WebKitGtk/Policy/ReportedURL.h"
#include "Engine/WebKitGtk/View/WebKitWebView.h"
#include "Engine/WebKitGtk/View/WebKitWindowOpener.h"
#include "Engine/WebKitGtk/WebKitEngine.h"

namespace orvel {

namespace {

std::string textOf(const char* text) { return text ? text : ""; }

// The dialog is answered when its last reference goes. Closing it by name while its signal is still
// being emitted would crash the engine.
std::shared_ptr<WebKitScriptDialog> hold(WebKitScriptDialog* dialog) {
  return {webkit_script_dialog_ref(dialog), &webkit_script_dialog_unref};
}

void answerPermission(WebKitPermissionRequest* request, PermissionDecision decision) {
  if (decision == PermissionDecision::Grant)
    webkit_permission_request_allow(request);
  else
    webkit_permission_request_deny(request);
}

CaptureDeviceType deviceType(WebKitUserMediaPermissionRequest* request) {
  const bool audio = webkit_user_media_permission_is_for_audio_device(request);
  const bool video = webkit_user_media_permission_is_for_video_device(request);
  if (audio && video) return CaptureDeviceType::CameraAndMicrophone;
  return audio ? CaptureDeviceType::Microphone : CaptureDeviceType::Camera;
}

// A server may ask for a certificate instead; nobody has one here, so it goes on without.
bool wantsPassword(WebKitAuthenticationRequest* request) {
  const auto scheme = webkit_authentication_request_get_scheme(request);
  return scheme != WEBKIT_AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE_REQUESTED &&
         scheme != WEBKIT_AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE_PIN_REQUESTED;
}

// By who asks, whatever page it is asked for. The engine does not say how a proxy is spoken to,
// which nearly always is in the open.
bool isInsecure(WebKitAuthenticationRequest* request) {
  if (webkit_authentication_request_is_for_proxy(request)) return true;
  auto* origin = webkit_authentication_request_get_security_origin(request);
  const std::string protocol = textOf(webkit_security_origin_get_protocol(origin));
  webkit_security_origin_unref(origin);
  return protocol != "https";
}

void runFileChooser(WebKitWebView& view, UIDelegate& ui, WebKitFileChooserRequest* raw) {
  const auto request = GRef<WebKitFileChooserRequest>::retain(raw);
  OpenPanelParameters parameters;
  parameters.allowsMultipleSelection = webkit_file_chooser_request_get_select_multiple(raw);
  for (auto* types = webkit_file_chooser_request_get_mime_types(raw); types && *types; ++types)
    parameters.mimeTypes.emplace_back(*types);
  ui.runOpenPanel(view, parameters,
                  [request](const std::optional<std::vector<std::filesystem::path>>& files) {
                    if (!files || files->empty())
                      return webkit_file_chooser_request_cancel(request.get());
                    std::vector<const char*> names;
                    for (const auto& file : *files) names.push_back(file.c_str());
                    names.push_back(nullptr);
                    webkit_file_chooser_request_select_files(request.get(), names.data());
                  });
}

}  // namespace

void WebKitWebView::runScriptDialog(WebKitScriptDialog* raw) {
  const auto dialog = hold(raw);
  dialog_ = dialog;
  const FrameInfo frame = mainFrame();
  const std::string message = textOf(webkit_script_dialog_get_message(raw));
  const auto confirm = [dialog](bool isConfirmed) {
    webkit_script_dialog_confirm_set_confirmed(dialog.get(), isConfirmed);
  };
  switch (webkit_script_dialog_get_dialog_type(raw)) {
    case WEBKIT_SCRIPT_DIALOG_ALERT:
      return ui_->runJavaScriptAlertPanel(*this, message, frame, [dialog] {});
    case WEBKIT_SCRIPT_DIALOG_CONFIRM:
      return ui_->runJavaScriptConfirmPanel(*this, message, frame, confirm);
    case WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM:
      // The page answers, and the user may think.
      closingTimer_.cancel();
      forgetNavigation();
      return ui_->runBeforeUnloadPanel(*this, frame,
                                       [confirm, weak = weak_from_this()](bool isLeaving) {
                                         confirm(isLeaving);
                                         if (const auto self = weak.lock(); self && !isLeaving)
                                           self->answerClosing(false);
                                       });
    case WEBKIT_SCRIPT_DIALOG_PROMPT:
      return ui_->runJavaScriptTextInputPanel(
          *this, message, textOf(webkit_script_dialog_prompt_get_default_text(raw)), frame,
          [dialog](const std::optional<std::string>& text) {
            if (text) webkit_script_dialog_prompt_set_text(dialog.get(), text->c_str());
          });
  }
}

// The dialog blocks the whole window: a page out of sight shows none, and one that asks in a loop
// is not heard until it has been silent for a while.
bool WebKitWebView::refusesToPrint(WebKitPrintOperation* operation) {
  static constexpr Duration kSilence = 2s;
  const Instant now = engine_.scheduler().instant();
  const bool isTooSoon = !printsAgainAt_ || now < *printsAgainAt_;
  if (isTooSoon || !gtk_widget_get_mapped(GTK_WIDGET(view_.get()))) {
    if (printsAgainAt_) printsAgainAt_ = now + kSilence;
    return true;
  }
  printsAgainAt_.reset();
  g_object_weak_ref(
      G_OBJECT(operation),
      [](gpointer data, GObject*) {
        const std::unique_ptr<std::weak_ptr<WebKitWebView>> weak(
            static_cast<std::weak_ptr<WebKitWebView>*>(data));
        if (const auto self = weak->lock())
          self->printsAgainAt_ = self->engine_.scheduler().instant() + kSilence;
      },
      new std::weak_ptr(weak_from_this()));
  return false;
}

// Ahead of the page.
void WebKitWebView::countInputs() {
  auto* controller = gtk_event_controller_legacy_new();
  gtk_event_controller_set_propagation_phase(controller, GTK_PHASE_CAPTURE);
  g_signal_connect(
      controller, "event",
      G_CALLBACK(+[](GtkEventController*, GdkEvent* event, gpointer self) -> gboolean {
        const auto type = gdk_event_get_event_type(event);
        if (type == GDK_BUTTON_PRESS || type == GDK_KEY_PRESS || type == GDK_TOUCH_BEGIN)
          ++static_cast<WebKitWebView*>(self)->inputs_;
        return GDK_EVENT_PROPAGATE;
      }),
      this);
  gtk_widget_add_controller(widget(), controller);
}

void WebKitWebView::connectPanels() {
  using Self = WebKitWebView;
  connect(
      "create",
      +[](::WebKitWebView* native, WebKitNavigationAction* asked, gpointer data) -> GtkWidget* {
        const auto self = static_cast<Self*>(data)->shared_from_this();
        if (!self->ui_) return nullptr;
        WebViewConfiguration configuration = self->configuration_;
        configuration.userContentController = nullptr;
        configuration.opener = std::make_shared<WebKitWindowOpener>(native, self->processUsers_);
        NavigationAction action;
        if (const auto url = reportedURL(
                webkit_uri_request_get_uri(webkit_navigation_action_get_request(asked))))
          action.request = URLRequest{.url = *url};
        action.sourceFrame = self->mainFrame();
        action.hasUserGesture = webkit_navigation_action_is_user_gesture(asked);
        action.input = self->inputs_;
        const auto view = self->ui_->createWebView(*self, configuration, action);
        return view ? view->widget() : nullptr;
      });
  connect(
      "script-dialog",
      +[](::WebKitWebView*, WebKitScriptDialog* dialog, gpointer data) -> gboolean {
        const auto self = static_cast<Self*>(data)->shared_from_this();
        if (self->ui_) self->runScriptDialog(dialog);
        return TRUE;
      });
  connect(
      "print", +[](::WebKitWebView*, WebKitPrintOperation* operation, gpointer self) -> gboolean {
        return static_cast<Self*>(self)->refusesToPrint(operation);
      });
  connect(
      "run-file-chooser",
      +[](::WebKitWebView*, WebKitFileChooserRequest* request, gpointer data) -> gboolean {
        const auto self = static_cast<Self*>(data)->shared_from_this();
        if (self->ui_)
          runFileChooser(*self, *self->ui_, request);
        else
          webkit_file_chooser_request_cancel(request);
        return TRUE;
      });
  connect(
      "permission-request",
      +[](::WebKitWebView*, WebKitPermissionRequest* raw, gpointer data) -> gboolean {
        const auto self = static_cast<Self*>(data)->shared_from_this();
        const auto request = GRef<WebKitPermissionRequest>::retain(raw);
        const auto answer = [request](PermissionDecision decision) {
          answerPermission(request.get(), decision);
        };
        const std::string host = self->mainFrame().securityOriginHost;
        if (self->ui_ && WEBKIT_IS_USER_MEDIA_PERMISSION_REQUEST(raw))
          self->ui_->requestMediaCapturePermission(
              *self, host, deviceType(WEBKIT_USER_MEDIA_PERMISSION_REQUEST(raw)), answer);
        else if (self->ui_ && WEBKIT_IS_GEOLOCATION_PERMISSION_REQUEST(raw))
          self->ui_->requestGeolocationPermission(*self, host, answer);
        else
          webkit_permission_request_deny(raw);
        return TRUE;
      });
  connect(
      "authenticate",
      +[](::WebKitWebView*, WebKitAuthenticationRequest* raw, gpointer data) -> gboolean {
        const auto self = static_cast<Self*>(data)->shared_from_this();
        // The server has answered, and the user may think.
        self->endWaiting();
        if (!self->navigation_) return FALSE;
        if (!wantsPassword(raw)) {
          webkit_authentication_request_authenticate(raw, nullptr);
          return TRUE;
        }
        AuthenticationChallenge challenge;
        challenge.host = textOf(webkit_authentication_request_get_host(raw));
        challenge.port = static_cast<uint16_t>(webkit_authentication_request_get_port(raw));
        challenge.realm = textOf(webkit_authentication_request_get_realm(raw));
        challenge.isProxy = webkit_authentication_request_is_for_proxy(raw);
        challenge.isRetry = webkit_authentication_request_is_retry(raw);
        challenge.isInsecure = isInsecure(raw);
        self->navigation_->didReceiveAuthenticationChallenge(
            *self, challenge,
            [request = GRef<WebKitAuthenticationRequest>::retain(raw)](
                const std::optional<Credential>& credential) {
              if (!credential)
                return webkit_authentication_request_authenticate(request.get(), nullptr);
              auto* native =
                  webkit_credential_new(credential->user.c_str(), credential->password.c_str(),
                                        WEBKIT_CREDENTIAL_PERSISTENCE_FOR_SESSION);
              webkit_authentication_request_authenticate(request.get(), native);
              webkit_credential_free(native);
            });
        return TRUE;
      });
  connect(
      "enter-fullscreen", +[](::WebKitWebView*, gpointer data) -> gboolean {
        const auto self = static_cast<Self*>(data)->shared_from_this();
        if (self->ui_) self->ui_->fullscreenDidChange(*self, true);
        return FALSE;
      });
  connect(
      "leave-fullscreen", +[](::WebKitWebView*, gpointer data) -> gboolean {
        const auto self = static_cast<Self*>(data)->shared_from_this();
        if (self->ui_) self->ui_->fullscreenDidChange(*self, false);
        return FALSE;
      });
}

void WebKitWebView::exitFullscreen() {
  evaluateJavaScript("document.exitFullscreen()", ContentWorld::defaultClient(), std::nullopt,
                     [](const ScriptResult&) {});
}

}  // namespace orvel
