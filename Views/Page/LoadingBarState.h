#pragma once

#include <optional>

namespace orvel {

// How the loading bar moves, apart from any drawing. The bar never goes back within a load, always
// runs to its full width before it fades, and stays when a new load begins during the fade.
class LoadingBarState {
 public:
  // What the bar does next, over `duration` seconds; zero is at once.
  struct Step {
    double shown = 0;
    bool isVisible = false;
    double duration = 0;
    // When the step has ended, `didEnd` wants to be told of this load.
    std::optional<int> load;

    friend bool operator==(const Step&, const Step&) = default;
  };

  // The bar comes for a page that may be loading already. What was shown for another page is gone.
  [[nodiscard]] Step appear(bool isLoading, double progress);
  // Absent: nothing moves.
  [[nodiscard]] std::optional<Step> setLoading(bool isLoading, double progress);
  [[nodiscard]] std::optional<Step> setProgress(double progress);
  [[nodiscard]] std::optional<Step> didEnd(int load);

 private:
  Step start(double progress);

  bool isLoading_ = false;
  double shown_ = 0;
  bool isVisible_ = false;
  int load_ = 0;
};

}  // namespace orvel
