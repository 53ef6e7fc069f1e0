#include "Engine/WebKitGtk/WebKitEngine.h"

#include <fmt/format.h>

#include <algorithm>

#include "Base/GioCall.h"
#include "BrowserCore/Text/Text.h"
#include "Engine/WebKitGtk/Data/WebKitDataStore.h"
#include "Engine/WebKitGtk/Data/WebKitDownload.h"
#include "Engine/WebKitGtk/Policy/HTTPSFirst.h"
#include "Engine/WebKitGtk/Policy/ReportedURL.h"
#include "Engine/WebKitGtk/Rules/SealedRuleListStore.h"
#include "Engine/WebKitGtk/Scripts/EngineScripts.h"
#include "Engine/WebKitGtk/Scripts/WebKitContentController.h"
#include "Engine/WebKitGtk/View/WebKitWebView.h"

namespace orvel {

namespace {

std::filesystem::path ruleCompiler(const WebKitEngineOptions& options) {
  if (!options.ruleCompiler.empty()) return options.ruleCompiler;
  std::error_code ignored;
  return std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path() /
         "orvel-rule-compiler";
}

// Reads `input`, which may be null, to its end. What comes before an error counts.
void readAll(GInputStream* input, std::function<void(std::string)> done) {
  if (!input) return done("");
  const auto stream = GRef<GInputStream>::adopt(input);
  const auto memory = GRef<GOutputStream>::adopt(g_memory_output_stream_new_resizable());
  gioCall(g_output_stream_splice_async, memory.get(), stream.get(), G_OUTPUT_STREAM_SPLICE_NONE,
          G_PRIORITY_DEFAULT, nullptr)
      .then(g_output_stream_splice_finish,
            [memory, done = std::move(done)](gssize, const GErrorRef&) {
              auto* read = G_MEMORY_OUTPUT_STREAM(memory.get());
              done({static_cast<const char*>(g_memory_output_stream_get_data(read)),
                    g_memory_output_stream_get_data_size(read)});
            });
}

void finish(WebKitURISchemeRequest* request, const SchemeResponse& response) {
  auto bytes = g_bytes_new(response.body.data(), response.body.size());
  const auto stream = GRef<GInputStream>::adopt(g_memory_input_stream_new_from_bytes(bytes));
  g_bytes_unref(bytes);
  const auto result = GRef<WebKitURISchemeResponse>::adopt(
      webkit_uri_scheme_response_new(stream.get(), static_cast<gint64>(response.body.size())));
  webkit_uri_scheme_response_set_status(result.get(), static_cast<guint>(response.status), nullptr);
  webkit_uri_scheme_response_set_content_type(result.get(), response.mimeType.c_str());
  auto* headers = soup_message_headers_new(SOUP_MESSAGE_HEADERS_RESPONSE);
  for (const auto& [name, value] : response.headers)
    soup_message_headers_append(headers, name.c_str(), value.c_str());
  webkit_uri_scheme_response_set_http_headers(result.get(), headers);
  webkit_uri_scheme_request_finish_with_response(request, result.get());
}

}  // namespace

WebKitEngine::WebKitEngine(Scheduler& scheduler, WebKitEngineOptions options)
    : scheduler_(scheduler),
      options_(std::move(options)),
      httpsFirst_(std::make_unique<HTTPSFirst>(options_.cacheFolder / "HTTPSFirst")),
      ruleStore_(std::make_shared<SealedRuleListStore>(
          scheduler_, options_.cacheFolder / "ContentRules", ruleCompiler(options_))) {}

WebKitEngine::~WebKitEngine() = default;

std::string WebKitEngine::name() const { return "WebKitGTK"; }

std::string WebKitEngine::version() const {
  return fmt::format("{}.{}.{}", webkit_get_major_version(), webkit_get_minor_version(),
                     webkit_get_micro_version());
}

std::shared_ptr<WebsiteDataStore> WebKitEngine::dataStoreForIdentifier(const UUID& identifier) {
  auto& known = dataStores_[identifier];
  if (auto store = known.lock()) return store;
  const std::string folder = identifier.text();
  auto store = followed(std::make_shared<WebKitDataStore>(
      options_.dataFolder / folder, options_.cacheFolder / "WebKit" / folder));
  known = store;
  return store;
}

std::shared_ptr<WebsiteDataStore> WebKitEngine::nonPersistentDataStore() {
  return followed(std::make_shared<WebKitDataStore>());
}

std::shared_ptr<WebKitDataStore> WebKitEngine::followed(std::shared_ptr<WebKitDataStore> store) {
  g_signal_connect(
      store->session(), "download-started",
      G_CALLBACK(+[](WebKitNetworkSession* session, WebKitDownload* download, gpointer self) {
        static_cast<WebKitEngine*>(self)->downloadStarted(session, download);
      }),
      this);
  return store;
}

void WebKitEngine::addView(WebKitWebView& view) { views_[view.native()] = &view; }
void WebKitEngine::removeView(const WebKitWebView& view) { views_.erase(view.native()); }

void WebKitEngine::downloadStarted(WebKitNetworkSession* session, WebKitDownload* download) {
  // The program's own, which knows whom to tell.
  if (WebKitDownloadAdapter::isFollowed(download)) return;
  auto followed = WebKitDownloadAdapter::follow(download, session);
  if (const auto view = views_.find(webkit_download_get_web_view(download)); view != views_.end())
    view->second->downloadStarted(std::move(followed));
  else
    followed->setDelegate(downloadDelegate_);
}

void WebKitEngine::removeDataStoreForIdentifier(
    const UUID& identifier, std::function<void(Result<void, std::string>)> answer) {
  const auto known = dataStores_.find(identifier);
  if (known != dataStores_.end() && !known->second.expired())
    return scheduler_.post(
        [answer = std::move(answer)] { answer(Failure("the data store is in use")); });
  dataStores_.erase(identifier);
  const auto folders = {options_.dataFolder / identifier.text(),
                        options_.cacheFolder / "WebKit" / identifier.text()};
  auto result = std::make_shared<Result<void, std::string>>();
  scheduler_.runInBackground(
      [folders = std::vector<std::filesystem::path>(folders), result] {
        for (const auto& folder : folders) {
          std::error_code error;
          std::filesystem::remove_all(folder, error);
          if (error) *result = Failure(error.message());
        }
      },
      [result, answer = std::move(answer)] { answer(*result); }, WorkPriority::Utility);
}

std::shared_ptr<UserContentController> WebKitEngine::makeUserContentController() {
  return std::make_shared<WebKitContentController>();
}

std::shared_ptr<ContentRuleListStore> WebKitEngine::contentRuleListStore() { return ruleStore_; }

std::shared_ptr<WebView> WebKitEngine::makeWebView(const WebViewConfiguration& configuration) {
  const auto signal =
      configuration.isGlobalPrivacyControlEnabled ? PrivacySignal::On : PrivacySignal::Off;
  auto view = std::make_shared<WebKitWebView>(*this, context(signal), configuration);
  view->start();
  return view;
}

WebKitWebContext* WebKitEngine::context(PrivacySignal signal) {
  auto& context = contexts_[static_cast<int>(signal)];
  if (context) return context.get();
  context = GRef<WebKitWebContext>::adopt(webkit_web_context_new());
  // Right after the context is made: the signal for it comes too late for the first process.
  webkit_web_context_set_web_process_extensions_directory(context.get(),
                                                          options_.webProcessFolder.c_str());
  // A world must be known to a process before the first script of that name comes to it.
  const std::string client = ContentWorld::defaultClient().name;
  const std::string hidden = ContentWorld::hiddenItems().name;
  const char* worlds[] = {engine_scripts::kWorld, client.c_str(), hidden.c_str(), nullptr};
  webkit_web_context_set_web_process_extensions_initialization_user_data(
      context.get(), g_variant_new("(b^as)", signal == PrivacySignal::On, worlds));
  for (const auto& [scheme, handler] : schemeHandlers_) registerScheme(context.get(), scheme);
  return context.get();
}

void WebKitEngine::setURLSchemeHandler(const std::string& scheme, URLSchemeHandler handler) {
  const bool isNew = !schemeHandlers_.contains(scheme);
  schemeHandlers_[scheme] = std::move(handler);
  if (!isNew) return;
  for (const auto& context : contexts_)
    if (context) registerScheme(context.get(), scheme);
}

bool WebKitEngine::canLoad(const URL& url) const {
  constexpr std::string_view kSchemes[] = {"http", "https", "about",     "blob",
                                           "data", "file",  "javascript"};
  return std::ranges::any_of(kSchemes,
                             [&](std::string_view scheme) { return url.hasScheme(scheme); }) ||
         schemeHandlers_.contains(text::lowerASCII(url.scheme()));
}

void WebKitEngine::registerScheme(WebKitWebContext* context, const std::string& scheme) {
  webkit_web_context_register_uri_scheme(context, scheme.c_str(), &WebKitEngine::serve, this,
                                         nullptr);
  auto* security = webkit_web_context_get_security_manager(context);
  webkit_security_manager_register_uri_scheme_as_secure(security, scheme.c_str());
  webkit_security_manager_register_uri_scheme_as_cors_enabled(security, scheme.c_str());
  webkit_security_manager_register_uri_scheme_as_display_isolated(security, scheme.c_str());
}

void WebKitEngine::serve(WebKitURISchemeRequest* raw, gpointer self) {
  auto* engine = static_cast<WebKitEngine*>(self);
  const auto request = GRef<WebKitURISchemeRequest>::retain(raw);
  const auto url = reportedURL(webkit_uri_scheme_request_get_uri(raw));
  const auto handler =
      engine->schemeHandlers_.find(std::string_view(webkit_uri_scheme_request_get_scheme(raw)));
  if (!url || handler == engine->schemeHandlers_.end()) {
    const GErrorRef error(g_error_new_literal(G_IO_ERROR, G_IO_ERROR_NOT_FOUND, "No such page"));
    return webkit_uri_scheme_request_finish_error(raw, error.get());
  }
  URLRequest asked{.url = *url};
  if (const char* method = webkit_uri_scheme_request_get_http_method(raw)) asked.method = method;
  if (auto* headers = webkit_uri_scheme_request_get_http_headers(raw))
    soup_message_headers_foreach(
        headers,
        [](const char* name, const char* value, gpointer into) {
          static_cast<URLRequest*>(into)->headers.emplace_back(name, value);
        },
        &asked);
  readAll(webkit_uri_scheme_request_get_http_body(raw), [asked, request, handle = handler->second](
                                                            std::string body) mutable {
    asked.body = std::move(body);
    handle(asked, [request](const SchemeResponse& response) { finish(request.get(), response); });
  });
}

}  // namespace orvel
