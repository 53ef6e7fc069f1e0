#include "Base/Observable.h"

#include <algorithm>
#include <deque>
#include <vector>

#include "Base/Assert.h"

namespace orvel {

// One edge of the graph, owned by the effect and threaded through its source's list of readers, so
// that either end can cut it in constant time.
struct SourceLink {
  const ObservableBase* source = nullptr;
  EffectState* reader = nullptr;
  SourceLink* previous = nullptr;
  SourceLink* next = nullptr;
};

class EffectState : public std::enable_shared_from_this<EffectState> {
 public:
  explicit EffectState(std::function<void(const Wake&)> body);

  void run();
  void wake();
  void stop();
  void read(const ObservableBase& source);

  uint64_t id() const { return id_; }
  uint64_t runID() const { return runID_; }

 private:
  void cutLinks();

  const uint64_t id_;
  uint64_t runID_ = 0;
  std::function<void(const Wake&)> body_;
  std::deque<SourceLink> links_;
  Wake wake_;
  bool isWoken_ = false;
  bool isBodyRunning_ = false;
  bool isStopped_ = false;
};

namespace {

constexpr int kMaxRounds = 100;

struct Graph {
  EffectState* running = nullptr;
  uint64_t lastRun = 0;
  uint64_t lastEffect = 0;
  std::vector<std::weak_ptr<EffectState>> woken;
  std::function<void()> listener;
};

Graph& graph() {
  thread_local Graph instance;
  return instance;
}

}  // namespace

EffectState::EffectState(std::function<void(const Wake&)> body)
    : id_(++graph().lastEffect), body_(std::move(body)) {}

void EffectState::run() {
  if (isStopped_) return;
  const auto self = shared_from_this();
  isWoken_ = false;
  cutLinks();
  runID_ = ++graph().lastRun;
  const Wake why = std::exchange(wake_, {});
  EffectState* const outer = std::exchange(graph().running, this);
  isBodyRunning_ = true;
  body_(why);
  isBodyRunning_ = false;
  graph().running = outer;
  if (isStopped_) {
    cutLinks();
    body_ = nullptr;
  }
}

void EffectState::wake() {
  if (const Transaction* transaction = Transaction::current();
      transaction && (!wake_.transaction || wake_.transaction->id < transaction->id))
    wake_.transaction = *transaction;
  if (isWoken_) return;
  isWoken_ = true;
  auto& woken = graph().woken;
  woken.push_back(weak_from_this());
  if (woken.size() == 1 && graph().listener) graph().listener();
}

void EffectState::stop() {
  isStopped_ = true;
  // A body that ends its own effect is still running: it lets go of what it holds when it returns.
  if (isBodyRunning_) return;
  cutLinks();
  body_ = nullptr;
}

void EffectState::read(const ObservableBase& source) {
  SourceLink& link = links_.emplace_back();
  link = {&source, this, nullptr, source.readers_};
  if (source.readers_) source.readers_->previous = &link;
  source.readers_ = &link;
}

void EffectState::cutLinks() {
  for (const SourceLink& link : links_) {
    if (!link.source) continue;
    if (link.previous)
      link.previous->next = link.next;
    else
      link.source->readers_ = link.next;
    if (link.next) link.next->previous = link.previous;
  }
  links_.clear();
}

ObservableBase::~ObservableBase() {
  for (SourceLink* link = readers_; link; link = link->next) link->source = nullptr;
}

void ObservableBase::recordRead() const {
  EffectState* const running = graph().running;
  if (!running || lastRun_ == running->runID()) return;
  lastRun_ = running->runID();
  running->read(*this);
}

void ObservableBase::requireWritable() {
  requireMainThread();
  require(graph().running == nullptr, "an effect wrote to the model");
}

void ObservableBase::notify() {
  for (const SourceLink* link = readers_; link; link = link->next) link->reader->wake();
}

Effect::Effect(std::function<void(const Wake&)> body)
    : state_(std::make_shared<EffectState>(std::move(body))) {
  state_->run();
}

Effect::~Effect() { stop(); }

Effect& Effect::operator=(Effect&& other) noexcept {
  if (this == &other) return *this;
  stop();
  state_ = std::move(other.state_);
  return *this;
}

void Effect::stop() {
  if (const auto state = std::exchange(state_, nullptr)) state->stop();
}

detail::UntrackedScope::UntrackedScope() : suspended_(std::exchange(graph().running, nullptr)) {}

detail::UntrackedScope::~UntrackedScope() { graph().running = suspended_; }

void flushEffects() {
  for (int round = 0; !graph().woken.empty(); ++round) {
    if (round == kMaxRounds) {
      require(false, "effects do not settle");
      graph().woken.clear();
      return;
    }
    std::vector<std::shared_ptr<EffectState>> effects;
    for (const auto& weak : std::exchange(graph().woken, {}))
      if (auto effect = weak.lock()) effects.push_back(std::move(effect));
    std::sort(effects.begin(), effects.end(),
              [](const auto& a, const auto& b) { return a->id() < b->id(); });
    for (const auto& effect : effects) effect->run();
  }
}

bool hasWokenEffects() { return !graph().woken.empty(); }

void onEffectsWoken(std::function<void()> listener) { graph().listener = std::move(listener); }

}  // namespace orvel
