#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// The files of compiled content rules and what makes them trustworthy. The engine maps a compiled
// list into its page processes and runs it as it stands: one flipped byte takes pages down. So each
// list has a seal beside it, a file with the version of the engine that made it, a checksum, and
// the list file's stamp, its size and time of change, which spare reading it through at each start.
//
// Everything here blocks and may run on any thread.
namespace orvel::rule_list_seal {

// Whether the identifier is its file's name: ASCII letters, digits and "-".
[[nodiscard]] bool isPlain(const std::string& identifier);

std::filesystem::path listFile(const std::filesystem::path& folder, const std::string& identifier);
std::filesystem::path sealFile(const std::filesystem::path& folder, const std::string& identifier);

struct Check {
  enum class State {
    Broken,  // the list or its seal is missing, or they don't belong together
    Intact,
    OtherEngine,  // intact, and made by another version of the engine
  };
  State state = State::Broken;
  // The stamp alone was looked at.
  bool isUnread = false;
  // The number of the list's format, which stands in its first bytes.
  uint32_t format = 0;
};

[[nodiscard]] Check check(const std::filesystem::path& folder, const std::string& identifier,
                          const std::string& engineVersion);

// The identifiers of lists that this engine made and nobody seems to have touched since. Nothing is
// read through, which makes it quick; of very many lists some are left out.
[[nodiscard]] std::vector<std::string> untouched(const std::filesystem::path& folder,
                                                 const std::string& engineVersion);

// Takes the seal away from a list that its checksum doesn't fit.
void breakIfDamaged(const std::filesystem::path& folder, const std::string& identifier);

// Moves a list that was just compiled in the folder `from` to the folder `to`, with its seal. A
// failure or a crash in between leaves a list that is broken or the one that was there. False when
// there is no such list or the disk is full.
[[nodiscard]] bool adopt(const std::filesystem::path& from, const std::filesystem::path& to,
                         const std::string& identifier, const std::string& engineVersion);

// Writes the seal of the list anew, the list itself being on disk for good.
[[nodiscard]] bool seal(const std::filesystem::path& folder, const std::string& identifier,
                        const std::string& engineVersion);

// The format's number of a list; absent when there is none.
[[nodiscard]] std::optional<uint32_t> format(const std::filesystem::path& list);

}  // namespace orvel::rule_list_seal
