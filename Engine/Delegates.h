#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Engine/Download.h"
#include "Engine/PageHit.h"
#include "Engine/WebView.h"

namespace orvel {

// A server or proxy that wants a name and a password.
struct AuthenticationChallenge {
  std::string host;
  uint16_t port = 0;
  // The server's own word for what is protected; may be empty and may be long.
  std::string realm;
  bool isProxy = false;
  // The credentials given before were refused.
  bool isRetry = false;
  // The answer travels unencrypted.
  bool isInsecure = false;
};

struct Credential {
  std::string user;
  std::string password;
};

// Asked about everything that a page does to its address. Every question carries an `answer` that
// is called exactly once, at once or later; the engine waits. A question whose view dies is
// answered by the engine itself, and a late answer then does nothing.
class NavigationDelegate {
 public:
  virtual ~NavigationDelegate() = default;

  virtual void decidePolicyForAction(WebView& view, const NavigationAction& action,
                                     PolicyHandler answer) = 0;
  // Asked for main-frame and sub-frame documents. `Download` turns the response into a download.
  virtual void decidePolicyForResponse(WebView& view, const NavigationResponse& response,
                                       PolicyHandler answer) = 0;
  // A decision, or the page, made this download: set its delegate.
  virtual void didBecomeDownload(WebView& view, std::shared_ptr<Download> download) = 0;

  // The first bytes of a new page have arrived: the address is the new one, scripts run from here.
  virtual void didCommit(WebView& view) = 0;
  // The page and what it embeds have loaded. Not told of a page that stands in for another.
  virtual void didFinish(WebView& view) = 0;
  // A main-frame load failed before its commit. So does one that is answered with an error and
  // nothing to show, and one of an address whose port belongs to another service.
  virtual void didFailProvisionalNavigation(WebView& view, const LoadError& error) = 0;
  // The main frame's load broke off after its commit: what has come of the page stays.
  virtual void didFail(WebView& view, const LoadError& error) = 0;
  virtual void webContentProcessDidTerminate(WebView& view) = 0;

  // Absent: go on without credentials, and show the server's refusal.
  virtual void didReceiveAuthenticationChallenge(
      WebView& view, const AuthenticationChallenge& challenge,
      std::function<void(std::optional<Credential>)> answer) = 0;
};

struct OpenPanelParameters {
  bool allowsMultipleSelection = false;
  bool allowsDirectories = false;
  // MIME types; empty: any file.
  std::vector<std::string> mimeTypes;
};

enum class CaptureDeviceType { Camera = 0, Microphone = 1, CameraAndMicrophone = 2 };
enum class PermissionDecision { Prompt = 0, Grant = 1, Deny = 2 };

// Asked about everything that a page wants of the desktop. Rules as for NavigationDelegate.
class UIDelegate {
 public:
  virtual ~UIDelegate() = default;

  // The page opens a window. The view that is answered must have been made from `configuration`;
  // the engine navigates it. Null refuses.
  virtual std::shared_ptr<WebView> createWebView(WebView& opener,
                                                 const WebViewConfiguration& configuration,
                                                 const NavigationAction& action) = 0;
  // The page closed its own window.
  virtual void webViewDidClose(WebView& view) = 0;

  virtual void runJavaScriptAlertPanel(WebView& view, const std::string& message,
                                       const FrameInfo& frame, std::function<void()> answer) = 0;
  virtual void runJavaScriptConfirmPanel(WebView& view, const std::string& message,
                                         const FrameInfo& frame,
                                         std::function<void(bool)> answer) = 0;
  virtual void runJavaScriptTextInputPanel(
      WebView& view, const std::string& prompt, const std::string& defaultText,
      const FrameInfo& frame, std::function<void(std::optional<std::string>)> answer) = 0;
  // The page has changes that leaving would lose: true leaves.
  virtual void runBeforeUnloadPanel(WebView& view, const FrameInfo& frame,
                                    std::function<void(bool)> answer) = 0;
  // Absent: the user chose nothing.
  virtual void runOpenPanel(
      WebView& view, const OpenPanelParameters& parameters,
      std::function<void(std::optional<std::vector<std::filesystem::path>>)> answer) = 0;

  virtual void requestMediaCapturePermission(WebView& view, const std::string& originHost,
                                             CaptureDeviceType type,
                                             std::function<void(PermissionDecision)> answer) = 0;
  virtual void requestGeolocationPermission(WebView& view, const std::string& originHost,
                                            std::function<void(PermissionDecision)> answer) = 0;

  // The page's menu is asked for, by a secondary click or a key that the page has not taken. The
  // engine shows none.
  virtual void showContextMenu(WebView& view, const PageHit& hit) = 0;

  // An element of the page fills the screen, or no longer does.
  virtual void fullscreenDidChange(WebView& view, bool isFullscreen) = 0;
};

}  // namespace orvel
