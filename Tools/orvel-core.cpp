#include <iostream>
#include <string_view>

#include "Tools/Operations.h"

namespace {

using nlohmann::json;
using orvel::tools::Answer;
using orvel::tools::Line;
using orvel::tools::Operations;

constexpr std::string_view kHelp =
    R"help(usage: orvel-core convert-filters LIST [--no-cosmetic] [--max-rules N]
       orvel-core eval
       orvel-core update-message --build N ARCHIVE
       orvel-core stage-update --folder F --bundle-id ID --public-key BASE64 --build N
                               --signature BASE64 ARCHIVE
       orvel-core sign-bundle --key FILE APP
       orvel-core verify-bundle --public-key BASE64 APP
       orvel-core can-replace APP
       orvel-core swap-script

Drives the platform-free core of the browser from the shell.

convert-filters turns a filter list into the engine's content rules: their JSON on standard output,
{"rules":N,"skipped":M} on standard error. --no-cosmetic leaves out the rules that hide elements,
--max-rules bounds the number of rules.

update-message prints what is signed of an archive, in hexadecimal.

stage-update verifies and unpacks an archive into a folder of its own and prints
{"app":PATH,"version":V,"build":N}, or {"error":CASE} and exits with 1; the folder is gone then. A
CASE is badSignature, unpackFailed, wrongArchive, wrongApp, wrongBuild, badCodeSignature or
fileSystem.

sign-bundle writes a bundle's code signature; the key file holds the 64 bytes of an Ed25519 secret
key in base64. verify-bundle exits with 0 when a bundle is what was signed, or else with 1.

can-replace prints whether the application at a path can be replaced, true or false. swap-script
prints the script that replaces it:
  sh -c "$(orvel-core swap-script)" orvel-update PID APP STAGED RELAUNCH

eval reads one JSON object a line from standard input and answers each with one JSON value a line.
A request that cannot be read, names no operation below, lacks a field or has one of the wrong type
is answered with {"error":"badRequest"}. Where "null" stands among the answers it means: nothing.

Addresses
  {"op":"explicitURL","text":T}          the address that a typed text is meant as, or null
  {"op":"displayHost","url":U}           the short name under which an address is shown
  {"op":"siteKey","url":U}               the site that an address belongs to, or null
  {"op":"strip","url":U}                 the address without tracking parameters; null without any
  {"op":"complete","typed":T,"urls":[U]} the typed text with its completion, or null
  {"op":"linkRoute","pattern":P,"url":U} whether a link to U belongs to the pattern
  {"op":"wandered","pinned":U,"url":U}   whether a pinned tab shows another page than its pin
  {"op":"siteName","title":T,"url":U}    the name of a page's site; U may be null

Searches
  {"op":"searchURL","engine":E,"query":Q}       the page of results, or null
  {"op":"suggestionsURL","engine":E,"query":Q}  where completions are read, or null
  {"op":"suggestions","data":T}                 the list of completions in an engine's reply
      E is google, duckDuckGo, kagi, bing, ecosia or startpage.
  {"op":"shortcut","text":T,"shortcuts":[{"keyword":K,"name":N,"template":A}]}
      the keyword search that the text asks for, {"keyword":K,"query":Q,"url":U}, or null; without
      "shortcuts" among the built-in ones

Answers
  {"op":"answer","text":T,"ecbXML":X}    what a calculation or conversion comes to,
      {"question":Q,"answer":A}, or null; without "ecbXML" there are no exchange rates
  {"op":"currencyRequest","text":T}      {"amount":N,"from":C,"to":C}, or null

Learning
  {"op":"choices","events":[EVENT]}      a list with the answer of each "top", a key or null
      An EVENT is {"record":[QUERY,KEY,SECONDS]}, {"top":[QUERY,[KEY]]} or {"forget":KEY}.

Extensions
  {"op":"listing","url":U}               the source of the extension that a page lists, or null
  {"op":"zipArchive","base64":B}         the zip archive within what a store sent, in base64, or
      {"error":"notAnExtension"}

Sessions
  {"op":"sessionDecode","json":T,"now":"2026-01-02T03:04:05Z"}
      {"sourceVersion":N,"record":{...}}, {"error":"unsupportedVersion","version":N} or
      {"error":"undecodable"}

Updates
  {"op":"updateRelease","json":T}        the record of an update feed, or {"error":"undecodable"}

Look and files
  {"op":"nearestTheme","hue":H}          the id of the theme nearest to a hue from 0 to 1
  {"op":"resized","shares":[S],"index":I,"delta":D}
      the panes' shares after the divider behind pane I moved by D
  {"op":"downloadName","suggested":T,"existing":[T]}
      a free name for a downloaded file
)help";

Answer answer(const Operations& operations, const std::string& line) {
  const json badRequest = {{"error", "badRequest"}};
  const json request = json::parse(line, nullptr, false);
  if (!request.is_object()) return badRequest;
  try {
    const auto operation = operations.find(request.at("op").get<std::string>());
    return operation == operations.end() ? badRequest : operation->second(request);
  } catch (const std::exception&) {
    return badRequest;
  }
}

std::string printed(const Answer& answer) {
  if (const auto* line = std::get_if<Line>(&answer)) return line->text;
  return std::get<json>(answer).dump(-1, ' ', false, json::error_handler_t::replace);
}

int evaluate() {
  Operations operations;
  orvel::tools::addAddressOperations(operations);
  orvel::tools::addAnswerOperations(operations);
  orvel::tools::addSessionOperations(operations);
  orvel::tools::addUpdateOperations(operations);
  std::ios::sync_with_stdio(false);
  for (std::string line; std::getline(std::cin, line);)
    std::cout << printed(answer(operations, line)) << '\n' << std::flush;
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  const std::string_view command = count > 1 ? arguments[1] : "";
  if (command == "eval") return evaluate();
  if (command == "convert-filters") return orvel::tools::convertFilters(count - 2, arguments + 2);
  if (const auto status = orvel::tools::runUpdateCommand(command, count - 2, arguments + 2))
    return *status;
  const bool isHelp = command == "--help" || command == "-h";
  (isHelp ? std::cout : std::cerr) << kHelp;
  return isHelp ? 0 : 2;
}
