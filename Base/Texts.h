#pragma once

#include <glib/gi18n.h>

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>

// Texts that a person reads, in the person's language. The English text is the key: `_("New Tab")`
// is looked up where it stands, `N_("New Tab")` only marks one that is looked up later. Whole
// sentences, with placeholders for what is put in:
//
//   filled(_("Pinned to {space}"), {{"space", name}})
//   counted(ngettext("Closed {count} tab", "Closed {count} tabs", n), n)
//
// Every such text stands in po/orvel.pot, which `scripts/texts` keeps.
namespace orvel {

inline constexpr const char* kTextDomain = "orvel";
// Looks texts up in the catalogs below this folder from now on. Before, and for a language without
// a catalog, texts stay English.
void useTextCatalogs(const std::filesystem::path& folder);

struct Placeholder {
  std::string_view name;
  std::string_view value;
};

// The text with each "{name}" replaced by its value. Placeholders that it does not know stay as
// they are, and values are not searched for more: neither a page's title nor a translation can
// break it.
[[nodiscard]] std::string filled(std::string_view text, std::initializer_list<Placeholder> values);

// The text with "{count}" replaced by the number.
[[nodiscard]] std::string counted(std::string_view text, uint64_t count);

}  // namespace orvel
