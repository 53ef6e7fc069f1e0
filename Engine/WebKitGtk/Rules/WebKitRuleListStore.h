#pragma once

#include <webkit/webkit.h>

#include <filesystem>

#include "Base/GRef.h"
#include "Engine/UserContent.h"

namespace orvel {

class WebKitRuleList final : public ContentRuleList {
 public:
  // Takes over a reference to `filter`.
  explicit WebKitRuleList(WebKitUserContentFilter* filter);
  ~WebKitRuleList() override;
  WebKitRuleList(const WebKitRuleList&) = delete;

  const std::string& identifier() const override { return identifier_; }
  WebKitUserContentFilter* filter() const { return filter_; }

 private:
  WebKitUserContentFilter* filter_;
  std::string identifier_;
};

class WebKitRuleListStore final : public ContentRuleListStore {
 public:
  explicit WebKitRuleListStore(const std::filesystem::path& folder);

  void getAvailableIdentifiers(std::function<void(std::vector<std::string>)> answer) override;
  void lookUp(const std::string& identifier, std::function<void(CompiledRules)> answer) override;
  void compile(const std::string& identifier, std::string json,
               std::function<void(CompiledRules)> answer) override;
  void remove(const std::string& identifier,
              std::function<void(Result<void, std::string>)> answer) override;

 private:
  GRef<WebKitUserContentFilterStore> store_;
};

}  // namespace orvel
