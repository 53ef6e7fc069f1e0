#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Base/Published.h"
#include "Base/Task.h"
#include "Engine/Delegates.h"
#include "Models/Tab/OtherApplications.h"
#include "Models/Tab/PageQuestions.h"
#include "Models/Tab/PopUps.h"
#include "Models/Tab/ScriptDialogs.h"

namespace orvel {

// What the page of a tab asks the user, what the user is asked about it, and the windows that it
// opens.
class PagePanels final : public UIDelegate {
 public:
  // The tab and what opens other applications for it outlive the panels.
  PagePanels(BrowserTab& tab, const Services& services, OtherApplications& applications);

  // The page has not answered for some seconds.
  Published<bool, PagePanels> isUnresponsive = false;

  // The page is being left: nothing more is heard of it, until it stays after all.
  void leave() { dialogs_.leave(); }
  void stay() { dialogs_.stay(); }
  // Another page is there.
  void pageDidChange() {
    dialogs_.pageDidChange();
    popUps_.pageDidChange();
  }
  // The view is going.
  void teardown();
  void followResponsiveness(const WebView& view);
  // Asks the page whether its tab may be closed. `Unguarded` comes within the call where nobody has
  // to be asked.
  enum class CloseAnswer { Unguarded, Leave, Stay };
  void requestClose(std::function<void(CloseAnswer)> answer);
  void signIn(const WebView& view, const AuthenticationChallenge& challenge,
              std::function<void(std::optional<Credential>)> answer);

  std::shared_ptr<WebView> createWebView(WebView& opener, const WebViewConfiguration& configuration,
                                         const NavigationAction& action) override;
  void webViewDidClose(WebView& view) override;
  void runJavaScriptAlertPanel(WebView& view, const std::string& message, const FrameInfo& frame,
                               std::function<void()> answer) override;
  void runJavaScriptConfirmPanel(WebView& view, const std::string& message, const FrameInfo& frame,
                                 std::function<void(bool)> answer) override;
  void runJavaScriptTextInputPanel(WebView& view, const std::string& prompt,
                                   const std::string& defaultText, const FrameInfo& frame,
                                   std::function<void(std::optional<std::string>)> answer) override;
  void runBeforeUnloadPanel(WebView& view, const FrameInfo& frame,
                            std::function<void(bool)> answer) override;
  void runOpenPanel(
      WebView& view, const OpenPanelParameters& parameters,
      std::function<void(std::optional<std::vector<std::filesystem::path>>)> answer) override;
  void requestMediaCapturePermission(WebView& view, const std::string& originHost,
                                     CaptureDeviceType type,
                                     std::function<void(PermissionDecision)> answer) override;
  void requestGeolocationPermission(WebView& view, const std::string& originHost,
                                    std::function<void(PermissionDecision)> answer) override;
  void showContextMenu(WebView& view, const PageHit& hit) override;
  void fullscreenDidChange(WebView& view, bool isFullscreen) override;

 private:
  void showScriptDialog(const WebView& view, Alert alert, PageQuestions::Answer answer);
  void askAboutUnresponsivePage();
  static Task<> askAgain(std::weak_ptr<BrowserTab> tab, PagePanels& panels);
  void stopUnresponsivePage();

  BrowserTab& tab_;
  const Services& services_;
  OtherApplications& applications_;
  ScriptDialogs dialogs_;
  PopUps popUps_{tab_};
  std::optional<uint64_t> unresponsiveQuestion_;
  TaskHandle askAgain_;
  // The page has been asked whether its tab may be closed; whether it had the user asked.
  struct Closing {
    bool hasAskedUser = false;
  };
  std::optional<Closing> closing_;
};

}  // namespace orvel
