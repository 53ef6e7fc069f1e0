#pragma once

#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

namespace orvel::tools {

// Answers one request of `orvel-core eval`. A request that lacks a field or has one of the wrong
// type may throw a `nlohmann::json::exception`; the loop answers it with `{"error":"badRequest"}`.
using Operation = std::function<nlohmann::json(const nlohmann::json& request)>;
using Operations = std::map<std::string, Operation, std::less<>>;

// Each adds the operations of one area under the names of their "op" field.
void addAddressOperations(Operations& operations);
void addAnswerOperations(Operations& operations);
void addSessionOperations(Operations& operations);

// `orvel-core convert-filters`: `arguments` are those after the command's name. Answers the exit
// code.
int convertFilters(int count, char** arguments);

}  // namespace orvel::tools
