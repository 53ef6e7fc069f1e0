#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Base/Scheduler.h"
#include "Engine/UserContent.h"
#include "WebEngine/Blocking/FilterListUpdater.h"

namespace orvel {

// The text of a filter list, and what its compiled form is kept under.
struct FilterListSource {
  std::string name;
  // Null when there is no such text.
  std::shared_ptr<const std::string> text;
  std::string identifier;
};

// Reads and fingerprints the lists of these names on a worker, all in one go: a start waits for it.
Future<std::vector<FilterListSource>> readFilterLists(Scheduler& scheduler,
                                                      FilterListFolders folders,
                                                      std::vector<std::string> names);

// The compiled list of this source: `known`, what the store has under its identifier, or else
// compiled now, and where that fails the one that was compiled last. Older ones are removed once
// they aren't needed. Null when there is none at all.
//
// `available` is what the store holds. Converting and encoding happen on workers.
Task<std::shared_ptr<ContentRuleList>> loadRuleList(Scheduler& scheduler,
                                                    std::shared_ptr<ContentRuleListStore> store,
                                                    std::set<std::string> available,
                                                    FilterListSource source,
                                                    std::shared_ptr<ContentRuleList> known);

// What the store has under this identifier.
Future<CompiledRules> lookUpRuleList(ContentRuleListStore& store, const std::string& identifier);

}  // namespace orvel
