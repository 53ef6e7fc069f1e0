#include "Models/Tab/PageState.h"

#include <utility>

namespace orvel {

namespace {

constexpr std::string_view kHeading = "Orvel page state 1\n";  // no text

}  // namespace

PageState::PageState(FileSystem& files, std::filesystem::path file, FormerFile former)
    : files_(files),
      file_(std::move(file)),
      status_(former == FormerFile::MayExist ? Status::Unread : Status::Written) {}

bool PageState::isKept(const InteractionState& state) {
  return state.address.text().size() + state.bytes.size() <= kLargest;
}

const std::optional<InteractionState>& PageState::saved() const {
  if (isUnread()) {
    const auto bytes = files_.read(file_, kHeading.size() + kLargest + 1);
    if (bytes) saved_ = decode(*bytes);
    status_ = Status::Written;
  }
  return saved_;
}

void PageState::set(std::optional<InteractionState> state) {
  saved_ = state && isKept(*state) ? std::move(state) : std::nullopt;
  status_ = Status::Stale;
}

std::optional<std::string> PageState::take(const std::optional<URL>& address) {
  const auto state = saved();
  set(std::nullopt);
  return state && state->address == address ? std::optional(state->bytes) : std::nullopt;
}

void PageState::markStale() {
  if (!isUnread()) status_ = Status::Stale;
}

void PageState::markWritten() { status_ = Status::Written; }

std::string PageState::encoded(const InteractionState& state) {
  std::string bytes(kHeading);
  // An address holds no line end.
  return bytes.append(state.address.text()).append("\n").append(state.bytes);
}

std::optional<InteractionState> PageState::decode(std::string_view bytes) {
  if (!bytes.starts_with(kHeading)) return std::nullopt;
  bytes.remove_prefix(kHeading.size());
  const size_t end = bytes.find('\n');
  if (end == std::string_view::npos) return std::nullopt;
  const auto address = URL::parse(bytes.substr(0, end));
  if (!address) return std::nullopt;
  return InteractionState{std::string(bytes.substr(end + 1)), *address};
}

}  // namespace orvel
