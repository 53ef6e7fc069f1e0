// The part of the program that runs inside each web process: it adds the privacy signal to requests
// and evaluates scripts in every frame of a page, which the view's own process cannot.

#include <webkit/webkit-web-process-extension.h>

#include <cstring>
#include <memory>
#include <string>
#include <tl/expected.hpp>
#include <unordered_map>
#include <vector>

namespace {

bool sendsPrivacySignal = false;

// The frames of each page, in the order in which they appeared. Entries go when their frames do.
std::unordered_map<guint64, std::vector<WebKitFrame*>>& framesByPage() {
  static auto* frames = new std::unordered_map<guint64, std::vector<WebKitFrame*>>();
  return *frames;
}

void frameDied(gpointer, GObject* frame) {
  for (auto& [page, frames] : framesByPage())
    std::erase(frames, reinterpret_cast<WebKitFrame*>(frame));
}

void windowObjectCleared(WebKitScriptWorld*, WebKitWebPage* page, WebKitFrame* frame, gpointer) {
  auto& frames = framesByPage()[webkit_web_page_get_id(page)];
  for (const WebKitFrame* known : frames)
    if (known == frame) return;
  frames.push_back(frame);
  g_object_weak_ref(G_OBJECT(frame), &frameDied, nullptr);
}

using FrameRef = std::unique_ptr<WebKitFrame, decltype(&g_object_unref)>;

// Held, as a script may take other frames out of the page.
std::vector<FrameRef> framesOf(WebKitWebPage* page) {
  std::vector<FrameRef> held;
  for (WebKitFrame* frame : framesByPage()[webkit_web_page_get_id(page)])
    held.emplace_back(WEBKIT_FRAME(g_object_ref(frame)), &g_object_unref);
  return held;
}

// The worlds by name; empty is the page's own. Made at start, before scripts of these names arrive:
// a world made later would be another one of the same name.
std::unordered_map<std::string, WebKitScriptWorld*>& worlds() {
  static auto* known = new std::unordered_map<std::string, WebKitScriptWorld*>();
  return *known;
}

// The value as JSON, or what was thrown.
using Result = tl::expected<std::string, std::string>;

std::string take(char* text) {
  std::string taken = text ? text : "";
  g_free(text);
  return taken;
}

Result evaluate(WebKitFrame* frame, WebKitScriptWorld* in, const char* script) {
  JSCContext* context = webkit_frame_get_js_context_for_script_world(frame, in);
  if (!context) return tl::make_unexpected("the frame has no scripts");
  JSCValue* value = jsc_context_evaluate(context, script, -1);
  Result result = "null";
  if (JSCException* exception = jsc_context_get_exception(context)) {
    result = tl::make_unexpected(take(jsc_exception_to_string(exception)));
    jsc_context_clear_exception(context);
  } else if (std::string text = take(jsc_value_to_json(value, 0)); !text.empty()) {
    result = std::move(text);
  }
  g_object_unref(value);
  g_object_unref(context);
  return result;
}

// The number that a frame signs its messages with. Each world with handlers has drawn one.
bool isNumbered(WebKitFrame* frame, guint64 number) {
  const std::string script =
      "window.__orvelFrame ? __orvelFrame.id === " + std::to_string(number) + " : false";
  for (const auto& [name, world] : worlds())
    if (!name.empty() && evaluate(frame, world, script.c_str()) == "true") return true;
  return false;
}

gboolean messageReceived(WebKitWebPage* page, WebKitUserMessage* message, gpointer) {
  if (std::strcmp(webkit_user_message_get_name(message), "evaluate") != 0) return FALSE;
  const char* worldName = nullptr;
  const char* script = nullptr;
  guint64 number = 0;  // 0: every frame
  g_variant_get(webkit_user_message_get_parameters(message), "(&s&st)", &worldName, &script,
                &number);
  GVariantBuilder results;
  g_variant_builder_init(&results, G_VARIANT_TYPE("a(bs)"));
  const auto world = worlds().find(worldName);
  if (world != worlds().end())
    for (const FrameRef& frame : framesOf(page)) {
      if (number && !isNumbered(frame.get(), number)) continue;
      const Result result = evaluate(frame.get(), world->second, script);
      g_variant_builder_add(&results, "(bs)", result.has_value(),
                            result ? result->c_str() : result.error().c_str());
    }
  webkit_user_message_send_reply(
      message, webkit_user_message_new("evaluated", g_variant_builder_end(&results)));
  return TRUE;
}

// The world of the engine's own scripts, which tell what a menu is for.
WebKitScriptWorld* engineWorld = nullptr;

// What only the page's own process knows travels with the menu, as JSON text.
gboolean contextMenu(WebKitWebPage* page, WebKitContextMenu* menu, WebKitWebHitTestResult* hit,
                     gpointer) {
  for (const FrameRef& frame : framesOf(page))
    evaluate(frame.get(), engineWorld, "globalThis.__orvelMenu?.forget()");
  JSCValue* node = webkit_web_hit_test_result_get_js_node(hit, engineWorld);
  if (!node) return FALSE;
  JSCContext* context = jsc_value_get_context(node);
  JSCValue* describe = jsc_context_evaluate(context, "globalThis.__orvelMenu?.describe", -1);
  if (jsc_value_is_function(describe)) {
    JSCValue* told = jsc_value_function_call(describe, JSC_TYPE_VALUE, node, G_TYPE_NONE);
    if (jsc_value_is_string(told))
      webkit_context_menu_set_user_data(
          menu, g_variant_new_string(take(jsc_value_to_string(told)).c_str()));
    g_object_unref(told);
  }
  jsc_context_clear_exception(context);
  g_object_unref(describe);
  g_object_unref(node);
  return FALSE;
}

gboolean sendRequest(WebKitWebPage*, WebKitURIRequest* request, WebKitURIResponse*, gpointer) {
  if (sendsPrivacySignal && g_str_has_prefix(webkit_uri_request_get_uri(request), "http"))
    if (auto* headers = webkit_uri_request_get_http_headers(request))
      soup_message_headers_replace(headers, "Sec-GPC", "1");
  return FALSE;
}

void pageCreated(WebKitWebProcessExtension*, WebKitWebPage* page, gpointer) {
  g_signal_connect(page, "send-request", G_CALLBACK(sendRequest), nullptr);
  g_signal_connect(page, "context-menu", G_CALLBACK(contextMenu), nullptr);
  g_signal_connect(page, "user-message-received", G_CALLBACK(messageReceived), nullptr);
}

}  // namespace

extern "C" G_MODULE_EXPORT void webkit_web_process_extension_initialize_with_user_data(
    WebKitWebProcessExtension* extension, const GVariant* data) {
  gboolean isOn = FALSE;
  GVariantIter* names = nullptr;
  g_variant_get(const_cast<GVariant*>(data), "(bas)", &isOn, &names);
  sendsPrivacySignal = isOn;
  worlds()[""] = webkit_script_world_get_default();
  const char* name = nullptr;
  while (g_variant_iter_next(names, "&s", &name)) {
    WebKitScriptWorld* world = worlds()[name] = webkit_script_world_new_with_name(name);
    if (!engineWorld) engineWorld = world;  // it comes first
  }
  g_variant_iter_free(names);
  // Any one of them tells of every frame.
  if (engineWorld)
    g_signal_connect(engineWorld, "window-object-cleared", G_CALLBACK(windowObjectCleared),
                     nullptr);
  g_signal_connect(extension, "page-created", G_CALLBACK(pageCreated), nullptr);
}
