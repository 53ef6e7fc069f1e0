#pragma once

#include <webkit/webkit.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "Base/GRef.h"
#include "Base/Scheduler.h"
#include "Engine/Engine.h"

namespace orvel {

class HTTPSFirst;
class WebKitDataStore;
class WebKitWebView;

// Where the engine keeps its data and finds its parts.
struct WebKitEngineOptions {
  // Cookies and storage, a folder a profile below it.
  std::filesystem::path dataFolder;
  // Caches, a folder a profile below it, and compiled content rules.
  std::filesystem::path cacheFolder;
  // Holds the shared object that is loaded into each web process.
  std::filesystem::path webProcessFolder;
  // The program that compiles content rules. Empty: the one beside this program.
  std::filesystem::path ruleCompiler;
};

// The contract's implementation on the system's WebKitGTK.
class WebKitEngine final : public Engine {
 public:
  WebKitEngine(Scheduler& scheduler, WebKitEngineOptions options);
  ~WebKitEngine() override;

  std::string name() const override;
  std::string version() const override;
  std::shared_ptr<WebsiteDataStore> dataStoreForIdentifier(const UUID& identifier) override;
  std::shared_ptr<WebsiteDataStore> nonPersistentDataStore() override;
  void removeDataStoreForIdentifier(const UUID& identifier,
                                    std::function<void(Result<void, std::string>)> answer) override;
  std::shared_ptr<UserContentController> makeUserContentController() override;
  std::shared_ptr<WebView> makeWebView(const WebViewConfiguration& configuration) override;
  std::shared_ptr<ContentRuleListStore> contentRuleListStore() override;
  void setDownloadDelegate(std::weak_ptr<DownloadDelegate> delegate) override {
    downloadDelegate_ = std::move(delegate);
  }
  void setURLSchemeHandler(const std::string& scheme, URLSchemeHandler handler) override;

  // Each view's downloads are handed to it between these.
  void addView(WebKitWebView& view);
  void removeView(const WebKitWebView& view);

  // The engine itself, or a handler of the program's, has pages of this scheme.
  bool canLoad(const URL& url) const;

  Scheduler& scheduler() { return scheduler_; }
  HTTPSFirst& httpsFirst() { return *httpsFirst_; }

 private:
  enum class PrivacySignal { Off, On };
  // The web processes of a context share what they were started with, so the privacy signal, which
  // is decided there, takes a context of its own.
  WebKitWebContext* context(PrivacySignal signal);
  void registerScheme(WebKitWebContext* context, const std::string& scheme);
  static void serve(WebKitURISchemeRequest* request, gpointer self);

  // The store, with its downloads followed.
  std::shared_ptr<WebKitDataStore> followed(std::shared_ptr<WebKitDataStore> store);
  void downloadStarted(WebKitNetworkSession* session, WebKitDownload* download);

  Scheduler& scheduler_;
  WebKitEngineOptions options_;
  GRef<WebKitWebContext> contexts_[2];
  std::unique_ptr<HTTPSFirst> httpsFirst_;
  std::map<UUID, std::weak_ptr<WebKitDataStore>> dataStores_;
  std::shared_ptr<ContentRuleListStore> ruleStore_;
  std::map<std::string, URLSchemeHandler, std::less<>> schemeHandlers_;
  std::map<const void*, WebKitWebView*> views_;  // by the engine's own
  std::weak_ptr<DownloadDelegate> downloadDelegate_;
};

}  // namespace orvel
