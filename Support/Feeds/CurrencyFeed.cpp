#include "Support/Feeds/CurrencyFeed.h"

#include <utility>

namespace orvel {

CurrencyFeed::CurrencyFeed(Scheduler& scheduler, FileWriter& writer, MakeHTTPSession makeSession,
                           std::filesystem::path cache, URL source)
    : scheduler_(scheduler),
      writer_(writer),
      makeSession_(std::move(makeSession)),
      cache_(std::move(cache)),
      source_(std::move(source)) {}

void CurrencyFeed::requestIfNeeded() {
  if (!rates.peek()) readCache();
  if (task_) return;
  if (fetchedAt_ && scheduler_.now() - *fetchedAt_ <= kFreshFor) return;
  task_ = scheduler_.start(download(*this));
}

void CurrencyFeed::readCache() {
  const auto document = writer_.files().read(cache_, kMaxDocument);
  auto cached = document ? CurrencyRates::parse(*document) : std::nullopt;
  if (!cached) return;
  rates = std::move(cached);
  fetchedAt_ = writer_.files().modificationDate(cache_);
}

// The feed cancels its download when it ends: it is there as long as the task isn't cancelled.
Task<> CurrencyFeed::download(CurrencyFeed& feed) {
  const bool hasEnded = co_await isCancelled();
  if (hasEnded) co_return;
  const auto session = feed.makeSession_();
  auto coming = fetch(*session, feed.source_, {.mostBytes = kMaxDocument});
  const HTTPResult answer = co_await std::move(coming);
  const bool hasEndedMeanwhile = co_await isCancelled();
  if (!hasEndedMeanwhile) feed.accept(answer);
}

void CurrencyFeed::accept(const HTTPResult& answer) {
  auto fresh = answer && answer->isOK() ? CurrencyRates::parse(answer->body) : std::nullopt;
  if (!fresh) return;
  writer_.write(cache_, answer->body);
  rates = std::move(fresh);
  fetchedAt_ = scheduler_.now();
}

}  // namespace orvel
