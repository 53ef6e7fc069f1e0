#pragma once

#include <string>
#include <string_view>

namespace orvel {

// The same content rules, with those that hide elements and say nothing of resources bound to
// documents. The engine looks rules up for each resource of a page, and reads all selectors that it
// finds each time, though the page's own document has brought them already: with a list of 20,000 a
// picture costs most of a millisecond.
//
// Knows the compact form in which this program writes rules; others stay as they are.
[[nodiscard]] std::string hidingRulesForDocuments(std::string_view json);

}  // namespace orvel
