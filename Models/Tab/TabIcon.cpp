#include "Models/Tab/TabIcon.h"

#include <nlohmann/json.hpp>

#include "EmbeddedPageScripts.h"
#include "Models/Tab/BrowserTab.h"

namespace orvel {

ImageRef TabIcon::favicon(const std::optional<URL>& address) const {
  if (!favicon_.peek()) untracked([&] { favicon_.set(cached(address)); });
  return *favicon_.get();
}

ImageRef TabIcon::cached(const std::optional<URL>& address) const {
  const auto host = address ? address->host() : std::nullopt;
  return host ? cache_.cachedImage(*host) : nullptr;
}

namespace {

// In the order in which they are tried. `declared` is the picking script's answer.
std::vector<URL> candidates(const ScriptResult& declared, const URL& page) {
  std::vector<URL> addresses;
  const auto add = [&](const std::string& reference) {
    if (auto address = page.resolve(reference)) addresses.push_back(std::move(*address));
  };
  const auto value = nlohmann::json::parse(declared.value_or(""), nullptr, false);
  if (value.is_string() && !value.get_ref<const std::string&>().empty())
    add(value.get_ref<const std::string&>());
  add("/favicon.ico");
  return addresses;
}

}  // namespace

Task<> TabIcon::load(std::weak_ptr<BrowserTab> weak, std::shared_ptr<WebView> view,
                     FaviconStore& cache) {
  const auto page = view->url();
  const std::string host(page ? page->host().value_or("") : "");
  if (host.empty()) co_return;
  auto [picking, resolve] = makeFuture<ScriptResult>();
  view->evaluateJavaScript(page_scripts::kDeclaredIcon, ContentWorld::defaultClient(), std::nullopt,
                           resolve);
  const ScriptResult declared = co_await std::move(picking);
  view.reset();
  for (const URL& address : candidates(declared, *page)) {
    auto memory = FaviconStore::Memory::Forgets;
    {
      const auto tab = weak.lock();
      if (!tab) co_return;
      if (!tab->profile->isPrivate) memory = FaviconStore::Memory::Remembers;
    }
    auto fetching = cache.fetch(address, host, memory);
    const ImageRef icon = co_await std::move(fetching);
    if (!icon) continue;
    const auto tab = weak.lock();
    const auto present = tab ? tab->url.peek() : std::nullopt;
    if (present && present->host() == host) tab->setFavicon(icon);
    co_return;
  }
}

}  // namespace orvel
