#include "Engine/WebKitGtk/Policy/HTTPSFirst.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

constexpr size_t kMaxExceptions = 1000;

constexpr const char* kWithExceptions = "https-first-exceptions";

// Names that never leave this machine, and addresses without a name, have no certificates.
constexpr const char* kNeverUpgraded[] = {
    R"(^http://localhost[:/])", R"(^http://[^/]*\.localhost[:/])",
    R"(^http://[0-9]+\.[0-9]+\.[0-9]+\.[0-9]+[:/])", R"(^http://\[)"};

nlohmann::json rule(const std::string& filter, const char* action) {
  return {{"trigger", {{"url-filter", filter}, {"resource-type", {"top-document"}}}},
          {"action", {{"type", action}}}};
}

std::string escaped(std::string_view host) {
  std::string result;
  for (const char c : host) {
    if (std::string_view(R"(\.[]*+?()|{}^$)").find(c) != std::string_view::npos) result += '\\';
    result += c;
  }
  return result;
}

}  // namespace

HTTPSFirst::HTTPSFirst(const std::filesystem::path& folder)
    : store_(std::make_shared<WebKitRuleListStore>(folder)) {
  // What a run that was killed left.
  store_->remove(kWithExceptions, [](const auto&) {});
  compile();
}

void HTTPSFirst::whenReady(std::function<void()> action) {
  if (isReady_) return action();
  waiting_.push_back(std::move(action));
}

std::string HTTPSFirst::source() const {
  auto rules = nlohmann::json::array({rule("^http://", "make-https")});
  for (const char* filter : kNeverUpgraded) rules.push_back(rule(filter, "ignore-previous-rules"));
  for (const std::string& host : exceptions_)
    rules.push_back(rule(fmt::format("^http://{}[:/]", escaped(host)), "ignore-previous-rules"));
  return rules.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
}

void HTTPSFirst::compile() {
  const int generation = ++generation_;
  const std::string identifier = exceptions_.empty() ? "https-first" : kWithExceptions;
  store_->compile(identifier, source(),
                  [this, generation, alive = std::weak_ptr(isAlive_)](CompiledRules result) {
                    if (alive.expired()) return;
                    // It names hosts, also those of private tabs: loaded, it needs no file.
                    if (!exceptions_.empty()) store_->remove(kWithExceptions, [](const auto&) {});
                    if (generation != generation_) return;
                    hasFailed_ = !result;
                    if (result) list_ = *result;
                    isReady_ = true;
                    for (const auto& [key, changed] : std::vector(listeners_)) changed();
                    for (const auto& action : std::exchange(waiting_, {})) action();
                  });
}

void HTTPSFirst::addException(const URL& url, std::function<void(bool)> done) {
  if (!url.host()) return done(false);
  const std::string host = text::lowerASCII(*url.host());
  if (exceptions_.size() >= kMaxExceptions) exceptions_.clear();
  exceptions_.insert(host);
  isReady_ = false;
  waiting_.push_back([this, host, done = std::move(done)] {
    if (hasFailed_) exceptions_.erase(host);
    done(!hasFailed_);
  });
  compile();
}

bool HTTPSFirst::isException(const URL& url) const {
  return url.host() && exceptions_.contains(text::lowerASCII(*url.host()));
}

void HTTPSFirst::addListener(const void* key, std::function<void()> changed) {
  listeners_.emplace_back(key, std::move(changed));
}

void HTTPSFirst::removeListener(const void* key) {
  std::erase_if(listeners_, [key](const auto& listener) { return listener.first == key; });
}

}  // namespace orvel
