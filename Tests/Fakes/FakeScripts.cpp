#include <algorithm>
#include <nlohmann/json.hpp>
#include <regex>

#include "Tests/Fakes/FakeEngine.h"

// The answers of a page, and the little of JavaScript that it knows.
namespace orvel::test {

namespace {

using nlohmann::json;

constexpr Duration kHungFor = 5s;
const ScriptResult kNoAnswer = Failure("the page does not answer");

Task<> afterHanging(std::function<void()> answer) {
  co_await sleep(kHungFor);
  answer();
}

}  // namespace

template <class T>
void FakeWebView::answerLater(std::function<void(T)> answer, T value, T failure) {
  if (!answer) return;
  if (isHung)
    engine_.scheduler().start(afterHanging([answer, failure] { answer(failure); })).detach();
  else
    engine_.scheduler().post([answer, value] { answer(value); });
}

template void FakeWebView::answerLater(std::function<void(bool)>, bool, bool);
template void FakeWebView::answerLater(std::function<void(ImageRef)>, ImageRef, ImageRef);
template void FakeWebView::answerLater(std::function<void(PDFResult)>, PDFResult, PDFResult);
template void FakeWebView::answerLater(std::function<void(MediaPlaybackState)>, MediaPlaybackState,
                                       MediaPlaybackState);

void FakeWebView::evaluateJavaScript(const std::string& script, const ContentWorld& world,
                                     const std::optional<FrameInfo>& frame, ScriptAnswer answer) {
  const uint64_t id = frame && !frame->isMainFrame ? frame->id : 0;
  const bool isThere = std::ranges::any_of(frames, [&](const auto& one) { return one.id == id; });
  answerLater<ScriptResult>(std::move(answer),
                            isHung    ? kNoAnswer
                            : isThere ? run(script, world, id)
                                      : Failure("no such frame"),
                            kNoAnswer);
}

void FakeWebView::callAsyncJavaScript(const std::string& body, const std::string&,
                                      const ContentWorld& world, ScriptAnswer answer) {
  if (body == "await new Promise(() => {})" && !isHung)
    calls_.push_back(std::move(answer));
  else
    evaluateJavaScript(body, world, std::nullopt, std::move(answer));
}

void FakeWebView::endCalls() {
  for (auto& answer : std::exchange(calls_, {}))
    engine_.scheduler().post([answer = std::move(answer)] { answer(kNoAnswer); });
}

ScriptResult FakeWebView::run(const std::string& script, const ContentWorld& world,
                              uint64_t frame) {
  static const std::regex kAssignment(R"(([A-Za-z]\w*) = (.+))");
  static const std::regex kPost(R"(webkit\.messageHandlers\.(\w+)\.postMessage\((.*)\))");
  static const std::regex kName(R"([A-Za-z]\w*)");
  auto& globals = globals_[{frame, world}];
  const auto info = *std::ranges::find(frames, frame, &FrameInfo::id);
  std::smatch match;
  if (script == "location.host") return json(info.securityOriginHost).dump();
  if (const json value = json::parse(script, nullptr, false); !value.is_discarded())
    return value.dump();
  if (std::regex_match(script, match, kAssignment)) {
    const ScriptResult value = run(match[2], world, frame);
    if (value) globals[match[1]] = *value;
    return value;
  }
  if (std::regex_match(script, match, kPost)) {
    const std::string name = match[1];
    const ScriptResult body = run(match[2], world, frame);
    // Nothing is known of where a message of the page's own world comes from.
    controller().post(name, world, body.value_or("null"),
                      world.name.empty() ? FrameInfo{.isMainFrame = false} : info);
    return "null";
  }
  if (!std::regex_match(script, kName)) return "null";
  const auto known = globals.find(script);
  if (known == globals.end()) return Failure("Can't find variable: " + script);
  return known->second;
}

void FakeWebView::runUserScripts() {
  for (const UserScript& script : controller().scripts)
    for (const FrameInfo& frame : frames)
      if (frame.isMainFrame || script.frames == UserScript::Frames::All)
        run(script.source, script.world, frame.id);
}

}  // namespace orvel::test
