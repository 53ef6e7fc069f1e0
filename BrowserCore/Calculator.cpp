#include "BrowserCore/Calculator.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory_resource>
#include <string>
#include <variant>
#include <vector>

#include "BrowserCore/DecimalNumber.h"
#include "BrowserCore/LetterCase.h"

namespace orvel::Calculator {

namespace {

struct Constant {
  std::string_view name;
  double value;
};

struct Function {
  std::string_view name;
  double (*apply)(double);
};

constexpr Constant constants[] = {
    {"pi", 3.141592653589793},
    {"π", 3.141592653589793},
    {"e", 2.718281828459045},
};

constexpr Function functions[] = {
    {"sqrt", std::sqrt}, {"abs", std::fabs}, {"round", std::round}, {"floor", std::floor},
    {"ceil", std::ceil}, {"ln", std::log},   {"log", std::log10},   {"sin", std::sin},
    {"cos", std::cos},   {"tan", std::tan},
};

using Token = std::variant<double, const Constant*, const Function*, char>;
using Tokens = std::pmr::vector<Token>;

std::optional<Token> named(std::string_view name) {
  for (const Constant& constant : constants)
    if (constant.name == name) return &constant;
  for (const Function& function : functions)
    if (function.name == name) return &function;
  return std::nullopt;
}

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The form of a subtraction, but a date, a telephone number or a reference.
bool looksLikeCode(std::string_view text) {
  std::vector<std::string_view> pieces;
  for (size_t begin = 0; begin <= text.size();) {
    const size_t end = std::min(text.find('-', begin), text.size());
    const std::string_view piece = text.substr(begin, end - begin);
    if (piece.empty() || !std::all_of(piece.begin(), piece.end(), isDigit)) return false;
    pieces.push_back(piece);
    begin = end + 1;
  }
  if (pieces.size() != 2) return pieces.size() > 2;
  for (const std::string_view piece : pieces)
    if (piece.size() > 1 && piece.front() == '0') return true;
  return pieces[0].size() + pieces[1].size() > 6;
}

// The text in lower case with one spelling of each operator and without commas.
std::string rewritten(std::string_view typed) {
  static constexpr std::pair<std::string_view, std::string_view> kSpellings[] = {
      {" of ", " * "}, {"×", "*"}, {"÷", "/"}, {"−", "-"}, {",", ""}};
  const auto canBegin = [](char c) { return c == ' ' || c == ',' || (c & 0x80) != 0; };
  std::string lower = text::lowerCased(typed);
  if (std::none_of(lower.begin(), lower.end(), canBegin)) return lower;
  std::string_view rest = lower;
  std::string result;
  result.reserve(rest.size());
  while (!rest.empty()) {
    const auto plain = std::find_if(rest.begin(), rest.end(), canBegin);
    result.append(rest.begin(), plain);
    rest.remove_prefix(static_cast<size_t>(plain - rest.begin()));
    if (rest.empty()) break;
    const auto spelling =
        std::find_if(std::begin(kSpellings), std::end(kSpellings),
                     [&rest](const auto& pair) { return rest.starts_with(pair.first); });
    const bool isFound = spelling != std::end(kSpellings);
    result += isFound ? spelling->second : rest.substr(0, 1);
    rest.remove_prefix(isFound ? spelling->first.size() : 1);
  }
  return result;
}

// Unicode's classes, with a short way for ASCII.

constexpr auto isNumberPart = [](UChar32 c) {
  if (c < 0x80) return (c >= '0' && c <= '9') || c == '.';
  return u_getIntPropertyValue(c, UCHAR_NUMERIC_TYPE) != U_NT_NONE;
};

constexpr auto isLetter = [](UChar32 c) {
  if (c < 0x80) return c >= 'a' && c <= 'z';
  return u_isUAlphabetic(c) != 0;
};

bool isSpace(UChar32 c) {
  if (c < 0x80) return c == ' ' || (c >= '\t' && c <= '\r');
  return u_isUWhiteSpace(c);
}

bool isOperator(UChar32 c) {
  switch (c) {
    case '+':
    case '-':
    case '*':
    case '/':
    case '^':
    case '%':
    case '(':
    case ')':
      return true;
    default:
      return false;
  }
}

// Absent as soon as the text holds anything that no calculation has.
std::optional<Tokens> tokenize(std::string_view text, std::pmr::memory_resource& memory) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  const auto size = static_cast<int64_t>(text.size());
  const auto next = [bytes, size](int64_t& position) {
    UChar32 c = 0;
    U8_NEXT(bytes, position, size, c);
    return c;
  };
  Tokens tokens(&memory);
  tokens.reserve(std::min<size_t>(text.size(), 16));
  for (int64_t position = 0; position < size;) {
    const int64_t begin = position;
    int64_t end = position;
    const UChar32 first = next(end);
    const auto run = [&](auto belongs) {
      for (position = end; position < size && belongs(next(position));) end = position;
      position = end;
      return text.substr(static_cast<size_t>(begin), static_cast<size_t>(end - begin));
    };
    if (isSpace(first)) {
      position = end;
    } else if (isNumberPart(first)) {
      const auto number = decimalNumber::parse(run(isNumberPart));
      if (!number) return std::nullopt;
      tokens.emplace_back(*number);
    } else if (isLetter(first)) {
      const auto name = named(run(isLetter));
      if (!name) return std::nullopt;
      tokens.emplace_back(*name);
    } else if (isOperator(first)) {
      tokens.emplace_back(static_cast<char>(first));
      position = end;
    } else {
      return std::nullopt;
    }
  }
  return tokens;
}

// Tells a calculation from a lone number or name.
bool isMath(const Tokens& tokens) {
  const auto qualifies = [&tokens](const Token& token) {
    if (const char* symbol = std::get_if<char>(&token))
      return *symbol == '-' ? tokens.size() > 2 : *symbol != '(' && *symbol != ')';
    return std::holds_alternative<const Function*>(token);
  };
  return std::any_of(tokens.begin(), tokens.end(), qualifies) &&
         std::any_of(tokens.begin(), tokens.end(),
                     [](const Token& token) { return std::holds_alternative<double>(token); });
}

// The grammar, which is read without recursion: what waits for a value still to come lies on a
// stack, and each rule's operation finishes what that rule left there.
//
//   expression = term { ("+" | "-") term }
//   term       = unary { ("*" | "/") unary }
//   unary      = ("-" | "+") unary | power
//   power      = primary { "%" } [ "^" unary ]
//   primary    = number | constant | function primary | "(" expression ")"
class Parser {
 public:
  Parser(const Tokens& tokens, std::pmr::memory_resource& memory)
      : tokens_(tokens), pending_(&memory) {
    pending_.reserve(8);
    advanceTo(0);
  }

  // The value of all tokens.
  std::optional<double> parse() {
    while (parsePrimary()) {
      if (parsePower()) continue;
      parseUnary();
      if (parseTerm()) continue;
      if (parseExpression()) continue;
      if (!pending_.empty()) return std::nullopt;
      return next_ == tokens_.size() ? std::optional(value_) : std::nullopt;
    }
    return std::nullopt;
  }

 private:
  enum class Kind { Add, Subtract, Multiply, Divide, Raise, Negate, Apply, Open };
  struct Pending {
    Kind kind;
    double left = 0;
    const Function* function = nullptr;
  };

  // Reads up to and with the next number or constant, or, behind a value, what `parseExpression`
  // closed. Functions that wait for it are applied.
  bool parsePrimary() {
    while (!isClosed_) {
      if (next_ == tokens_.size()) return false;
      const Token& token = tokens_[next_];
      const char symbol = symbol_;
      advanceTo(next_ + 1);
      if (const double* number = std::get_if<double>(&token)) {
        value_ = *number;
        break;
      }
      if (const auto* constant = std::get_if<const Constant*>(&token)) {
        value_ = (*constant)->value;
        break;
      }
      if (const auto* function = std::get_if<const Function*>(&token))
        pending_.push_back({Kind::Apply, 0, *function});
      else if (symbol == '(')
        pending_.push_back({Kind::Open});
      else if (isWaiting(Kind::Apply))
        return false;
      else if (symbol == '-')
        pending_.push_back({Kind::Negate});
      else if (symbol != '+')
        return false;
    }
    isClosed_ = false;
    for (; isWaiting(Kind::Apply); pending_.pop_back())
      value_ = pending_.back().function->apply(value_);
    return true;
  }

  // Each of the following answers whether another value has to follow.

  bool parsePower() {
    while (skip('%')) value_ /= 100;
    return awaits('^', Kind::Raise);
  }

  void parseUnary() {
    for (; isWaiting(Kind::Raise) || isWaiting(Kind::Negate); pending_.pop_back())
      value_ = isWaiting(Kind::Raise) ? std::pow(pending_.back().left, value_) : -value_;
  }

  bool parseTerm() {
    if (isWaiting(Kind::Multiply) || isWaiting(Kind::Divide)) {
      const Pending pending = pop();
      value_ = pending.kind == Kind::Multiply ? pending.left * value_ : pending.left / value_;
    }
    return awaits('*', Kind::Multiply) || awaits('/', Kind::Divide);
  }

  bool parseExpression() {
    if (isWaiting(Kind::Add) || isWaiting(Kind::Subtract)) {
      const Pending pending = pop();
      value_ = pending.kind == Kind::Add ? pending.left + value_ : pending.left - value_;
    }
    if (awaits('+', Kind::Add) || awaits('-', Kind::Subtract)) return true;
    if (!isWaiting(Kind::Open) || !skip(')')) return false;
    pending_.pop_back();
    isClosed_ = true;
    return true;
  }

  bool isWaiting(Kind kind) const { return !pending_.empty() && pending_.back().kind == kind; }

  void advanceTo(size_t position) {
    next_ = position;
    const char* symbol = next_ < tokens_.size() ? std::get_if<char>(&tokens_[next_]) : nullptr;
    symbol_ = symbol ? *symbol : '\0';
  }

  bool skip(char symbol) {
    if (symbol_ != symbol) return false;
    advanceTo(next_ + 1);
    return true;
  }

  bool awaits(char symbol, Kind kind) {
    if (!skip(symbol)) return false;
    pending_.push_back({kind, value_});
    return true;
  }

  Pending pop() {
    const Pending pending = pending_.back();
    pending_.pop_back();
    return pending;
  }

  const Tokens& tokens_;
  size_t next_ = 0;
  char symbol_ = '\0';  // the next token, if it is a symbol
  std::pmr::vector<Pending> pending_;
  double value_ = 0;
  bool isClosed_ = false;  // `value_` is that of the parentheses just closed
};

}  // namespace

std::optional<double> evaluate(std::string_view text) {
  if (looksLikeCode(text)) return std::nullopt;
  // What people type fits in here: a keystroke costs no allocation.
  std::array<std::byte, 1024> space;
  std::pmr::monotonic_buffer_resource memory(space.data(), space.size());
  const auto tokens = tokenize(rewritten(text), memory);
  if (!tokens || !isMath(*tokens)) return std::nullopt;
  const auto value = Parser(*tokens, memory).parse();
  return value && std::isfinite(*value) ? value : std::nullopt;
}

}  // namespace orvel::Calculator
