#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "BrowserCore/Addresses/ChoiceMemory.h"
#include "BrowserCore/UUID.h"

// The form in which what was picked lies on the disk: a list with one entry a profile, its times in
// seconds since the beginning of 2001 (UTC).
namespace orvel::ChoicesFile {

using Choices = std::unordered_map<UUID, ChoiceMemory>;

[[nodiscard]] std::string encoded(const Choices& choices);
// Absent when any part can't be decoded. Choices beyond those that a prefix has are left out.
[[nodiscard]] std::optional<Choices> decode(std::string_view data);

}  // namespace orvel::ChoicesFile
