#include <fmt/format.h>
#include <glib/gstdio.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "Base/FileSystem.h"
#include "Base/GioCall.h"
#include "Base/Texts.h"
#include "BrowserCore/Text/Text.h"
#include "Engine/WebKitGtk/Scripts/EngineScripts.h"
#include "Engine/WebKitGtk/View/WebKitWebView.h"
#include "Engine/WebKitGtk/WebKitEngine.h"

namespace orvel {

namespace {

using nlohmann::json;

using ScriptAnswer = std::function<void(ScriptResult)>;

// Gives what came of running a script.
auto giving(ScriptAnswer answer) {
  return [answer = std::move(answer)](JSCValue* returned, const GErrorRef& error) {
    const auto value = GRef<JSCValue>::adopt(returned);
    if (!value) return answer(Failure(error ? error->message : "unknown error"));
    const GText text(jsc_value_to_json(value.get(), 0));
    answer(text ? text.get() : "null");
  };
}

const ScriptResult kUnanswered = Failure("the page does not answer");

// What printing to `file` came to; `error` is empty when the engine knows of none.
PageFile printed(const std::string& file, const std::string& error) {
  if (!error.empty()) return Failure(error);
  if (auto bytes = FileSystem::disk()->read(file)) return *std::move(bytes);
  return Failure(_("The page could not be printed to a file."));
}

const char* worldName(const ContentWorld& world) {
  return world.name.empty() ? nullptr : world.name.c_str();
}

// What the frames of a page answered; empty without a reply.
std::vector<ScriptResult> frameResults(const GRef<WebKitUserMessage>& reply) {
  std::vector<ScriptResult> results;
  GVariant* parameters = reply ? webkit_user_message_get_parameters(reply.get()) : nullptr;
  if (!parameters || !g_variant_is_of_type(parameters, G_VARIANT_TYPE("a(bs)"))) return results;
  GVariantIter iterator;
  gboolean isValue = FALSE;
  const char* text = nullptr;
  g_variant_iter_init(&iterator, parameters);
  while (g_variant_iter_next(&iterator, "(b&s)", &isValue, &text))
    results.push_back(isValue ? ScriptResult(text) : ScriptResult(Failure(text)));
  return results;
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
                              if (results.empty()) return answer(Failure("no such frame"));
                              answer(results.front());
                            });
  auto expected = answers_.expect(std::move(answer), kUnanswered);
  gioCall(webkit_web_view_evaluate_javascript, view_.get(), script.c_str(),
          static_cast<gssize>(script.size()), worldName(world), nullptr, nullptr)
      .then(webkit_web_view_evaluate_javascript_finish, giving(std::move(expected.give)));
}

void WebKitWebView::evaluateInFrames(const std::string& script, const ContentWorld& world,
                                     uint64_t frame, std::function<void(FrameResults)> answer) {
  auto expected = answers_.expect(std::move(answer), FrameResults());
  const auto message = GRef<WebKitUserMessage>::retain(webkit_user_message_new(
      "evaluate", g_variant_new("(sst)", world.name.c_str(), script.c_str(), frame)));
  gioCall(webkit_web_view_send_message_to_page, view_.get(), message.get(), nullptr)
      .then(webkit_web_view_send_message_to_page_finish,
            [give = std::move(expected.give)](WebKitUserMessage* reply, const GErrorRef&) {
              give(frameResults(GRef<WebKitUserMessage>::adopt(reply)));
            });
}

// What its process is sent it answers in order.
void WebKitWebView::awaitTakingUp(std::function<void()> takenUp) {
  gioCall(webkit_web_view_evaluate_javascript, view_.get(), "0", 1,
          ContentWorld::defaultClient().name.c_str(), nullptr, nullptr)
      .then(webkit_web_view_evaluate_javascript_finish,
            [takenUp = std::move(takenUp)](JSCValue* returned, const GErrorRef&) {
              const auto value = GRef<JSCValue>::adopt(returned);
              if (value) takenUp();
            });
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
  gioCall(webkit_web_view_call_async_javascript_function, view_.get(), prelude.c_str(),
          static_cast<gssize>(prelude.size()), g_variant_dict_end(&dictionary), worldName(world),
          nullptr, nullptr)
      .then(webkit_web_view_call_async_javascript_function_finish,
            giving(std::move(expected.give)));
  awaitTakingUp(std::move(expected.takenUp));
}

// Pictures

void WebKitWebView::takeSnapshot(const SnapshotRequest& request,
                                 std::function<void(ImageRef)> answer) {
  const int scale = gtk_widget_get_scale_factor(GTK_WIDGET(view_.get()));
  gioCall(webkit_web_view_get_snapshot, view_.get(), WEBKIT_SNAPSHOT_REGION_VISIBLE,
          WEBKIT_SNAPSHOT_OPTIONS_NONE, nullptr)
      .then(webkit_web_view_get_snapshot_finish,
            [request, scale, give = answers_.expect<ImageRef>(std::move(answer), nullptr).give](
                GdkTexture* taken, const GErrorRef&) {
              const auto texture = GRef<GdkTexture>::adopt(taken);
              give(texture ? imageFrom(texture.get(), request, scale) : nullptr);
            });
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
          answer(Failure(text));
        });
  g_close(descriptor, nullptr);

  auto expected =
      answers_.expect(std::move(answer), PageFile(Failure(_("The page does not answer."))));
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
                     owned->answer(printed(owned->file, owned->error));
                     g_unlink(owned->file.c_str());
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
      answers_.expect(std::move(answer), PageFile(Failure(_("The page does not answer."))));
  awaitTakingUp(std::move(expected.takenUp));
  gioCall(webkit_web_view_save, view_.get(), WEBKIT_SAVE_MODE_MHTML, nullptr)
      .then(webkit_web_view_save_finish,
            [give = std::move(expected.give)](GInputStream* saved, const GErrorRef& error) {
              const auto stream = GRef<GInputStream>::adopt(saved);
              if (stream) return give(contentsOf(stream.get()));
              give(Failure(std::string(error ? error->message : "")));
            });
}

void WebKitWebView::readSource(std::function<void(std::optional<std::string>)> answer) {
  const auto give =
      answers_.expect<std::optional<std::string>>(std::move(answer), std::nullopt).give;
  auto* resource = webkit_web_view_get_main_resource(view_.get());
  if (!resource || isCommittedSubstitute_) return give(std::nullopt);
  const auto read = [give,
                     held = GRef<WebKitWebResource>::retain(resource)](const ScriptResult& told) {
    const json name = json::parse(told.value_or("null"), nullptr, false);
    const std::string encoding = name.is_string() ? name.get<std::string>() : "UTF-8";
    gioCall(webkit_web_resource_get_data, held.get(), nullptr)
        .then([give, encoding](GObject* source, GAsyncResult* result) {
          gsize size = 0;
          guchar* bytes = webkit_web_resource_get_data_finish(WEBKIT_WEB_RESOURCE(source), result,
                                                              &size, nullptr);
          if (!bytes) return give(std::nullopt);
          give(decoded({reinterpret_cast<const char*>(bytes), size}, encoding));
          g_free(bytes);
        });
  };
  evaluateJavaScript("document.characterSet", ContentWorld::named(engine_scripts::kWorld),
                     std::nullopt, read);
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
