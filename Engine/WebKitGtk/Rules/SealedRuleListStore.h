#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "Base/Scheduler.h"
#include "Engine/WebKitGtk/Rules/WebKitRuleListStore.h"

namespace orvel {

// The store of large lists. It compiles in a short-lived process of its own, and hands out only
// lists whose file is as it was written and fits the present engine; any other counts as missing,
// so that its owner compiles it again. A file that nobody seems to have touched is handed out
// before it has been read through; what that finds counts from the next start on.
//
// Identifiers are made of ASCII letters, digits and "-".
class SealedRuleListStore final : public ContentRuleListStore {
 public:
  // `compiler` is the program that compiles. Lists that nobody seems to have touched are loaded
  // from now on: a start asks for them a moment later, and has its window to build meanwhile.
  SealedRuleListStore(Scheduler& scheduler, std::filesystem::path folder,
                      std::filesystem::path compiler);

  void getAvailableIdentifiers(std::function<void(std::vector<std::string>)> answer) override;
  void lookUp(const std::string& identifier, std::function<void(CompiledRules)> answer) override;
  void compile(const std::string& identifier, std::string json,
               std::function<void(CompiledRules)> answer) override;
  void remove(const std::string& identifier,
              std::function<void(Result<void, std::string>)> answer) override;

 private:
  using Answer = std::function<void(CompiledRules)>;
  // A list that is loaded before it is asked for: what came of it, or else who asked meanwhile.
  struct Ahead {
    std::optional<CompiledRules> rules;
    Answer answer;
  };
  // What tasks need, which may outlive the store.
  struct Parts {
    Scheduler& scheduler;
    std::filesystem::path folder;
    std::filesystem::path compiler;
    WebKitRuleListStore lists;
    // The number of the present engine's format, once it was asked for.
    std::optional<uint32_t> format;
    std::map<std::string, std::shared_ptr<Ahead>> ahead;
  };

  void loadAhead(const std::string& identifier);
  static Task<> lookUpChecked(std::shared_ptr<Parts> parts, std::string identifier, Answer answer);
  static Task<> compileApart(std::shared_ptr<Parts> parts, std::string identifier,
                             std::shared_ptr<const std::string> json, Answer answer);
  static Task<> readThrough(std::shared_ptr<Parts> parts, std::string identifier);
  static Task<bool> fitsEngine(std::shared_ptr<Parts> parts, std::string identifier,
                               uint32_t format);
  static Task<Result<void, std::string>> compileFile(std::shared_ptr<Parts> parts,
                                                     std::string identifier,
                                                     std::shared_ptr<const std::string> json);

  std::shared_ptr<Parts> parts_;
};

}  // namespace orvel
