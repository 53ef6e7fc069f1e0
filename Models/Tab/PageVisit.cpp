#include "Models/Tab/PageVisit.h"

#include <utility>

#include "Models/Tab/BrowserTab.h"

namespace orvel {

void PageVisit::record(const WebView& view) {
  const auto address = view.url();
  if (!address) return;
  const auto shown = view.title().value_or("");
  if (shown.empty()) nameless_ = address;
  tab_.host()->recordVisit(tab_, *address, shown);
}

void PageVisit::name(const WebView& view) {
  const auto shown = view.title().value_or("");
  if (!nameless_ || shown.empty()) return;
  const URL address = *std::exchange(nameless_, std::nullopt);
  if (view.url() == address) tab_.host()->nameVisit(tab_, address, shown);
}

}  // namespace orvel
