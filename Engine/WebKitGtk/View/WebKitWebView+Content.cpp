#include <fmt/format.h>
#include <glib/gstdio.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "Base/FileSystem.h"
#include "Base/Texts.h"
#include "BrowserCore/Text/Text.h"
#include "Engine/WebKitGtk/Scripts/EngineScripts.h"
#include "Engine/WebKitGtk/View/WebKitWebView.h"
#include "Engine/WebKitGtk/WebKitEngine.h"

namespace orvel {

namespace {

using nlohmann::json;

// Wraps a callback for a C function that calls back with one pointer.
template <class Callback>
Callback* boxed(Callback callback) {
  return new Callback(std::move(callback));
}

using ScriptAnswer = std::function<void(ScriptResult)>;

ScriptResult scriptResult(JSCValue* rawValue, GError* rawError) {
  const auto value = GRef<JSCValue>::adopt(rawValue);
  const GErrorRef error(rawError);
  if (!value) return {std::nullopt, error ? error->message : "unknown error"};
  const GText text(jsc_value_to_json(value.get(), 0));
  return {text ? text.get() : "null", ""};
}

void evaluated(GObject* source, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<ScriptAnswer> answer(static_cast<ScriptAnswer*>(data));
  GError* error = nullptr;
  auto* value = webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(source), result, &error);
  (*answer)(scriptResult(value, error));
}

void called(GObject* source, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<ScriptAnswer> answer(static_cast<ScriptAnswer*>(data));
  GError* error = nullptr;
  auto* value = webkit_web_view_call_async_javascript_function_finish(WEBKIT_WEB_VIEW(source),
                                                                      result, &error);
  (*answer)(scriptResult(value, error));
}

const ScriptResult kUnanswered{std::nullopt, "the page does not answer"};

const char* worldName(const ContentWorld& world) {
  return world.name.empty() ? nullptr : world.name.c_str();
}

struct Crop {
  int x, y, width, height;
};

Crop cropIn(int width, int height, const std::optional<PageRect>& rect) {
  if (!rect) return {0, 0, width, height};
  const auto clamp = [](double value, int most) {
    return static_cast<int>(std::clamp(std::round(value), 0.0, static_cast<double>(most)));
  };
  const int left = clamp(rect->x, width);
  const int top = clamp(rect->y, height);
  return {left, top, clamp(rect->x + rect->width, width) - left,
          clamp(rect->y + rect->height, height) - top};
}

// Averages the source pixels under each target pixel.
std::vector<uint8_t> scaled(const std::vector<uint8_t>& source, int stride, const Crop& crop,
                            int width, int height) {
  std::vector<uint8_t> result(static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
  uint8_t* out = result.data();
  for (int y = 0; y < height; ++y) {
    const int top = crop.y + y * crop.height / height;
    const int bottom = std::max(top + 1, crop.y + (y + 1) * crop.height / height);
    for (int x = 0; x < width; ++x) {
      const int left = crop.x + x * crop.width / width;
      const int right = std::max(left + 1, crop.x + (x + 1) * crop.width / width);
      uint32_t sums[4] = {};
      for (int row = top; row < bottom; ++row)
        for (int column = left; column < right; ++column)
          for (int c = 0; c < 4; ++c)
            sums[c] += source[static_cast<size_t>(row) * static_cast<size_t>(stride) +
                              static_cast<size_t>(column) * 4 + static_cast<size_t>(c)];
      const auto count = static_cast<uint32_t>((bottom - top) * (right - left));
      for (const uint32_t sum : sums) *out++ = static_cast<uint8_t>(sum / count);
    }
  }
  return result;
}

ImageRef imageFrom(GdkTexture* texture, const SnapshotRequest& request, int scale) {
  const int fullWidth = gdk_texture_get_width(texture);
  const int fullHeight = gdk_texture_get_height(texture);
  std::optional<PageRect> rect = request.rect;
  if (rect)
    rect = PageRect{rect->x * scale, rect->y * scale, rect->width * scale, rect->height * scale};
  const Crop crop = cropIn(fullWidth, fullHeight, rect);
  if (crop.width <= 0 || crop.height <= 0) return nullptr;

  std::vector<uint8_t> pixels(static_cast<size_t>(fullWidth) * static_cast<size_t>(fullHeight) * 4);
  gdk_texture_download(texture, pixels.data(), static_cast<gsize>(fullWidth) * 4);
  // Cairo's order is blue, green, red in memory; a page's picture has no transparency.
  for (size_t i = 0; i < pixels.size(); i += 4) {
    std::swap(pixels[i], pixels[i + 2]);
    pixels[i + 3] = 255;
  }
  const int width = request.width ? std::min(*request.width * scale, crop.width) : crop.width;
  const int height = std::max(1, crop.height * width / crop.width);
  return Image::make(width, height, scaled(pixels, fullWidth * 4, crop, width, height));
}

}  // namespace

// Scripts

void WebKitWebView::evaluateJavaScript(const std::string& script, const ContentWorld& world,
                                       const std::optional<FrameInfo>& frame, ScriptAnswer answer) {
  if (!answer) answer = [](const ScriptResult&) {};
  if (frame && !frame->isMainFrame)
    return evaluateInFrames(script, world, frame->id,
                            [answer = std::move(answer)](const FrameResults& results) {
                              if (results.empty()) return answer({std::nullopt, "no such frame"});
                              answer(results.front());
                            });
  auto expected = answers_.expect(std::move(answer), kUnanswered);
  webkit_web_view_evaluate_javascript(view_.get(), script.c_str(),
                                      static_cast<gssize>(script.size()), worldName(world), nullptr,
                                      nullptr, &evaluated, boxed(std::move(expected.give)));
}

void WebKitWebView::evaluateInFrames(const std::string& script, const ContentWorld& world,
                                     uint64_t frame, std::function<void(FrameResults)> answer) {
  auto expected = answers_.expect(std::move(answer), FrameResults());
  const auto message = GRef<WebKitUserMessage>::retain(webkit_user_message_new(
      "evaluate", g_variant_new("(sst)", world.name.c_str(), script.c_str(), frame)));
  webkit_web_view_send_message_to_page(
      view_.get(), message.get(), nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<std::function<void(FrameResults)>> give(
            static_cast<std::function<void(FrameResults)>*>(data));
        const auto reply = GRef<WebKitUserMessage>::adopt(
            webkit_web_view_send_message_to_page_finish(WEBKIT_WEB_VIEW(source), result, nullptr));
        FrameResults results;
        GVariant* parameters = reply ? webkit_user_message_get_parameters(reply.get()) : nullptr;
        if (parameters && g_variant_is_of_type(parameters, G_VARIANT_TYPE("a(bs)"))) {
          GVariantIter iterator;
          gboolean isValue = FALSE;
          const char* text = nullptr;
          g_variant_iter_init(&iterator, parameters);
          while (g_variant_iter_next(&iterator, "(b&s)", &isValue, &text))
            results.push_back(isValue ? ScriptResult{text, ""} : ScriptResult{std::nullopt, text});
        }
        (*give)(std::move(results));
      },
      boxed(std::move(expected.give)));
}

// What its process is sent it answers in order.
void WebKitWebView::awaitTakingUp(std::function<void()> takenUp) {
  webkit_web_view_evaluate_javascript(
      view_.get(), "0", 1, ContentWorld::defaultClient().name.c_str(), nullptr, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<std::function<void()>> done(
            static_cast<std::function<void()>*>(data));
        const auto value = GRef<JSCValue>::adopt(
            webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(source), result, nullptr));
        if (value) (*done)();
      },
      boxed(std::move(takenUp)));
}

void WebKitWebView::callAsyncJavaScript(const std::string& body, const std::string& arguments,
                                        const ContentWorld& world, ScriptAnswer answer) {
  const json parsed = json::parse(arguments.empty() ? "{}" : arguments, nullptr, false);
  // Each argument travels as JSON text: the engine's own conversion knows plain values alone.
  std::string prelude;
  GVariantDict dictionary;
  g_variant_dict_init(&dictionary, nullptr);
  if (parsed.is_object()) {
    for (const auto& [name, value] : parsed.items()) {
      prelude += fmt::format("{0} = JSON.parse({0});\n", name);
      g_variant_dict_insert(&dictionary, name.c_str(), "s",
                            value.dump(-1, ' ', false, json::error_handler_t::replace).c_str());
    }
  }
  prelude += body;
  if (!answer) answer = [](const ScriptResult&) {};
  auto expected = answers_.expect(std::move(answer), kUnanswered, PendingAnswers::EndsWith::Page);
  webkit_web_view_call_async_javascript_function(
      view_.get(), prelude.c_str(), static_cast<gssize>(prelude.size()),
      g_variant_dict_end(&dictionary), worldName(world), nullptr, nullptr, &called,
      boxed(std::move(expected.give)));
  awaitTakingUp(std::move(expected.takenUp));
}

// Pictures

void WebKitWebView::takeSnapshot(const SnapshotRequest& request,
                                 std::function<void(ImageRef)> answer) {
  struct Context {
    SnapshotRequest request;
    int scale;
    std::function<void(ImageRef)> answer;
  };
  const int scale = gtk_widget_get_scale_factor(GTK_WIDGET(view_.get()));
  webkit_web_view_get_snapshot(
      view_.get(), WEBKIT_SNAPSHOT_REGION_VISIBLE, WEBKIT_SNAPSHOT_OPTIONS_NONE, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Context> context(static_cast<Context*>(data));
        const auto texture = GRef<GdkTexture>::adopt(
            webkit_web_view_get_snapshot_finish(WEBKIT_WEB_VIEW(source), result, nullptr));
        context->answer(texture ? imageFrom(texture.get(), context->request, context->scale)
                                : nullptr);
      },
      new Context{request, scale, answers_.expect<ImageRef>(std::move(answer), nullptr).give});
}

void WebKitWebView::createPDF(std::function<void(PageFile)> answer) {
  struct Context {
    GRef<WebKitPrintOperation> operation;
    std::string file;
    std::function<void(PageFile)> answer;
    std::string error;
  };
  GError* rawError = nullptr;
  char* rawName = nullptr;
  const int descriptor = g_file_open_tmp("orvel-XXXXXX.pdf", &rawName, &rawError);
  const GErrorRef failure(rawError);
  const GText name(rawName);
  if (descriptor < 0)
    return engine_.scheduler().post(
        [answer = std::move(answer), text = std::string(failure->message)] {
          answer({std::nullopt, text});
        });
  g_close(descriptor, nullptr);

  auto expected =
      answers_.expect(std::move(answer), PageFile{std::nullopt, _("The page does not answer.")});
  awaitTakingUp(std::move(expected.takenUp));
  auto* context =
      new Context{GRef<WebKitPrintOperation>::adopt(webkit_print_operation_new(view_.get())),
                  name.get(), std::move(expected.give), ""};
  const auto settings = GRef<GtkPrintSettings>::adopt(gtk_print_settings_new());
  gtk_print_settings_set_printer(settings.get(), "Print to File");
  gtk_print_settings_set(settings.get(), GTK_PRINT_SETTINGS_OUTPUT_URI,
                         ("file://" + context->file).c_str());
  gtk_print_settings_set(settings.get(), GTK_PRINT_SETTINGS_OUTPUT_FILE_FORMAT, "pdf");
  auto* operation = context->operation.get();
  webkit_print_operation_set_print_settings(operation, settings.get());
  g_signal_connect(operation, "failed",
                   G_CALLBACK(+[](WebKitPrintOperation*, GError* error, gpointer data) {
                     static_cast<Context*>(data)->error = error->message;
                   }),
                   context);
  g_signal_connect(operation, "finished", G_CALLBACK(+[](WebKitPrintOperation*, gpointer data) {
                     const std::unique_ptr<Context> owned(static_cast<Context*>(data));
                     PageFile result;
                     result.error = owned->error;
                     if (owned->error.empty())
                       result.data = FileSystem::disk()->read(owned->file).bytes;
                     if (!result.data && result.error.empty())
                       result.error = _("The page could not be printed to a file.");
                     g_unlink(owned->file.c_str());
                     owned->answer(std::move(result));
                   }),
                   context);
  webkit_print_operation_print(operation);
}

namespace {

// All of a stream that is in memory.
std::string contentsOf(GInputStream* stream) {
  constexpr gsize kPiece = 1u << 20;
  std::string contents;
  for (;;) {
    GBytes* piece = g_input_stream_read_bytes(stream, kPiece, nullptr, nullptr);
    gsize size = 0;
    const auto* data = piece ? static_cast<const char*>(g_bytes_get_data(piece, &size)) : nullptr;
    if (size > 0) contents.append(data, size);
    if (piece) g_bytes_unref(piece);
    if (size == 0) return contents;
  }
}

// `bytes` in UTF-8, from the page's own encoding.
std::string decoded(std::string bytes, const std::string& encoding) {
  if (g_utf8_validate(bytes.data(), static_cast<gssize>(bytes.size()), nullptr)) return bytes;
  const GText converted(g_convert_with_fallback(bytes.data(), static_cast<gssize>(bytes.size()),
                                                "UTF-8", encoding.c_str(), "\uFFFD", nullptr,
                                                nullptr, nullptr));
  return converted ? converted.get() : text::repairedUTF8(bytes);
}

}  // namespace

void WebKitWebView::createArchive(std::function<void(PageFile)> answer) {
  auto expected =
      answers_.expect(std::move(answer), PageFile{std::nullopt, _("The page does not answer.")});
  awaitTakingUp(std::move(expected.takenUp));
  webkit_web_view_save(
      view_.get(), WEBKIT_SAVE_MODE_MHTML, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<std::function<void(PageFile)>> give(
            static_cast<std::function<void(PageFile)>*>(data));
        GError* raw = nullptr;
        const auto stream = GRef<GInputStream>::adopt(
            webkit_web_view_save_finish(WEBKIT_WEB_VIEW(source), result, &raw));
        const GErrorRef error(raw);
        if (!stream) return (*give)({std::nullopt, error ? error->message : ""});
        (*give)({contentsOf(stream.get()), ""});
      },
      boxed(std::function<void(PageFile)>(std::move(expected.give))));
}

void WebKitWebView::readSource(std::function<void(std::optional<std::string>)> answer) {
  using Answer = std::function<void(std::optional<std::string>)>;
  const Answer give =
      answers_.expect<std::optional<std::string>>(std::move(answer), std::nullopt).give;
  auto* resource = webkit_web_view_get_main_resource(view_.get());
  if (!resource || isCommittedSubstitute_)
    return engine_.scheduler().post([give] { give(std::nullopt); });
  evaluateJavaScript(
      "document.characterSet", ContentWorld::named(engine_scripts::kWorld), std::nullopt,
      [give, held = GRef<WebKitWebResource>::retain(resource)](const ScriptResult& encoding) {
        struct Context {
          Answer give;
          std::string encoding;
        };
        const json name = json::parse(encoding.value.value_or("null"), nullptr, false);
        webkit_web_resource_get_data(
            held.get(), nullptr,
            [](GObject* source, GAsyncResult* result, gpointer data) {
              const std::unique_ptr<Context> context(static_cast<Context*>(data));
              gsize size = 0;
              guchar* bytes = webkit_web_resource_get_data_finish(WEBKIT_WEB_RESOURCE(source),
                                                                  result, &size, nullptr);
              std::optional<std::string> text;
              if (bytes)
                text = decoded({reinterpret_cast<const char*>(bytes), size}, context->encoding);
              g_free(bytes);
              context->give(std::move(text));
            },
            new Context{give, name.is_string() ? name.get<std::string>() : "UTF-8"});
      });
}

void WebKitWebView::print() {
  const auto operation = GRef<WebKitPrintOperation>::adopt(webkit_print_operation_new(view_.get()));
  auto* root = gtk_widget_get_root(GTK_WIDGET(view_.get()));
  webkit_print_operation_run_dialog(operation.get(), GTK_WINDOW(root));
}

// Find

void WebKitWebView::connectFind() {
  auto* controller = webkit_web_view_get_find_controller(view_.get());
  g_signal_connect(controller, "found-text",
                   G_CALLBACK(+[](WebKitFindController*, guint, gpointer self) {
                     static_cast<WebKitWebView*>(self)->answerFinding(true);
                   }),
                   this);
  g_signal_connect(controller, "failed-to-find-text",
                   G_CALLBACK(+[](WebKitFindController*, gpointer self) {
                     static_cast<WebKitWebView*>(self)->answerFinding(false);
                   }),
                   this);
}

void WebKitWebView::answerFinding(bool isFound) {
  if (finding_.answers.empty()) return;
  const auto answer = std::move(finding_.answers.front());
  finding_.answers.pop_front();
  answer(isFound);
}

void WebKitWebView::endFinding() {
  for (const auto& answer : std::exchange(finding_.answers, {})) answer(false);
}

void WebKitWebView::find(const std::string& text, const FindConfiguration& configuration,
                         std::function<void(bool)> answer) {
  auto* controller = webkit_web_view_get_find_controller(view_.get());
  const bool isNext = finding_.text == text && !text.empty() &&
                      finding_.isCaseSensitive == configuration.isCaseSensitive;
  finding_.text = text;
  finding_.isCaseSensitive = configuration.isCaseSensitive;
  finding_.answers.push_back(answers_.expect(std::move(answer), false).give);
  guint options = WEBKIT_FIND_OPTIONS_NONE;
  if (!configuration.isCaseSensitive) options |= WEBKIT_FIND_OPTIONS_CASE_INSENSITIVE;
  if (configuration.wraps) options |= WEBKIT_FIND_OPTIONS_WRAP_AROUND;
  if (configuration.backwards) options |= WEBKIT_FIND_OPTIONS_BACKWARDS;
  if (!isNext)
    webkit_find_controller_search(controller, text.c_str(), options, G_MAXUINT);
  else if (configuration.backwards)
    webkit_find_controller_search_previous(controller);
  else
    webkit_find_controller_search_next(controller);
}

void WebKitWebView::endFind() {
  finding_.text.clear();
  webkit_find_controller_search_finish(webkit_web_view_get_find_controller(view_.get()));
}

}  // namespace orvel
