#pragma once

#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace orvel::tools {

// A JSON value as finished text without line ends: for what nests deeper than a recursive printer
// bears.
struct Line {
  std::string text;
};
using Answer = std::variant<nlohmann::json, Line>;

// Answers one request of `orvel-core eval`. A request that lacks a field or has one of the wrong
// type may throw any `std::exception`; the loop answers it with `{"error":"badRequest"}`.
using Operation = std::function<Answer(const nlohmann::json& request)>;
using Operations = std::map<std::string, Operation, std::less<>>;

// Each adds the operations of one area under the names of their "op" field.
void addAddressOperations(Operations& operations);
void addAnswerOperations(Operations& operations);
void addSessionOperations(Operations& operations);
void addUpdateOperations(Operations& operations);

// `orvel-core convert-filters`: `arguments` are those after the command's name. Returns the exit
// code.
int convertFilters(int count, char** arguments);

// The same for the commands of self-update; absent when `command` is none of them.
std::optional<int> runUpdateCommand(std::string_view command, int count, char** arguments);

}  // namespace orvel::tools
