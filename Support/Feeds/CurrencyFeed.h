#pragma once

#include <filesystem>
#include <optional>

#include "Base/FileWriter.h"
#include "Base/Observable.h"
#include "Base/Scheduler.h"
#include "BrowserCore/Addresses/URL.h"
#include "BrowserCore/Answers/CurrencyRates.h"
#include "Support/Network/HTTPSession.h"

namespace orvel {

// The day's exchange rates: from a file at first, and from their publisher when that is more than
// twelve hours old. Nothing is read or fetched before somebody asks, and nobody hears of failures:
// the last good rates stay.
class CurrencyFeed {
 public:
  static constexpr Duration kFreshFor = 12h;
  // Larger documents are taken for something else.
  static constexpr uint64_t kMaxDocument = 1u << 20;

  // `cache` is the file that keeps the last good document. `makeSession` is asked for each
  // download.
  CurrencyFeed(Scheduler& scheduler, FileWriter& writer, MakeHTTPSession makeSession,
               std::filesystem::path cache, URL source);

  // Absent until a file or a download has delivered.
  Observable<std::optional<CurrencyRates>> rates;

  // To be called whenever a person types a question about currencies. Starts at most one download
  // at a time.
  void requestIfNeeded();

  // When the rates were fetched, after a start the date of the file.
  const std::optional<Date>& fetchedAt() const { return fetchedAt_; }

 private:
  void readCache();
  static Task<> download(CurrencyFeed& feed);
  void accept(const HTTPResult& answer);

  Scheduler& scheduler_;
  FileWriter& writer_;
  MakeHTTPSession makeSession_;
  std::filesystem::path cache_;
  URL source_;
  std::optional<Date> fetchedAt_;
  // The download under way.
  TaskHandle task_;
};

}  // namespace orvel
