#include "Engine/WebKitGtk/Data/WebKitDataStore.h"

#include <algorithm>
#include <memory>

#include "Base/GioCall.h"
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

const char* nameOf(const GList* item) {
  return webkit_website_data_get_name(static_cast<WebKitWebsiteData*>(item->data));
}

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
  gioCall(webkit_website_data_manager_fetch, manager(), kAllTypes, nullptr)
      .then(webkit_website_data_manager_fetch_finish,
            [answer = std::move(answer)](GList* fetched, const GErrorRef&) {
              const DataList found{fetched};
              std::vector<WebsiteDataRecord> records;
              for (const GList* item = found.list; item; item = item->next)
                records.push_back({nameOf(item)});
              answer(std::move(records));
            });
}

void WebKitDataStore::removeData(std::vector<WebsiteDataRecord> records,
                                 std::function<void()> answer) {
  // The records are names; the engine wants its own objects for them.
  auto remove = [manager = GRef<WebKitWebsiteDataManager>::retain(manager()),
                 records = std::move(records),
                 answer = std::move(answer)](GList* fetched, const GErrorRef&) {
    const DataList found{fetched};
    GList* chosen = nullptr;
    for (GList* item = found.list; item; item = item->next)
      if (std::ranges::find(records, nameOf(item), &WebsiteDataRecord::displayName) !=
          records.end())
        chosen = g_list_prepend(chosen, item->data);
    if (!chosen) return answer();
    gioCall(webkit_website_data_manager_remove, manager.get(), kAllTypes, chosen, nullptr)
        .then(webkit_website_data_manager_remove_finish,
              [answer](gboolean, const GErrorRef&) { answer(); });
    g_list_free(chosen);
  };
  gioCall(webkit_website_data_manager_fetch, manager(), kAllTypes, nullptr)
      .then(webkit_website_data_manager_fetch_finish, std::move(remove));
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
