#include "Engine/WebKitGtk/Data/WebKitDataStore.h"

#include <algorithm>
#include <memory>

#include "Engine/WebKitGtk/Data/WebKitDownload.h"

namespace orvel {

namespace {

struct DataList {
  GList* list = nullptr;
  ~DataList() {
    g_list_free_full(list, [](gpointer data) {
      webkit_website_data_unref(static_cast<WebKitWebsiteData*>(data));
    });
  }
};

// Session cookies and everything that outlives a run.
constexpr auto kAllTypes = WEBKIT_WEBSITE_DATA_ALL;

}  // namespace

WebKitDataStore::WebKitDataStore()
    : session_(GRef<WebKitNetworkSession>::adopt(webkit_network_session_new_ephemeral())) {
  webkit_network_session_set_itp_enabled(session_.get(), TRUE);
}

WebKitDataStore::WebKitDataStore(const std::filesystem::path& dataFolder,
                                 const std::filesystem::path& cacheFolder)
    : session_(GRef<WebKitNetworkSession>::adopt(
          webkit_network_session_new(dataFolder.c_str(), cacheFolder.c_str()))) {
  webkit_network_session_set_itp_enabled(session_.get(), TRUE);
  auto* cookies = webkit_network_session_get_cookie_manager(session_.get());
  webkit_cookie_manager_set_persistent_storage(cookies, (dataFolder / "cookies.sqlite").c_str(),
                                               WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
}

bool WebKitDataStore::isPersistent() const {
  return !webkit_network_session_is_ephemeral(session_.get());
}

void WebKitDataStore::fetchDataRecords(std::function<void(std::vector<WebsiteDataRecord>)> answer) {
  using Answer = std::function<void(std::vector<WebsiteDataRecord>)>;
  webkit_website_data_manager_fetch(
      manager(), kAllTypes, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Answer> give(static_cast<Answer*>(data));
        const DataList found{webkit_website_data_manager_fetch_finish(
            WEBKIT_WEBSITE_DATA_MANAGER(source), result, nullptr)};
        std::vector<WebsiteDataRecord> records;
        for (const GList* item = found.list; item; item = item->next)
          records.push_back(
              {webkit_website_data_get_name(static_cast<WebKitWebsiteData*>(item->data))});
        (*give)(std::move(records));
      },
      new Answer(std::move(answer)));
}

namespace {

struct Removal {
  std::vector<WebsiteDataRecord> records;
  std::function<void()> answer;

  bool contains(const char* name) const {
    return std::any_of(records.begin(), records.end(),
                       [name](const auto& record) { return record.displayName == name; });
  }
};

// The records are names; the engine wants its own objects for them.
void removeFetched(GObject* source, GAsyncResult* result, gpointer data) {
  std::unique_ptr<Removal> removal(static_cast<Removal*>(data));
  auto* manager = WEBKIT_WEBSITE_DATA_MANAGER(source);
  const DataList found{webkit_website_data_manager_fetch_finish(manager, result, nullptr)};
  GList* chosen = nullptr;
  for (GList* item = found.list; item; item = item->next)
    if (removal->contains(
            webkit_website_data_get_name(static_cast<WebKitWebsiteData*>(item->data))))
      chosen = g_list_prepend(chosen, item->data);
  if (!chosen) return removal->answer();
  webkit_website_data_manager_remove(
      manager, kAllTypes, chosen, nullptr,
      [](GObject* object, GAsyncResult* done, gpointer context) {
        const std::unique_ptr<Removal> owned(static_cast<Removal*>(context));
        webkit_website_data_manager_remove_finish(WEBKIT_WEBSITE_DATA_MANAGER(object), done,
                                                  nullptr);
        owned->answer();
      },
      removal.release());
  g_list_free(chosen);
}

}  // namespace

void WebKitDataStore::removeData(std::vector<WebsiteDataRecord> records,
                                 std::function<void()> answer) {
  webkit_website_data_manager_fetch(manager(), kAllTypes, nullptr, &removeFetched,
                                    new Removal{std::move(records), std::move(answer)});
}

std::shared_ptr<Download> WebKitDataStore::startDownload(const URLRequest& request) {
  constexpr std::string_view kSchemes[] = {"http", "https", "data"};
  const bool isKnown = std::ranges::any_of(
      kSchemes, [&](std::string_view scheme) { return request.url.hasScheme(scheme); });
  if (!isKnown) return nullptr;
  const auto download = GRef<WebKitDownload>::adopt(
      webkit_network_session_download_uri(session_.get(), request.url.text().c_str()));
  auto* native = webkit_download_get_request(download.get());
  if (auto* headers = webkit_uri_request_get_http_headers(native))
    for (const auto& [name, value] : request.headers)
      soup_message_headers_replace(headers, name.c_str(), value.c_str());
  return WebKitDownloadAdapter::follow(download.get(), session_.get());
}

}  // namespace orvel
