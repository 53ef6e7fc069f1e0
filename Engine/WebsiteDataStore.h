#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "BrowserCore/UUID.h"
#include "Engine/Navigation.h"

namespace orvel {

class Download;

// The stored data of one registrable domain.
struct WebsiteDataRecord {
  // The domain that the data is stored under, for example "example.com".
  std::string displayName;
};

// Cookies, caches, databases and permissions of one profile, in folders of their own.
class WebsiteDataStore {
 public:
  virtual ~WebsiteDataStore() = default;
  // False for a private store: nothing of it reaches the disk, and it dies with its last user.
  virtual bool isPersistent() const = 0;
  // Data of all kinds; empty after a failure.
  virtual void fetchDataRecords(std::function<void(std::vector<WebsiteDataRecord>)> answer) = 0;
  // Removes the records' data of all kinds, then answers, also after a failure.
  virtual void removeData(std::vector<WebsiteDataRecord> records, std::function<void()> answer) = 0;
  // Fetches an address of http, https or data without a page, with the store's cookies and the
  // request's headers. Its delegate is to be set before the turn ends; null for other addresses.
  virtual std::shared_ptr<Download> startDownload(const URLRequest& request) = 0;
};

}  // namespace orvel
