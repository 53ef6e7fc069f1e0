#include <iostream>
#include <string_view>

#include "Tools/Operations.h"

namespace {

using nlohmann::json;
using orvel::tools::Answer;
using orvel::tools::Line;
using orvel::tools::Operations;

Answer answer(const Operations& operations, const std::string& line) {
  const json badRequest = {{"error", "badRequest"}};
  const json request = json::parse(line, nullptr, false);
  if (!request.is_object()) return badRequest;
  try {
    const auto operation = operations.find(request.at("op").get<std::string>());
    return operation == operations.end() ? badRequest : operation->second(request);
  } catch (const json::exception&) {
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
  std::ios::sync_with_stdio(false);
  for (std::string line; std::getline(std::cin, line);)
    std::cout << printed(answer(operations, line)) << '\n' << std::flush;
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  const std::string_view command = count > 1 ? arguments[1] : "--help";
  if (command == "eval") return evaluate();
  if (command == "convert-filters") return orvel::tools::convertFilters(count - 2, arguments + 2);
  std::cout << "usage: orvel-core eval | convert-filters LIST [--no-cosmetic] [--max-rules N]\n";
  return command == "--help" ? 0 : 2;
}
