#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
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
  // An address that answers only when the test says so.
  std::string slow;
  std::vector<std::function<void()>> waiting;
  void answerWaiting() {
    for (auto& answer : std::exchange(waiting, {})) scheduler.post(std::move(answer));
  }
};

class FakeHTTPSession final : public HTTPSession {
 public:
  explicit FakeHTTPSession(FakeNetwork& network) : network_(network) {}

  void fetch(const URL& url, const HTTPLimits&, std::function<void(HTTPResult)> answer) override {
    network_.requests.push_back(url.text());
    const auto found = network_.answers.find(url.text());
    HTTPResult given = Failure(HTTPFailure::Unreachable);
    if (found != network_.answers.end()) given = found->second;
    auto give = [given, answer = std::move(answer)] { answer(given); };
    if (url.text() == network_.slow)
      network_.waiting.push_back(std::move(give));
    else
      network_.scheduler.post(std::move(give));
  }
  // Leaves no file behind.
  void download(const URL& url, const std::filesystem::path&, const HTTPLimits& limits,
                std::function<void(HTTPResult)> answer) override {
    fetch(url, limits, std::move(answer));
  }

 private:
  FakeNetwork& network_;
};

inline MakeHTTPSession FakeNetwork::sessions() {
  return [this] { return std::make_unique<FakeHTTPSession>(*this); };
}

}  // namespace orvel::test
