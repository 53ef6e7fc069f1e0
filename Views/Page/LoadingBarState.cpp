#include "Views/Page/LoadingBarState.h"

namespace orvel {

namespace {

constexpr double kProgressTime = 0.25;
constexpr double kFinishTime = 0.2;
constexpr double kFadeTime = 0.25;

}  // namespace

LoadingBarState::Step LoadingBarState::appear(bool isLoading, double progress) {
  ++load_;
  isLoading_ = isLoading;
  if (isLoading) return start(progress);
  shown_ = 0;
  isVisible_ = false;
  return {shown_, isVisible_, 0, std::nullopt};
}

LoadingBarState::Step LoadingBarState::start(double progress) {
  ++load_;
  shown_ = progress;
  isVisible_ = true;
  return {shown_, isVisible_, 0, std::nullopt};
}

std::optional<LoadingBarState::Step> LoadingBarState::setLoading(bool isLoading, double progress) {
  if (isLoading == isLoading_) return std::nullopt;
  isLoading_ = isLoading;
  if (isLoading) return start(progress);
  if (!isVisible_) return std::nullopt;
  shown_ = 1;
  return Step{shown_, isVisible_, kFinishTime, load_};
}

std::optional<LoadingBarState::Step> LoadingBarState::setProgress(double progress) {
  if (!isLoading_ || progress <= shown_) return std::nullopt;
  shown_ = progress;
  return Step{shown_, isVisible_, kProgressTime, std::nullopt};
}

std::optional<LoadingBarState::Step> LoadingBarState::didEnd(int load) {
  if (load != load_) return std::nullopt;
  isVisible_ = false;
  return Step{shown_, isVisible_, kFadeTime, std::nullopt};
}

}  // namespace orvel
