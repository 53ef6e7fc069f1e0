#pragma once

#include <memory>
#include <set>
#include <string>

#include "Base/Scheduler.h"
#include "Engine/UserContent.h"
#include "WebEngine/FilterListUpdater.h"

namespace orvel {

// The compiled list of this name: from the store when its text and the converter are those that it
// was compiled with, else compiled now, and where that fails the one that was compiled last. Older
// ones are removed once they aren't needed. Null when there is none at all.
//
// `available` is what the store holds. Reading, converting and encoding happen on workers.
Task<std::shared_ptr<ContentRuleList>> loadRuleList(Scheduler& scheduler, FilterListFolders folders,
                                                    std::shared_ptr<ContentRuleListStore> store,
                                                    std::set<std::string> available,
                                                    std::string name);

}  // namespace orvel
