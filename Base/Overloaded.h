#pragma once

namespace orvel {

// A visitor made of one lambda a case: `std::visit(Overloaded{...}, variant)`.
template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

}  // namespace orvel
