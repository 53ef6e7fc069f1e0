#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "BrowserCore/Result.h"
#include "BrowserCore/UUID.h"
#include "Engine/Delegates.h"
#include "Engine/URLSchemeHandler.h"
#include "Engine/UserContent.h"
#include "Engine/WebView.h"
#include "Engine/WebsiteDataStore.h"

namespace orvel {

// A web engine: what makes pages, and what they share.
//
//   auto configuration = WebViewConfiguration{.websiteDataStore =
//   engine.dataStoreForIdentifier(id)}; auto view = engine.makeWebView(configuration);
//   view->load({.url = *URL::parse("https://example.com/")});
//
// Two implementations: the system's engine, and the scripted one of the model's tests. Everything
// belongs to the main thread.
class Engine {
 public:
  virtual ~Engine() = default;

  // For the user agent and for people: for example "WebKitGTK" and "2.50.6".
  virtual std::string name() const = 0;
  virtual std::string version() const = 0;

  // The persistent store of this identifier; calls with the same identifier answer the same store
  // while it is alive.
  virtual std::shared_ptr<WebsiteDataStore> dataStoreForIdentifier(const UUID& identifier) = 0;
  virtual std::shared_ptr<WebsiteDataStore> nonPersistentDataStore() = 0;
  // Deletes the store's folders. The error's text while a view still uses it or files stay behind;
  // absent when nothing of it is left.
  virtual void removeDataStoreForIdentifier(
      const UUID& identifier, std::function<void(Result<void, std::string>)> answer) = 0;

  virtual std::shared_ptr<UserContentController> makeUserContentController() = 0;
  virtual std::shared_ptr<WebView> makeWebView(const WebViewConfiguration& configuration) = 0;

  // Null when the engine has none here; blocking is then off.
  virtual std::shared_ptr<ContentRuleListStore> contentRuleListStore() = 0;

  // Takes the downloads whose page has gone before they began; without it they are refused.
  virtual void setDownloadDelegate(std::weak_ptr<DownloadDelegate> delegate) = 0;

  // Serves `scheme` from now on, in views made after this call. Its pages have an origin a host,
  // are a secure context, and cannot be framed or navigated to by pages of the web.
  virtual void setURLSchemeHandler(const std::string& scheme, URLSchemeHandler handler) = 0;
};

}  // namespace orvel
