#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Support/Network/HTTPSession.h"

namespace orvel::test {

// A network of a few addresses; any other is unreachable.
struct FakeNetwork {
  explicit FakeNetwork(Scheduler& own) : scheduler(own) {}

  MakeHTTPSession sessions();

  Scheduler& scheduler;
  std::map<std::string, HTTPAnswer> answers;
  std::vector<std::string> requests;
};

class FakeHTTPSession final : public HTTPSession {
 public:
  explicit FakeHTTPSession(FakeNetwork& network) : network_(network) {}

  void fetch(const URL& url, const HTTPLimits&, std::function<void(HTTPResult)> answer) override {
    network_.requests.push_back(url.text());
    const auto found = network_.answers.find(url.text());
    HTTPResult given = Failure(HTTPFailure::Unreachable);
    if (found != network_.answers.end()) given = found->second;
    network_.scheduler.post([given, answer = std::move(answer)] { answer(given); });
  }

 private:
  FakeNetwork& network_;
};

inline MakeHTTPSession FakeNetwork::sessions() {
  return [this] { return std::make_unique<FakeHTTPSession>(*this); };
}

}  // namespace orvel::test
