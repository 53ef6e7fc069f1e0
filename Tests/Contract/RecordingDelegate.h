#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Engine/Delegates.h"

namespace orvel::test {

// Both delegates of a view: writes down what happens and answers as the test says.
class RecordingDelegate : public NavigationDelegate, public UIDelegate {
 public:
  void attachTo(WebView& view) {
    view.setNavigationDelegate(this);
    view.setUIDelegate(this);
  }

  void decidePolicyForAction(WebView&, const NavigationAction& action,
                             PolicyHandler answer) override {
    actions.push_back(action);
    const bool isMain = action.targetFrame && action.targetFrame->isMainFrame;
    if (isMain) log.push_back("ask");
    if (hold && hold(action, answer)) return;
    answer(decide ? decide(action) : NavigationPolicy::Allow);
  }
  void decidePolicyForResponse(WebView&, const NavigationResponse& response,
                               PolicyHandler answer) override {
    responses.push_back(response);
    if (response.isForMainFrame) log.push_back("response");
    if (holdResponse && holdResponse(response, answer)) return;
    answer(response.canShowMIMEType ? NavigationPolicy::Allow : NavigationPolicy::Download);
  }
  void didBecomeDownload(WebView&, std::shared_ptr<Download> download) override {
    log.push_back("download");
    downloads.push_back(std::move(download));
    downloads.back()->setDelegate(downloadDelegate);
  }
  void didCommit(WebView&) override {
    ++commits;
    log.push_back("commit");
  }
  void didFinish(WebView&) override {
    ++finishes;
    log.push_back("finish");
  }
  void didFailProvisionalNavigation(WebView&, const LoadError& error) override {
    errors.push_back(error);
    log.push_back("fail");
  }
  void didFail(WebView&, const LoadError& error) override {
    breaks.push_back(error);
    log.push_back("break");
  }
  void webContentProcessDidTerminate(WebView&) override {
    ++terminations;
    log.push_back("end");
  }
  void didReceiveAuthenticationChallenge(
      WebView&, const AuthenticationChallenge& challenge,
      std::function<void(std::optional<Credential>)> answer) override {
    challenges.push_back(challenge);
    answer(credential);
  }

  std::shared_ptr<WebView> createWebView(WebView&, const WebViewConfiguration& configuration,
                                         const NavigationAction&) override {
    return makeWindow ? makeWindow(configuration) : nullptr;
  }
  void webViewDidClose(WebView&) override { ++closes; }
  void runJavaScriptAlertPanel(WebView&, const std::string& message, const FrameInfo& frame,
                               std::function<void()> answer) override {
    panels.push_back("alert " + frame.securityOriginHost + ": " + message);
    answer();
  }
  void runJavaScriptConfirmPanel(WebView&, const std::string& message, const FrameInfo&,
                                 std::function<void(bool)> answer) override {
    panels.push_back("confirm: " + message);
    answer(confirmAnswer);
  }
  void runJavaScriptTextInputPanel(
      WebView&, const std::string& prompt, const std::string& defaultText, const FrameInfo&,
      std::function<void(std::optional<std::string>)> answer) override {
    panels.push_back("prompt: " + prompt + " [" + defaultText + "]");
    answer(promptAnswer);
  }
  void runBeforeUnloadPanel(WebView&, const FrameInfo&, std::function<void(bool)> answer) override {
    panels.push_back("leave?");
    answer(confirmAnswer);
  }
  void runOpenPanel(
      WebView&, const OpenPanelParameters& parameters,
      std::function<void(std::optional<std::vector<std::filesystem::path>>)> answer) override {
    panels.push_back(parameters.allowsMultipleSelection ? "files" : "file");
    answer(chosenFiles);
  }
  void requestMediaCapturePermission(WebView&, const std::string&, CaptureDeviceType,
                                     std::function<void(PermissionDecision)> answer) override {
    answer(PermissionDecision::Deny);
  }
  void requestGeolocationPermission(WebView&, const std::string& host,
                                    std::function<void(PermissionDecision)> answer) override {
    panels.push_back("location " + host);
    answer(PermissionDecision::Deny);
  }
  void showContextMenu(WebView&, const PageHit& hit) override { hits.push_back(hit); }
  void fullscreenDidChange(WebView&, bool) override {}

  std::function<NavigationPolicy(const NavigationAction&)> decide;
  // Takes the answer to give it later.
  std::function<bool(const NavigationAction&, PolicyHandler)> hold;
  std::function<bool(const NavigationResponse&, PolicyHandler)> holdResponse;
  std::function<std::shared_ptr<WebView>(const WebViewConfiguration&)> makeWindow;
  std::weak_ptr<DownloadDelegate> downloadDelegate;
  std::optional<Credential> credential;
  std::optional<std::string> promptAnswer;
  std::optional<std::vector<std::filesystem::path>> chosenFiles;
  bool confirmAnswer = false;

  // What happened in the main frame, in order.
  std::vector<std::string> log;
  std::vector<NavigationAction> actions;
  std::vector<NavigationResponse> responses;
  std::vector<std::shared_ptr<Download>> downloads;
  std::vector<LoadError> errors;  // before the commit
  std::vector<LoadError> breaks;  // after it
  std::vector<AuthenticationChallenge> challenges;
  std::vector<std::string> panels;
  std::vector<PageHit> hits;
  int commits = 0;
  int finishes = 0;
  int terminations = 0;
  int closes = 0;
};

// Leaves it to the test to say where to write, and counts what it is told.
struct SavingDelegate final : DownloadDelegate {
  void decideDestination(
      const std::shared_ptr<Download>& asking, const std::string& name,
      std::function<void(std::optional<std::filesystem::path>)> answer) override {
    download = asking;
    suggested = name;
    waiting = std::move(answer);
  }
  void didFinish(const std::shared_ptr<Download>&) override { ++finishes; }
  void didFail(const std::shared_ptr<Download>&, const LoadError& error) override {
    failures.push_back(error.kind);
  }

  std::shared_ptr<Download> download;
  std::string suggested;
  std::function<void(std::optional<std::filesystem::path>)> waiting;
  int finishes = 0;
  std::vector<LoadError::Kind> failures;
};

}  // namespace orvel::test
