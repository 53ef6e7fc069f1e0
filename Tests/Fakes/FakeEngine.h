#pragma once

#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Base/Scheduler.h"
#include "Engine/Engine.h"
#include "Tests/Fakes/FakeWebView.h"

// An engine that does what a script of the test says: pages that load, fail, open windows, ask for
// devices, play media and die. It keeps every rule of the contract: answers come on a later
// turn, exactly once.
namespace orvel::test {

class FakeDataStore final : public WebsiteDataStore {
 public:
  FakeDataStore(FakeEngine& engine, std::optional<UUID> identifier)
      : engine_(engine), identifier_(identifier) {}
  bool isPersistent() const override { return identifier_.has_value(); }
  void fetchDataRecords(std::function<void(std::vector<WebsiteDataRecord>)> answer) override;
  void removeData(std::vector<WebsiteDataRecord> records, std::function<void()> answer) override;
  std::shared_ptr<Download> startDownload(const URLRequest& request) override;

  // The domains that pages have stored data under.
  std::set<std::string> domains;

 private:
  FakeEngine& engine_;
  std::optional<UUID> identifier_;
};

class FakeRuleList final : public ContentRuleList {
 public:
  FakeRuleList(std::string identifier, std::string json)
      : json(std::move(json)), identifier_(std::move(identifier)) {}
  const std::string& identifier() const override { return identifier_; }
  const std::string json;

 private:
  std::string identifier_;
};

class FakeRuleStore final : public ContentRuleListStore {
 public:
  explicit FakeRuleStore(Scheduler& scheduler) : scheduler_(scheduler) {}
  void getAvailableIdentifiers(std::function<void(std::vector<std::string>)> answer) override;
  void lookUp(const std::string& identifier, std::function<void(CompiledRules)> answer) override;
  void compile(const std::string& identifier, std::string json,
               std::function<void(CompiledRules)> answer) override;
  void remove(const std::string& identifier,
              std::function<void(Result<void, std::string>)> answer) override;

  std::map<std::string, std::shared_ptr<FakeRuleList>> lists;
  // How long compiling takes.
  Duration compileTime{0};
  std::vector<std::string> compiled;
  std::set<std::string> damaged;
  // Runs before a list is looked up.
  std::function<void()> willLookUp;

 private:
  Scheduler& scheduler_;
};

class FakeEngine : public Engine {
 public:
  explicit FakeEngine(Scheduler& scheduler) : ruleStore(scheduler), scheduler_(scheduler) {}

  std::string name() const override { return "Fake"; }
  std::string version() const override { return "1.0"; }
  std::shared_ptr<WebsiteDataStore> dataStoreForIdentifier(const UUID& identifier) override;
  std::shared_ptr<WebsiteDataStore> nonPersistentDataStore() override {
    return std::make_shared<FakeDataStore>(*this, std::nullopt);
  }
  void removeDataStoreForIdentifier(const UUID& identifier,
                                    std::function<void(Result<void, std::string>)> answer) override;
  std::shared_ptr<UserContentController> makeUserContentController() override {
    return std::make_shared<FakeContentController>();
  }
  std::shared_ptr<WebView> makeWebView(const WebViewConfiguration& configuration) override;
  std::shared_ptr<ContentRuleListStore> contentRuleListStore() override {
    if (!hasRuleStore) return nullptr;
    return {&ruleStore, [](ContentRuleListStore*) {}};
  }
  void setDownloadDelegate(std::weak_ptr<DownloadDelegate> delegate) override {
    downloadDelegate = std::move(delegate);
  }
  void setURLSchemeHandler(const std::string&, URLSchemeHandler) override {}

  Scheduler& scheduler() { return scheduler_; }
  // What is at an address; an address that has no entry loads as a page with its own text as title.
  FakePage pageAt(const URL& url) const;

  std::map<std::string, FakePage> pages;
  FakeRuleStore ruleStore;
  bool hasRuleStore = true;
  // How many removals of a data store fail before one succeeds.
  int failingRemovals = 0;
  std::vector<UUID> removedStores;
  // Every view that was ever made, in order; gone ones are expired.
  std::vector<std::weak_ptr<FakeWebView>> views;
  std::vector<std::shared_ptr<FakeDownload>> downloads;
  std::weak_ptr<DownloadDelegate> downloadDelegate;
  // Downloads run by themselves, to their end or to where the page says.
  bool runsDownloads = false;
  std::shared_ptr<FakeDownload> makeDownload(const URL& url);

 private:
  Scheduler& scheduler_;
  std::map<UUID, std::weak_ptr<FakeDataStore>> stores_;
};

}  // namespace orvel::test
