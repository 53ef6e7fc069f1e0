#pragma once

#include <webkit/webkit.h>

#include <filesystem>

#include "Base/GRef.h"
#include "Engine/WebsiteDataStore.h"

namespace orvel {

class WebKitDataStore final : public WebsiteDataStore {
 public:
  // An ephemeral session.
  WebKitDataStore();
  WebKitDataStore(const std::filesystem::path& dataFolder,
                  const std::filesystem::path& cacheFolder);

  bool isPersistent() const override;
  void fetchDataRecords(std::function<void(std::vector<WebsiteDataRecord>)> answer) override;
  void removeData(std::vector<WebsiteDataRecord> records, std::function<void()> answer) override;
  std::shared_ptr<Download> startDownload(const URLRequest& request) override;

  WebKitNetworkSession* session() const { return session_.get(); }

 private:
  WebKitWebsiteDataManager* manager() const {
    return webkit_network_session_get_website_data_manager(session_.get());
  }

  GRef<WebKitNetworkSession> session_;
};

}  // namespace orvel
