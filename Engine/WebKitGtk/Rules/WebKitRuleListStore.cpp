#include "Engine/WebKitGtk/Rules/WebKitRuleListStore.h"

#include <memory>

namespace orvel {

namespace {

using CompiledAnswer = std::function<void(CompiledRules)>;

CompiledRules compiled(WebKitUserContentFilter* filter, GError* rawError) {
  const GErrorRef error(rawError);
  if (filter) return std::make_shared<WebKitRuleList>(filter);
  return Failure(error ? error->message : "unknown error");
}

}  // namespace

WebKitRuleList::WebKitRuleList(WebKitUserContentFilter* filter)
    : filter_(filter), identifier_(webkit_user_content_filter_get_identifier(filter)) {}

WebKitRuleList::~WebKitRuleList() { webkit_user_content_filter_unref(filter_); }

WebKitRuleListStore::WebKitRuleListStore(const std::filesystem::path& folder)
    : store_(GRef<WebKitUserContentFilterStore>::adopt(
          webkit_user_content_filter_store_new(folder.c_str()))) {}

void WebKitRuleListStore::getAvailableIdentifiers(
    std::function<void(std::vector<std::string>)> answer) {
  using Answer = std::function<void(std::vector<std::string>)>;
  webkit_user_content_filter_store_fetch_identifiers(
      store_.get(), nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Answer> give(static_cast<Answer*>(data));
        gchar** names = webkit_user_content_filter_store_fetch_identifiers_finish(
            WEBKIT_USER_CONTENT_FILTER_STORE(source), result);
        std::vector<std::string> identifiers;
        for (gchar** name = names; name && *name; ++name) identifiers.emplace_back(*name);
        g_strfreev(names);
        (*give)(std::move(identifiers));
      },
      new Answer(std::move(answer)));
}

void WebKitRuleListStore::lookUp(const std::string& identifier, CompiledAnswer answer) {
  webkit_user_content_filter_store_load(
      store_.get(), identifier.c_str(), nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<CompiledAnswer> give(static_cast<CompiledAnswer*>(data));
        GError* error = nullptr;
        auto* filter = webkit_user_content_filter_store_load_finish(
            WEBKIT_USER_CONTENT_FILTER_STORE(source), result, &error);
        (*give)(compiled(filter, error));
      },
      new CompiledAnswer(std::move(answer)));
}

void WebKitRuleListStore::compile(const std::string& identifier, std::string json,
                                  CompiledAnswer answer) {
  auto* text = new std::string(std::move(json));
  GBytes* bytes = g_bytes_new_with_free_func(
      text->data(), text->size(), [](gpointer owned) { delete static_cast<std::string*>(owned); },
      text);
  webkit_user_content_filter_store_save(
      store_.get(), identifier.c_str(), bytes, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<CompiledAnswer> give(static_cast<CompiledAnswer*>(data));
        GError* error = nullptr;
        auto* filter = webkit_user_content_filter_store_save_finish(
            WEBKIT_USER_CONTENT_FILTER_STORE(source), result, &error);
        (*give)(compiled(filter, error));
      },
      new CompiledAnswer(std::move(answer)));
  g_bytes_unref(bytes);
}

void WebKitRuleListStore::remove(const std::string& identifier,
                                 std::function<void(Result<void, std::string>)> answer) {
  using Answer = std::function<void(Result<void, std::string>)>;
  webkit_user_content_filter_store_remove(
      store_.get(), identifier.c_str(), nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Answer> give(static_cast<Answer*>(data));
        GError* error = nullptr;
        webkit_user_content_filter_store_remove_finish(WEBKIT_USER_CONTENT_FILTER_STORE(source),
                                                       result, &error);
        const GErrorRef owned(error);
        (*give)(owned ? Result<void, std::string>(Failure(owned->message))
                      : Result<void, std::string>());
      },
      new Answer(std::move(answer)));
}

}  // namespace orvel
