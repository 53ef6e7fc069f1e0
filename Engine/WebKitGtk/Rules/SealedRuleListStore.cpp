#include "Engine/WebKitGtk/Rules/SealedRuleListStore.h"

#include <fmt/format.h>

#include <utility>

#include "Engine/WebKitGtk/Rules/HidingRules.h"
#include "Engine/WebKitGtk/Rules/RuleCompilerProcess.h"
#include "Engine/WebKitGtk/Rules/RuleListSeal.h"

namespace orvel {

namespace fs = std::filesystem;

namespace {

using rule_list_seal::Check;

// By then the first pages are there.
constexpr Duration kReadThroughAfter = std::chrono::seconds(20);

// A list of one rule, compiled to see what the present engine's files look like.
constexpr const char* kFormatFolder = "Format";
constexpr const char* kFormatIdentifier = "format";
constexpr const char* kMinRules =
    R"([{"trigger":{"url-filter":"^nothing:"},"action":{"type":"block"}}])";

std::string engineVersion() {
  return fmt::format("{}.{}.{}", webkit_get_major_version(), webkit_get_minor_version(),
                     webkit_get_micro_version());
}

// What one run of the compiler needs.
struct Workplace {
  CompilerFolder folder;
  CompilerInput input;
};

std::optional<Workplace> makeWorkplace(const fs::path& folder, const std::string& json) {
  auto made = CompilerFolder::make(folder);
  auto input = made ? CompilerInput::make(json) : std::nullopt;
  if (!input) return std::nullopt;
  return Workplace{std::move(*made), std::move(*input)};
}

}  // namespace

SealedRuleListStore::SealedRuleListStore(Scheduler& scheduler, fs::path folder, fs::path compiler)
    : parts_(
          new Parts{scheduler, folder, std::move(compiler), WebKitRuleListStore(folder), {}, {}}) {
  scheduler.runInBackground([folder] { CompilerFolder::clear(folder); }, [] {},
                            WorkPriority::Utility);
  for (const std::string& identifier : rule_list_seal::untouched(folder, engineVersion()))
    loadAhead(identifier);
}

void SealedRuleListStore::loadAhead(const std::string& identifier) {
  auto ahead = std::make_shared<Ahead>();
  parts_->ahead.emplace(identifier, ahead);
  parts_->lists.lookUp(identifier, [ahead](CompiledRules rules) {
    if (ahead->answer)
      ahead->answer(std::move(rules));
    else
      ahead->rules = std::move(rules);
  });
}

void SealedRuleListStore::getAvailableIdentifiers(
    std::function<void(std::vector<std::string>)> answer) {
  parts_->lists.getAvailableIdentifiers(std::move(answer));
}

void SealedRuleListStore::lookUp(const std::string& identifier, Answer answer) {
  if (const auto known = parts_->ahead.extract(identifier)) {
    parts_->scheduler.start(readThrough(parts_, identifier)).detach();
    Ahead& ahead = *known.mapped();
    if (ahead.rules)
      return parts_->scheduler.post(
          [answer = std::move(answer), rules = std::move(*ahead.rules)] { answer(rules); });
    ahead.answer = std::move(answer);
    return;
  }
  parts_->scheduler.start(lookUpChecked(parts_, identifier, std::move(answer))).detach();
}

void SealedRuleListStore::compile(const std::string& identifier, std::string json, Answer answer) {
  parts_->ahead.erase(identifier);
  auto rules = std::make_shared<const std::string>(std::move(json));
  parts_->scheduler.start(compileApart(parts_, identifier, std::move(rules), std::move(answer)))
      .detach();
}

void SealedRuleListStore::remove(const std::string& identifier,
                                 std::function<void(Result<void, std::string>)> answer) {
  parts_->ahead.erase(identifier);
  if (rule_list_seal::isPlain(identifier))
    parts_->scheduler.runInBackground(
        [file = rule_list_seal::sealFile(parts_->folder, identifier)] {
          std::error_code ignored;
          fs::remove(file, ignored);
        },
        [] {}, WorkPriority::Utility);
  parts_->lists.remove(identifier, std::move(answer));
}

Task<> SealedRuleListStore::lookUpChecked(std::shared_ptr<Parts> parts, std::string identifier,
                                          Answer answer) {
  if (!rule_list_seal::isPlain(identifier)) co_return answer(Failure("unknown identifier"));
  auto work = [folder = parts->folder, identifier] {
    return rule_list_seal::check(folder, identifier, engineVersion());
  };
  auto checking = background(parts->scheduler, std::move(work));
  const Check checked = co_await std::move(checking);
  if (checked.state == Check::State::Broken)
    co_return answer(Failure("the list is missing or damaged"));
  if (checked.state == Check::State::OtherEngine) {
    auto fitting = fitsEngine(parts, identifier, checked.format);
    const bool fits = co_await std::move(fitting);
    if (!fits) co_return answer(Failure("the list was made for another engine"));
  }
  if (checked.isUnread) parts->scheduler.start(readThrough(parts, identifier)).detach();
  parts->lists.lookUp(identifier, std::move(answer));
}

Task<> SealedRuleListStore::readThrough(std::shared_ptr<Parts> parts, std::string identifier) {
  const SleepResult slept = co_await sleep(kReadThroughAfter);
  if (slept == SleepResult::Cancelled) co_return;
  parts->scheduler.runInBackground(
      [folder = parts->folder, identifier] { rule_list_seal::breakIfDamaged(folder, identifier); },
      [] {}, WorkPriority::Utility);
}

Task<bool> SealedRuleListStore::fitsEngine(std::shared_ptr<Parts> parts, std::string identifier,
                                           uint32_t format) {
  if (!parts->format) {
    const fs::path folder = parts->folder / kFormatFolder;
    auto store = std::make_shared<WebKitRuleListStore>(folder);
    auto [future, resolve] = makeFuture<CompiledRules>();
    store->compile(kFormatIdentifier, kMinRules, std::move(resolve));
    const CompiledRules compiled = co_await std::move(future);
    if (compiled)
      parts->format = rule_list_seal::format(rule_list_seal::listFile(folder, kFormatIdentifier));
  }
  if (parts->format != format) co_return false;
  // So that the next start need not ask. Failing costs no more than that.
  auto work = [folder = parts->folder, identifier] {
    return rule_list_seal::seal(folder, identifier, engineVersion());
  };
  auto sealing = background(parts->scheduler, std::move(work), WorkPriority::Utility);
  co_await std::move(sealing);
  co_return true;
}

Task<> SealedRuleListStore::compileApart(std::shared_ptr<Parts> parts, std::string identifier,
                                         std::shared_ptr<const std::string> json, Answer answer) {
  if (!rule_list_seal::isPlain(identifier)) co_return answer(Failure("not an identifier"));
  auto compiling = compileFile(parts, identifier, std::move(json));
  const auto compiled = co_await std::move(compiling);
  if (!compiled) co_return answer(Failure(compiled.error()));
  parts->lists.lookUp(identifier, std::move(answer));
}

Task<Result<void, std::string>> SealedRuleListStore::compileFile(
    std::shared_ptr<Parts> parts, std::string identifier, std::shared_ptr<const std::string> json) {
  auto prepare = [folder = parts->folder, json = std::move(json)] {
    return makeWorkplace(folder, hidingRulesForDocuments(*json));
  };
  auto preparing = background(parts->scheduler, std::move(prepare), WorkPriority::Utility);
  auto workplace = co_await std::move(preparing);
  if (!workplace) co_return Failure("there is no room to compile in");
  auto running = runCompiler(parts->compiler, workplace->folder.path(), identifier,
                             std::move(workplace->input));
  auto compiled = co_await std::move(running);
  if (!compiled) co_return std::move(compiled);
  auto take = [from = workplace->folder.path(), to = parts->folder, identifier] {
    return rule_list_seal::adopt(from, to, identifier, engineVersion());
  };
  auto taking = background(parts->scheduler, std::move(take), WorkPriority::Utility);
  const bool isTaken = co_await std::move(taking);
  if (!isTaken) co_return Failure("the compiled list cannot be kept");
  co_return compiled;
}

}  // namespace orvel
