#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "BrowserCore/ContentBlocking/FilterListConverter.h"
#include "BrowserCore/Text.h"

namespace orvel {

// A rule in short, for tables: "block /ads [script,image] 3p", "allow .* if *a.test",
// "hide .ad unless *a.test", "block /ads frame". The default types are "[*]".
inline std::string describe(const ContentRule& rule) {
  static const char* const actions[] = {"block", "hide", "allow"};
  static const char* const names[] = {"document", "font",   "image",       "media",
                                      "raw",      "script", "style-sheet", "svg"};
  const ContentRule::Trigger& trigger = rule.trigger;
  std::string text = actions[static_cast<int>(rule.action.type)];
  const bool hides = rule.action.type == ContentRule::ActionType::cssDisplayNone;
  text += " " + std::string(hides ? rule.action.selector : trigger.urlFilter);
  if (hides != !rule.action.selector.empty() || (hides && trigger.urlFilter != ".*"))
    text += " (broken)";
  if (trigger.urlFilterIsCaseSensitive)
    text += *trigger.urlFilterIsCaseSensitive ? " case" : " (broken)";
  if (!trigger.ifDomain.isEmpty()) text += " if " + std::string(trigger.ifDomain.joined());
  if (!trigger.unlessDomain.isEmpty())
    text += " unless " + std::string(trigger.unlessDomain.joined());
  if (trigger.loadContext) {
    const bool isFrame = trigger.resourceType == ResourceTypes{ResourceType::document};
    text += isFrame ? " frame" : " (broken)";
  } else if (trigger.resourceType.bits() == 0xFE) {
    text += " [*]";
  } else if (!trigger.resourceType.isEmpty()) {
    text += " [";
    for (size_t i = 0; i < std::size(names); ++i)
      if (trigger.resourceType.contains(static_cast<ResourceType>(i)))
        text.append(text.back() == '[' ? "" : ",").append(names[i]);
    text += "]";
  }
  if (trigger.loadType)
    text += *trigger.loadType == ContentRule::LoadType::firstParty ? " 1p" : " 3p";
  return text;
}

// What a list converts to, one rule a line, and then the number skipped if it isn't 0.
inline std::string described(std::string_view list, FilterListConverter::Options options = {}) {
  const auto output = FilterListConverter::convert(list, options);
  std::string text;
  for (const ContentRule& rule : output.rules) text += describe(rule) + "\n";
  if (output.skipped != 0) text += "skipped " + std::to_string(output.skipped) + "\n";
  return text;
}

}  // namespace orvel
