#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <tuple>
#include <utility>

#include "BrowserCore/Text/Text.h"
#include "Engine/WebKitGtk/Policy/ReportedURL.h"
#include "Engine/WebKitGtk/Scripts/EngineScripts.h"
#include "Engine/WebKitGtk/View/WebKitWebView.h"

// The page's menu, and the developer tools.
namespace orvel {

namespace {

using nlohmann::json;

// What the page's process tells; null when it tells nothing.
json toldOf(WebKitContextMenu* menu) {
  GVariant* data = webkit_context_menu_get_user_data(menu);
  if (!data || !g_variant_is_of_type(data, G_VARIANT_TYPE_STRING)) return {};
  const json told = json::parse(g_variant_get_string(data, nullptr), nullptr, false);
  return told.is_object() ? told : json();
}

std::string textOf(const json& told, const char* key) {
  const auto found = told.find(key);
  if (found == told.end() || !found->is_string()) return {};
  return text::prefix(text::repairedUTF8(found->get<std::string>()), PageHit::kMaxText);
}

std::optional<PageHit::Media> mediaOf(const json& told) {
  const auto media = told.find("media");
  if (media == told.end() || !media->is_object()) return std::nullopt;
  const auto is = [&](const char* key) { return media->value(key, json(false)) == true; };
  return PageHit::Media{is("video"), is("paused"), is("muted"), is("looping"), is("controls")};
}

using Point = std::pair<double, double>;

// Absent when a key asked for the menu.
std::optional<Point> pointerOf(WebKitContextMenu* menu, GtkWidget* view) {
  GdkEvent* event = webkit_context_menu_get_event(menu);
  Point at;
  if (!event || gdk_event_get_event_type(event) != GDK_BUTTON_PRESS ||
      !gdk_event_get_position(event, &at.first, &at.second))
    return std::nullopt;
  auto* native = gtk_widget_get_native(view);
  if (!native) return std::nullopt;
  Point shift;
  gtk_native_get_surface_transform(native, &shift.first, &shift.second);
  Point own;
  if (!gtk_widget_translate_coordinates(GTK_WIDGET(native), view, at.first - shift.first,
                                        at.second - shift.second, &own.first, &own.second))
    return std::nullopt;
  return own;
}

// Beside what has the keyboard, within the view.
Point placeOf(const json& told, GtkWidget* view, double zoom) {
  Point at(gtk_widget_get_width(view) / 2.0, gtk_widget_get_height(view) / 2.0);
  const auto place = told.find("at");
  if (place != told.end() && place->is_array() && place->size() == 2 && (*place)[0].is_number() &&
      (*place)[1].is_number())
    at = {(*place)[0].get<double>() * zoom, (*place)[1].get<double>() * zoom};
  return {std::clamp<double>(at.first, 0, gtk_widget_get_width(view)),
          std::clamp<double>(at.second, 0, gtk_widget_get_height(view))};
}

const char* nameOf(MediaCommand command) {
  switch (command) {
    case MediaCommand::TogglePlaying:
      return "playing";
    case MediaCommand::ToggleMuted:
      return "muted";
    case MediaCommand::ToggleLooping:
      return "looping";
    case MediaCommand::ToggleControls:
      return "controls";
  }
  return "";
}

}  // namespace

void WebKitWebView::connectMenu() {
  connect(
      "context-menu",
      +[](::WebKitWebView*, WebKitContextMenu* menu, WebKitHitTestResult* result,
          gpointer data) -> gboolean {
        const auto self = static_cast<WebKitWebView*>(data)->shared_from_this();
        self->showMenu(menu, result);
        return TRUE;
      });
  g_signal_connect(webkit_web_view_get_inspector(view_.get()), "closed",
                   G_CALLBACK(+[](WebKitWebInspector*, gpointer self) {
                     static_cast<WebKitWebView*>(self)->isInspectorOpen_ = false;
                   }),
                   this);
}

void WebKitWebView::showMenu(WebKitContextMenu* menu, WebKitHitTestResult* result) {
  if (!ui_) return;
  const json told = toldOf(menu);
  const auto pointer = pointerOf(menu, widget());
  PageHit hit;
  std::tie(hit.x, hit.y) = pointer ? *pointer : placeOf(told, widget(), pageZoom());
  hit.link = reportedURL(webkit_hit_test_result_get_link_uri(result));
  if (hit.link) hit.linkText = textOf(told, "text");
  hit.picture = reportedURL(webkit_hit_test_result_get_image_uri(result));
  hit.mediaAddress = reportedURL(webkit_hit_test_result_get_media_uri(result));
  hit.media = mediaOf(told);
  hit.selection = textOf(told, "selection");
  hit.isEditable = webkit_hit_test_result_context_is_editable(result);
  ui_->showContextMenu(*this, hit);
}

void WebKitWebView::controlMedia(MediaCommand command) {
  evaluateInFrames(std::string("globalThis.__orvelMenu?.control('") + nameOf(command) + "')",
                   ContentWorld::named(engine_scripts::kWorld), 0, [](const FrameResults&) {});
}

void WebKitWebView::openInspector() {
  isInspectorOpen_ = true;
  webkit_web_inspector_show(webkit_web_view_get_inspector(view_.get()));
}

void WebKitWebView::closeInspector() {
  webkit_web_inspector_close(webkit_web_view_get_inspector(view_.get()));
}

}  // namespace orvel
