#include "Engine/WebKitGtk/Scripts/WebKitContentController.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "Engine/WebKitGtk/Policy/ReportedURL.h"
#include "Engine/WebKitGtk/Rules/WebKitRuleListStore.h"
#include "Engine/WebKitGtk/Scripts/EngineScripts.h"

namespace orvel {

namespace {

using nlohmann::json;

// Longer messages are dropped: what scripts of ours send is small.
constexpr size_t kMaxMessage = 16u << 20;

const char* worldName(const ContentWorld& world) {
  return world.name.empty() ? nullptr : world.name.c_str();
}

std::optional<ScriptMessage> signedMessage(const std::string& name, const std::string& text) {
  const json message = json::parse(text, nullptr, false);
  if (!message.is_object() || !message.contains("frame") || !message.contains("body"))
    return std::nullopt;
  const json& frame = message["frame"];
  if (!frame.is_object() || !message["body"].is_string()) return std::nullopt;
  return ScriptMessage{name, message["body"].get<std::string>(),
                       FrameInfo{frame.value("id", uint64_t{0}), frame.value("main", false),
                                 frame.value("host", std::string())}};
}

std::optional<NavigationReport> navigationReport(const ScriptMessage& message) {
  const json body = json::parse(message.body, nullptr, false);
  if (!body.is_object() || !body.contains("address") || !body["address"].is_string())
    return std::nullopt;
  const std::string destination = body.value("destination", std::string());
  using Destination = NavigationReport::Destination;
  const auto address = reportedURL(body["address"].get_ref<const std::string&>().c_str());
  if (!address) return std::nullopt;
  return NavigationReport{address->text(),
                          destination == "main"  ? Destination::MainFrame
                          : destination == "new" ? Destination::NewWindow
                                                 : Destination::SubFrame,
                          message.frame};
}

UserScript prelude(const ContentWorld& world) {
  return {.source = engine_scripts::kFrameSignature, .world = world};
}

}  // namespace

struct WebKitContentController::Handler {
  std::string name;
  ContentWorld world;
  ScriptMessageHandler handle;
  gulong connection = 0;

  static void received(WebKitUserContentManager*, JSCValue* value, gpointer self) {
    const auto& handler = *static_cast<Handler*>(self);
    const GText text(handler.world.name.empty() ? jsc_value_to_json(value, 0)
                                                : jsc_value_to_string(value));
    if (!text || std::string_view(text.get()).size() > kMaxMessage) return;
    if (handler.world.name.empty())
      return handler.handle({handler.name, text.get(), FrameInfo{.isMainFrame = false}});
    if (const auto message = signedMessage(handler.name, text.get())) handler.handle(*message);
  }
};

WebKitContentController::WebKitContentController()
    : manager_(GRef<WebKitUserContentManager>::adopt(webkit_user_content_manager_new())) {
  const auto world = ContentWorld::named(engine_scripts::kWorld);
  addScriptMessageHandler(engine_scripts::kNavigationHandler, world,
                          [this](const ScriptMessage& message) {
                            if (!reporter_) return;
                            if (auto report = navigationReport(message)) reporter_(*report);
                          });
  addScriptMessageHandler(engine_scripts::kMediaHandler, world, [this](const ScriptMessage&) {
    if (mediaReporter_) mediaReporter_();
  });
  for (const char* source : {engine_scripts::kNavigationObserver, engine_scripts::kMediaObserver,
                             engine_scripts::kPageMenu}) {
    ownScripts_.push_back({.source = source, .world = world});
    add(ownScripts_.back());
  }
}

WebKitContentController::~WebKitContentController() {
  for (const auto& [key, handler] : handlers_) {
    g_signal_handler_disconnect(manager_.get(), handler->connection);
    webkit_user_content_manager_unregister_script_message_handler(
        manager_.get(), handler->name.c_str(), worldName(handler->world));
  }
}

void WebKitContentController::addScriptMessageHandler(const std::string& name,
                                                      const ContentWorld& world,
                                                      ScriptMessageHandler handle) {
  auto& handler = handlers_[{name, world.name}];
  if (handler) {
    handler->handle = std::move(handle);
    return;
  }
  handler = std::make_unique<Handler>(Handler{name, world, std::move(handle)});
  webkit_user_content_manager_register_script_message_handler(manager_.get(), name.c_str(),
                                                              worldName(world));
  // The signal's detail is the handler's name alone; the world is told apart by registering each
  // name in one world only.
  handler->connection =
      g_signal_connect(manager_.get(), ("script-message-received::" + name).c_str(),
                       G_CALLBACK(&Handler::received), handler.get());
  const UserScript script = prelude(world);
  if (world.name.empty() ||
      std::find(ownScripts_.begin(), ownScripts_.end(), script) != ownScripts_.end())
    return;
  ownScripts_.insert(ownScripts_.begin(), script);
  addAllAnew();
}

void WebKitContentController::add(const UserScript& script) {
  const auto frames = script.frames == UserScript::Frames::All
                          ? WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES
                          : WEBKIT_USER_CONTENT_INJECT_TOP_FRAME;
  const auto time = script.injectionTime == UserScript::InjectionTime::DocumentStart
                        ? WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START
                        : WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_END;
  auto* native =
      script.world.name.empty()
          ? webkit_user_script_new(script.source.c_str(), frames, time, nullptr, nullptr)
          : webkit_user_script_new_for_world(script.source.c_str(), frames, time,
                                             script.world.name.c_str(), nullptr, nullptr);
  webkit_user_content_manager_add_script(manager_.get(), native);
  webkit_user_script_unref(native);
}

void WebKitContentController::addUserScript(const UserScript& script) {
  scripts_.push_back(script);
  add(script);
}

void WebKitContentController::removeAllUserScripts() {
  scripts_.clear();
  addAllAnew();
}

void WebKitContentController::addAllAnew() {
  webkit_user_content_manager_remove_all_scripts(manager_.get());
  for (const UserScript& script : ownScripts_) add(script);
  for (const UserScript& script : scripts_) add(script);
}

void WebKitContentController::addContentRuleList(std::shared_ptr<ContentRuleList> list) {
  webkit_user_content_manager_add_filter(manager_.get(),
                                         static_cast<WebKitRuleList&>(*list).filter());
}

void WebKitContentController::removeAllContentRuleLists() {
  webkit_user_content_manager_remove_all_filters(manager_.get());
  if (engineRules_) addContentRuleList(engineRules_);
}

void WebKitContentController::setEngineRules(std::shared_ptr<ContentRuleList> rules) {
  if (engineRules_ == rules) return;
  if (rules) addContentRuleList(rules);
  // Adding a list has already taken one of the same name out.
  if (engineRules_ && !(rules && rules->identifier() == engineRules_->identifier()))
    webkit_user_content_manager_remove_filter(manager_.get(),
                                              static_cast<WebKitRuleList&>(*engineRules_).filter());
  engineRules_ = std::move(rules);
}

void WebKitContentController::enablePrivacySignal() {
  const UserScript script{.source = engine_scripts::kPrivacySignal};
  ownScripts_.push_back(script);
  add(script);
}

void WebKitContentController::setNavigationReporter(
    std::function<void(NavigationReport)> reporter) {
  reporter_ = std::move(reporter);
}

}  // namespace orvel
