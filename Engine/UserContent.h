#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "BrowserCore/Result.h"
#include "Engine/Navigation.h"

namespace orvel {

// A namespace of JavaScript globals. Scripts of two worlds share a page's DOM and nothing else.
struct ContentWorld {
  // Empty: the page's own world.
  std::string name;

  static ContentWorld page() { return {}; }
  // The world of the program's own scripts.
  static ContentWorld defaultClient() { return {"orvel"}; }
  // The world of the scripts that hide what the user picked.
  static ContentWorld hiddenItems() { return {"OrvelHiddenItems"}; }
  // Any other world. Scripts run in it and post from it; only the worlds above can be evaluated in
  // frames other than the main one.
  static ContentWorld named(std::string name) { return {std::move(name)}; }

  friend bool operator==(const ContentWorld&, const ContentWorld&) = default;
  friend auto operator<=>(const ContentWorld&, const ContentWorld&) = default;
};

struct UserScript {
  enum class InjectionTime { DocumentStart, DocumentEnd };
  enum class Frames { All, MainOnly };

  std::string source;
  InjectionTime injectionTime = InjectionTime::DocumentStart;
  Frames frames = Frames::All;
  ContentWorld world;

  friend bool operator==(const UserScript&, const UserScript&) = default;
};

// What a script sent with `window.webkit.messageHandlers.<name>.postMessage(body)`.
struct ScriptMessage {
  std::string name;
  // The body as JSON text; "null" for what JSON cannot express.
  std::string body;
  // Nothing is known of a message from the page's own world: a sub-frame, the cautious answer.
  FrameInfo frame;
};
using ScriptMessageHandler = std::function<void(const ScriptMessage&)>;

// A compiled list of content rules. May be attached to any number of controllers.
class ContentRuleList {
 public:
  virtual ~ContentRuleList() = default;
  virtual const std::string& identifier() const = 0;
};

// A list, never null, or why compiling or looking up failed: the compiler's own explanation where
// it gives one.
using CompiledRules = Result<std::shared_ptr<ContentRuleList>, std::string>;

// Compiled lists kept by identifier across runs. Every answer comes on a later turn of the main
// thread, exactly once, also after a failure.
class ContentRuleListStore {
 public:
  virtual ~ContentRuleListStore() = default;
  virtual void getAvailableIdentifiers(std::function<void(std::vector<std::string>)> answer) = 0;
  virtual void lookUp(const std::string& identifier, std::function<void(CompiledRules)> answer) = 0;
  // Replaces a list of the same identifier; pages that use the old one keep it. `json` is a list of
  // rules with "trigger" and "action", at most 150,000.
  virtual void compile(const std::string& identifier, std::string json,
                       std::function<void(CompiledRules)> answer) = 0;
  virtual void remove(const std::string& identifier,
                      std::function<void(Result<void, std::string>)> answer) = 0;
};

// The scripts, rule lists and message handlers of one page. "Remove all" leaves what the engine's
// implementation needs for itself; that also runs first.
//
// Changes to scripts and hiding rules act on the next navigation, blocking rules at once.
class UserContentController {
 public:
  virtual ~UserContentController() = default;
  virtual void addUserScript(const UserScript& script) = 0;
  virtual void removeAllUserScripts() = 0;
  virtual void addContentRuleList(std::shared_ptr<ContentRuleList> list) = 0;
  virtual void removeAllContentRuleLists() = 0;
  // Handlers live as long as the controller; a second one of the same name and world replaces the
  // first. A handler of a named world is out of reach of the page.
  virtual void addScriptMessageHandler(const std::string& name, const ContentWorld& world,
                                       ScriptMessageHandler handler) = 0;
};

}  // namespace orvel
