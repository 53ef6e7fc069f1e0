#include "Models/Spaces/Profile.h"

namespace orvel {

Profile::Profile(Engine& engine, UUID profileID, std::string profileName, Privacy privacy)
    : id(profileID),
      isPrivate(privacy == Privacy::Private),
      name(std::move(profileName)),
      engine_(engine) {}

const std::shared_ptr<WebsiteDataStore>& Profile::dataStore() {
  if (!dataStore_)
    dataStore_ = isPrivate ? engine_.nonPersistentDataStore() : engine_.dataStoreForIdentifier(id);
  return dataStore_;
}

}  // namespace orvel
