#include "WebEngine/Blocking/RuleListLoader.h"

#include <fmt/ranges.h>
#include <nettle/sha2.h>

#include <array>
#include <span>
#include <utility>
#include <vector>

#include "Base/Log.h"
#include "BrowserCore/ContentBlocking/FilterListConverter.h"

namespace orvel {

namespace {

constexpr Log kLog{"ContentBlocker"};
constexpr size_t kFingerprintBytes = 6;

struct Converted {
  std::string json;
  size_t ruleCount = 0;
  int64_t skipped = 0;
};

std::string fingerprint(const std::string& text) {
  std::array<uint8_t, SHA256_DIGEST_SIZE> digest;
  sha256_ctx context;
  sha256_init(&context);
  sha256_update(&context, text.size(), reinterpret_cast<const uint8_t*>(text.data()));
  sha256_digest(&context, digest.size(), digest.data());
  return fmt::format("{:02x}", fmt::join(std::span(digest).first(kFingerprintBytes), ""));
}

FilterListSource readSource(const FilterListFolders& folders, const std::string& name) {
  auto text = folders.text(name);
  if (!text) return {name, nullptr, {}};
  auto identifier =
      fmt::format("{}-v{}-{}", name, FilterListConverter::version, fingerprint(*text));
  return {name, std::make_shared<const std::string>(std::move(*text)), std::move(identifier)};
}

Converted convert(const std::string& text) {
  const auto output = FilterListConverter::convert(
      text, {.includeCosmetic = true, .maxRules = FilterListConverter::defaultMaxRules});
  return {encodedJSON(output.rules), output.rules.size(), output.skipped};
}

Future<CompiledRules> compile(ContentRuleListStore& store, const std::string& identifier,
                              std::string json) {
  auto [future, resolve] = makeFuture<CompiledRules>();
  store.compile(identifier, std::move(json), std::move(resolve));
  return std::move(future);
}

void removeAll(ContentRuleListStore& store, const std::vector<std::string>& identifiers) {
  for (const std::string& identifier : identifiers) store.remove(identifier, [](const auto&) {});
}

// The first of the lists that can be had.
Task<std::shared_ptr<ContentRuleList>> firstOf(std::shared_ptr<ContentRuleListStore> store,
                                               std::vector<std::string> identifiers) {
  for (const std::string& identifier : identifiers) {
    auto looking = lookUpRuleList(*store, identifier);
    const CompiledRules found = co_await std::move(looking);
    if (found) co_return *found;
  }
  co_return nullptr;
}

// Null when the compiler refused the list, which is logged.
Task<std::shared_ptr<ContentRuleList>> convertAndCompile(
    Scheduler& scheduler, std::shared_ptr<ContentRuleListStore> store, FilterListSource source) {
  const Instant begin = scheduler.instant();
  auto work = [text = std::move(source.text)] { return convert(*text); };
  auto converting = background(scheduler, std::move(work), WorkPriority::Utility);
  Converted converted = co_await std::move(converting);
  auto compiling = compile(*store, source.identifier, std::move(converted.json));
  const CompiledRules compiled = co_await std::move(compiling);
  if (compiled)
    kLog.info("Compiled {}: {} rules, {} skipped, {:.2f} seconds", source.name, converted.ruleCount,
              converted.skipped, inSeconds(scheduler.instant() - begin));
  else
    kLog.error("Couldn't compile {}: {}", source.name, compiled.error());
  co_return compiled.value_or(nullptr);
}

}  // namespace

Future<std::vector<FilterListSource>> readFilterLists(Scheduler& scheduler,
                                                      FilterListFolders folders,
                                                      std::vector<std::string> names) {
  auto work = [folders = std::move(folders), names = std::move(names)] {
    std::vector<FilterListSource> sources;
    for (const std::string& name : names) sources.push_back(readSource(folders, name));
    return sources;
  };
  return background(scheduler, std::move(work));
}

Future<CompiledRules> lookUpRuleList(ContentRuleListStore& store, const std::string& identifier) {
  auto [future, resolve] = makeFuture<CompiledRules>();
  store.lookUp(identifier, std::move(resolve));
  return std::move(future);
}

Task<std::shared_ptr<ContentRuleList>> loadRuleList(Scheduler& scheduler,
                                                    std::shared_ptr<ContentRuleListStore> store,
                                                    std::set<std::string> available,
                                                    FilterListSource source,
                                                    std::shared_ptr<ContentRuleList> known) {
  if (!source.text) {
    kLog.error("Missing filter list {}", source.name);
    co_return nullptr;
  }
  std::vector<std::string> previous;
  for (const std::string& identifier : available)
    if (identifier.starts_with(source.name + "-") && identifier != source.identifier)
      previous.push_back(identifier);

  std::shared_ptr<ContentRuleList> list = std::move(known);
  if (!list) {
    auto compiling = convertAndCompile(scheduler, store, std::move(source));
    list = co_await std::move(compiling);
  }
  if (list) {
    removeAll(*store, previous);
    co_return list;
  }
  auto fallingBack = firstOf(store, std::move(previous));
  list = co_await std::move(fallingBack);
  co_return list;
}

}  // namespace orvel
