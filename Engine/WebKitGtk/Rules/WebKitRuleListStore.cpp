#include "Engine/WebKitGtk/Rules/WebKitRuleListStore.h"

#include <memory>
#include <utility>

#include "Base/GioCall.h"

namespace orvel {

namespace {

using CompiledAnswer = std::function<void(CompiledRules)>;

// Gives what came of compiling or loading a list.
auto giving(CompiledAnswer answer) {
  return [answer = std::move(answer)](WebKitUserContentFilter* filter, const GErrorRef& error) {
    if (filter) return answer(std::make_shared<WebKitRuleList>(filter));
    answer(Failure(error ? error->message : "unknown error"));
  };
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
  gioCall(webkit_user_content_filter_store_fetch_identifiers, store_.get(), nullptr)
      .then(webkit_user_content_filter_store_fetch_identifiers_finish,
            [answer = std::move(answer)](gchar** names, const GErrorRef&) {
              std::vector<std::string> identifiers;
              for (gchar** name = names; name && *name; ++name) identifiers.emplace_back(*name);
              g_strfreev(names);
              answer(std::move(identifiers));
            });
}

void WebKitRuleListStore::lookUp(const std::string& identifier, CompiledAnswer answer) {
  gioCall(webkit_user_content_filter_store_load, store_.get(), identifier.c_str(), nullptr)
      .then(webkit_user_content_filter_store_load_finish, giving(std::move(answer)));
}

void WebKitRuleListStore::compile(const std::string& identifier, std::string json,
                                  CompiledAnswer answer) {
  auto* text = new std::string(std::move(json));
  GBytes* bytes = g_bytes_new_with_free_func(
      text->data(), text->size(), [](gpointer owned) { delete static_cast<std::string*>(owned); },
      text);
  gioCall(webkit_user_content_filter_store_save, store_.get(), identifier.c_str(), bytes, nullptr)
      .then(webkit_user_content_filter_store_save_finish, giving(std::move(answer)));
  g_bytes_unref(bytes);
}

void WebKitRuleListStore::remove(const std::string& identifier,
                                 std::function<void(Result<void, std::string>)> answer) {
  gioCall(webkit_user_content_filter_store_remove, store_.get(), identifier.c_str(), nullptr)
      .then(webkit_user_content_filter_store_remove_finish,
            [answer = std::move(answer)](gboolean, const GErrorRef& error) {
              if (error) return answer(Failure(error->message));
              answer({});
            });
}

}  // namespace orvel
