#include "WebEngine/Blocking/FilterListUpdater.h"

#include <utility>

#include "Base/Log.h"
#include "BrowserCore/Addresses/Endpoints.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

constexpr Log kLog{"FilterListUpdater"};
constexpr const char* kLastCheckedKey = "filterListsLastChecked";

double secondsSince1970(Date date) { return inSeconds(date.time_since_epoch()); }

// The body when it is a filter list; absent for anything else, as the page of a hotel's network.
std::optional<std::string> filterList(HTTPResult answer) {
  if (!answer || !answer->isOK() || answer->body.size() <= FilterListUpdater::kTooShort ||
      !answer->body.starts_with("[Adblock") || !text::isValidUTF8(answer->body))
    return std::nullopt;
  return std::move(answer->body);
}

}  // namespace

std::filesystem::path FilterListFolders::download(std::string_view name) const {
  return downloads / fmt::format("{}.txt", name);
}

std::optional<std::string> FilterListFolders::text(std::string_view name) const {
  const auto downloaded = download(name);
  const auto original = shipped / fmt::format("{}.txt", name);
  const auto dated = [&](const std::filesystem::path& path) {
    return files->modificationDate(path).value_or(Date::min());
  };
  const bool hasDownload = files->exists(downloaded);
  const bool hasOriginal = files->exists(original);
  if (!hasDownload && !hasOriginal) return std::nullopt;
  const bool takesDownload = hasDownload && (!hasOriginal || dated(downloaded) >= dated(original));
  auto bytes = files->read(takesDownload ? downloaded : original);
  if (!bytes || !text::isValidUTF8(*bytes)) return std::nullopt;
  return *std::move(bytes);
}

std::vector<FilterListUpdater::Source> FilterListUpdater::publicSources() {
  return {{"easylist", *URL::parse(endpoints::kEasyList)},
          {"easyprivacy", *URL::parse(endpoints::kEasyPrivacy)},
          {"cookies", *URL::parse(endpoints::kCookieNotices)}};
}

FilterListUpdater::FilterListUpdater(Scheduler& scheduler, FileWriter& writer,
                                     UserDefaults& defaults, MakeHTTPSession makeSession,
                                     FilterListFolders folders, std::vector<Source> sources)
    : scheduler_(scheduler),
      writer_(writer),
      defaults_(defaults),
      makeSession_(std::move(makeSession)),
      folders_(std::move(folders)),
      sources_(std::move(sources)) {}

Task<bool> FilterListUpdater::updateIfDue() {
  const double last = defaults_.number(kLastCheckedKey).value_or(0);
  if (secondsSince1970(scheduler_.now()) - last <= kSecondsBetween) co_return false;
  auto makeFolder = [files = folders_.files, folder = folders_.downloads] {
    return files->createFolders(folder);
  };
  // Where it fails, the writes fail one by one.
  auto making = background(scheduler_, std::move(makeFolder), WorkPriority::Utility);
  co_await std::move(making);
  bool hasEnded = co_await isCancelled();
  if (hasEnded) co_return false;
  const auto session = makeSession_();
  bool hasChanged = false;
  for (const Source& source : sources_) {
    const std::string name = source.name;
    auto updating = update(*session, source);
    const bool isReplaced = co_await std::move(updating);
    hasEnded = co_await isCancelled();
    if (hasEnded) co_return false;
    if (isReplaced) {
      kLog.info("Updated {}", name);
      hasChanged = true;
    } else {
      kLog.error("Couldn't update {}", name);
    }
  }
  defaults_.setNumber(kLastCheckedKey, secondsSince1970(scheduler_.now()));
  co_return hasChanged;
}

Task<bool> FilterListUpdater::update(HTTPSession& session, Source source) {
  auto fetching = fetch(session, source.url, {.mostBytes = kMaxBytes});
  HTTPResult answer = co_await std::move(fetching);
  bool hasEnded = co_await isCancelled();
  if (hasEnded) co_return false;
  auto check = [answer = std::move(answer)]() mutable { return filterList(std::move(answer)); };
  auto checking = background(scheduler_, std::move(check), WorkPriority::Utility);
  auto list = co_await std::move(checking);
  hasEnded = co_await isCancelled();
  if (hasEnded || !list) co_return false;
  auto [writing, written] = makeFuture<WriteResult>();
  writer_.write(folders_.download(source.name), std::move(*list), std::move(written));
  const WriteResult result = co_await std::move(writing);
  co_return result == Written::Done;
}

}  // namespace orvel
