#include "Tests/Fakes/FakeEngine.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace orvel::test {

// Content rules

void FakeRuleStore::getAvailableIdentifiers(std::function<void(std::vector<std::string>)> answer) {
  std::vector<std::string> identifiers;
  for (const auto& [identifier, list] : lists) identifiers.push_back(identifier);
  scheduler_.post([identifiers, answer = std::move(answer)] { answer(identifiers); });
}

void FakeRuleStore::lookUp(const std::string& identifier,
                           std::function<void(CompiledRules)> answer) {
  if (willLookUp) willLookUp();
  CompiledRules result = Failure("unknown identifier");
  if (const auto found = lists.find(identifier);
      found != lists.end() && !damaged.contains(identifier))
    result = found->second;
  scheduler_.post([result, answer = std::move(answer)] { answer(result); });
}

void FakeRuleStore::compile(const std::string& identifier, std::string json,
                            std::function<void(CompiledRules)> answer) {
  auto finish = [this, identifier, json = std::move(json), answer = std::move(answer)] {
    const auto isRule = [](const nlohmann::json& rule) {
      return rule.is_object() && rule.contains("trigger") && rule["trigger"].is_object();
    };
    const auto given = nlohmann::json::parse(json, nullptr, false);
    if (!given.is_array() || !std::ranges::all_of(given, isRule))
      return answer(Failure("not a list of rules"));
    compiled.push_back(identifier);
    damaged.erase(identifier);
    answer(lists[identifier] = std::make_shared<FakeRuleList>(identifier, json));
  };
  const auto compiling = [](Duration duration, std::function<void()> action) -> Task<> {
    co_await sleep(duration);
    action();
  };
  scheduler_.start(compiling(compileTime, std::move(finish))).detach();
}

void FakeRuleStore::remove(const std::string& identifier,
                           std::function<void(Result<void, std::string>)> answer) {
  const bool isKnown = lists.erase(identifier) > 0;
  scheduler_.post([isKnown, answer = std::move(answer)] {
    if (!isKnown) return answer(Failure("unknown identifier"));
    answer({});
  });
}

// Data

void FakeDataStore::fetchDataRecords(std::function<void(std::vector<WebsiteDataRecord>)> answer) {
  std::vector<WebsiteDataRecord> records;
  for (const std::string& domain : domains) records.push_back({domain});
  engine_.scheduler().post([records, answer = std::move(answer)] { answer(records); });
}

void FakeDataStore::removeData(std::vector<WebsiteDataRecord> records,
                               std::function<void()> answer) {
  for (const auto& record : records) domains.erase(record.displayName);
  engine_.scheduler().post(std::move(answer));
}

std::shared_ptr<Download> FakeDataStore::startDownload(const URLRequest& request) {
  const bool isKnown = request.url.hasScheme("http") || request.url.hasScheme("https") ||
                       request.url.hasScheme("data");
  return isKnown ? engine_.makeDownload(request.url) : nullptr;
}

// Downloads

void FakeDownload::cancel() {
  const auto end = [self = shared_from_this()] {
    self->fail({LoadError::Kind::Cancelled, "Fake", 1, "Cancelled", self->url_});
  };
  scheduler_ ? scheduler_->post(end) : end();
}

void FakeDownload::begin(const std::string& suggestedFilename) {
  const auto self = shared_from_this();
  const auto delegate = delegate_.lock();
  if (!delegate) return cancel();
  delegate->decideDestination(self, suggestedFilename, [self](auto path) {
    if (!path) return self->cancel();
    self->destination = path;
  });
}

void FakeDownload::finish() {
  const auto delegate = delegate_.lock();
  if (!std::exchange(hasEnded_, true) && delegate) delegate->didFinish(shared_from_this());
}

void FakeDownload::fail(const LoadError& error) {
  const auto delegate = delegate_.lock();
  if (!std::exchange(hasEnded_, true) && delegate) delegate->didFail(shared_from_this(), error);
}

// The engine

namespace {

Task<> run(std::shared_ptr<FakeDownload> download, bool breaksOff) {
  co_await sleep(Duration(1));
  const size_t slash = download->originalURL()->text().rfind('/');
  download->begin(download->originalURL()->text().substr(slash + 1));
  while (!download->destination && !download->hasEnded()) co_await sleep(1ms);
  if (download->hasEnded()) co_return;
  download->setProgress(0.5);
  co_await sleep(1ms);
  if (breaksOff) co_return download->fail({.kind = LoadError::Kind::ConnectionLost});
  download->setProgress(1);
  download->finish();
}

}  // namespace

std::shared_ptr<FakeDownload> FakeEngine::makeDownload(const URL& url) {
  auto download = std::make_shared<FakeDownload>(url, &scheduler_);
  downloads.push_back(download);
  if (runsDownloads)
    scheduler_.start(run(download, pageAt(url).load == FakePage::Load::BreakOff)).detach();
  return download;
}

std::shared_ptr<WebsiteDataStore> FakeEngine::dataStoreForIdentifier(const UUID& identifier) {
  auto& weak = stores_[identifier];
  auto store = weak.lock();
  if (!store) weak = store = std::make_shared<FakeDataStore>(*this, identifier);
  return store;
}

void FakeEngine::removeDataStoreForIdentifier(
    const UUID& identifier, std::function<void(Result<void, std::string>)> answer) {
  Result<void, std::string> result;
  if (const auto known = stores_.find(identifier); known != stores_.end() && known->second.lock()) {
    result = Failure("in use");
  } else if (failingRemovals > 0) {
    --failingRemovals;
    result = Failure("in use");
  } else {
    removedStores.push_back(identifier);
  }
  scheduler_.post([result, answer = std::move(answer)] { answer(result); });
}

std::shared_ptr<WebView> FakeEngine::makeWebView(const WebViewConfiguration& configuration) {
  auto view = std::make_shared<FakeWebView>(*this, configuration);
  views.push_back(view);
  return view;
}

FakePage FakeEngine::pageAt(const URL& url) const {
  const auto found = pages.find(url.text());
  if (found != pages.end()) return found->second;
  return {.title = url.text()};
}

}  // namespace orvel::test
