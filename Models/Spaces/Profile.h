#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Base/Observable.h"
#include "BrowserCore/UUID.h"
#include "Engine/Engine.h"

namespace orvel {

class BrowserTab;
using TabRef = std::shared_ptr<BrowserTab>;
using TabList = std::vector<TabRef>;

// Web data of its own: cookies, logins and caches that no other profile sees.
class Profile {
 public:
  enum class Privacy { Ordinary, Private };

  Profile(Engine& engine, UUID id, std::string name, Privacy privacy = Privacy::Ordinary);

  const UUID id;
  const bool isPrivate;  // never saved, in memory only
  Observable<std::string> name;
  // Shared by all spaces of the profile. These tabs hold the profile in turn: whoever takes it out
  // of the store empties the list.
  Observable<TabList> favorites;

  // Made on first use. A private profile's is its own and dies with it; any other is the persistent
  // one that the engine keeps under the profile's id.
  const std::shared_ptr<WebsiteDataStore>& dataStore();

 private:
  Engine& engine_;
  std::shared_ptr<WebsiteDataStore> dataStore_;
};

}  // namespace orvel
