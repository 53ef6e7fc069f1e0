#pragma once

#include <webkit/webkit.h>

#include <deque>
#include <map>
#include <memory>

#include "Base/GRef.h"
#include "Engine/UserContent.h"

namespace orvel {

// A click or submission that a page's frame reported before the engine asks for a decision.
struct NavigationReport {
  std::string target;  // the address
  enum class Destination { MainFrame, SubFrame, NewWindow } destination;
  FrameInfo frame;
};

// One page's user content manager. Besides what the model adds it carries, first and never removed,
// the engine's own scripts: one that reports clicks ahead of decisions, and a prelude for each
// world with handlers that signs messages with their frame.
class WebKitContentController final : public UserContentController {
 public:
  WebKitContentController();
  ~WebKitContentController() override;

  void addUserScript(const UserScript& script) override;
  void removeAllUserScripts() override;
  void addContentRuleList(std::shared_ptr<ContentRuleList> list) override;
  void removeAllContentRuleLists() override;
  void addScriptMessageHandler(const std::string& name, const ContentWorld& world,
                               ScriptMessageHandler handler) override;

  WebKitUserContentManager* manager() const { return manager_.get(); }

  // Pages read `navigator.globalPrivacyControl` as true from the next navigation on.
  void enablePrivacySignal();
  // Puts the engine's own rules in the place of the former ones; null takes them away.
  void setEngineRules(std::shared_ptr<ContentRuleList> rules);
  // The page's navigations are reported here, before their decisions.
  void setNavigationReporter(std::function<void(NavigationReport)> reporter);
  // Something in the page may have begun or ended to play.
  void setMediaReporter(std::function<void()> reporter) { mediaReporter_ = std::move(reporter); }

 private:
  struct Handler;
  // The order in which scripts are added is the order in which they run.
  void addAllAnew();
  void add(const UserScript& script);

  GRef<WebKitUserContentManager> manager_;
  std::map<std::pair<std::string, std::string>, std::unique_ptr<Handler>> handlers_;
  std::vector<UserScript> ownScripts_;
  std::vector<UserScript> scripts_;  // the model's
  std::function<void(NavigationReport)> reporter_;
  std::function<void()> mediaReporter_;
  std::shared_ptr<ContentRuleList> engineRules_;
};

}  // namespace orvel
