#include "Models/Updates/SelfUpdate.h"

#include <vector>

#include "Base/Log.h"
#include "Base/Texts.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageClosing.h"
#include "Models/Windows/Ask.h"

namespace orvel {

namespace {

constexpr Log kLog{"updates"};
constexpr Duration kFirstCheck = 10s;
constexpr Duration kInterval = 6h;
constexpr HTTPLimits kFeedLimits{.timeout = 15s, .mostBytes = 64 << 10};
// As long as an archive's bytes keep coming it may take its time.
constexpr HTTPLimits kArchiveLimits{.timeout = 60s, .mostBytes = 2ull << 30};
constexpr const char* kSymbol = "arrow.down.circle";

using Weak = std::weak_ptr<BrowserStore>;

std::string descriptionOf(const StageError& failure) {
  if (const auto* error = std::get_if<std::error_code>(&failure)) return error->message();
  return std::string(nameOf(std::get<UpdateFailure>(failure)));
}

std::string isReady(const std::string& version) {
  return filled(_("Orvel {version} is ready"), {{"version", version}});
}

std::string isAvailable(const std::string& version) {
  return filled(_("Orvel {version} is available"), {{"version", version}});
}

void tell(const BrowserStore& store, std::string message, std::string detail) {
  store.services().desktop.dialogs.showAlert(store.window(),
                                             {.messageText = std::move(message),
                                              .informativeText = std::move(detail),
                                              .buttons = {_("OK")}},
                                             [](const AlertAnswer&) {});
}

}  // namespace

struct SelfUpdate::Preparation {
  int64_t build;
  std::vector<Resolver<Prepared>> waiting;
};

// The tasks. None of them keeps the store alive while it waits.
class SelfUpdate::Steps {
 public:
  static Task<> loop(Weak weak) {
    SleepResult slept = co_await sleep(kFirstCheck);
    while (slept == SleepResult::Done) {
      Task<Latest> reading = latest(weak);
      const Latest read = co_await std::move(reading);
      if (read && isNews(weak, *read)) {
        Task<> offering = offer(weak, *read);
        co_await std::move(offering);
      }
      slept = co_await sleep(kInterval, SleepClock::Boot);
    }
  }

  static Task<> check(Weak weak) {
    Task<Latest> reading = latest(weak);
    const Latest read = co_await std::move(reading);
    if (const auto* release = answerAtOnce(weak, read)) {
      Task<> answering = answer(weak, *release);
      co_await std::move(answering);
    }
  }

 private:
  // The record of the newest release, or why there is none, for the log.
  using Latest = Result<UpdateRelease, std::string>;

  static Task<Latest> latest(Weak weak) {
    std::unique_ptr<HTTPSession> session;
    std::optional<Future<HTTPResult>> fetching;
    if (const auto store = weak.lock()) {
      const UpdateServices& updates = store->services().updates;
      session = updates.makeSession();
      fetching = fetch(*session, updates.feed, kFeedLimits);
    }
    if (!fetching) co_return Failure("the program ends");
    const HTTPResult answer = co_await *std::move(fetching);
    if (!answer) co_return Failure("the feed did not answer");
    if (!answer->isOK()) co_return Failure("the feed answered " + std::to_string(answer->status));
    auto release = UpdateRelease::decode(answer->body);
    if (!release) co_return Failure("the feed holds no record");
    co_return *std::move(release);
  }

  static bool isNews(const Weak& weak, const UpdateRelease& release) {
    const auto store = weak.lock();
    return store && store->selfUpdate.isNewer(release) &&
           !store->selfUpdate.hasStaged(release.build);
  }

  // The newer release that is still to be prepared, after a toast; null when there is none, which
  // the user is told.
  static const UpdateRelease* answerAtOnce(const Weak& weak, const Latest& read) {
    const auto store = weak.lock();
    if (!store) return nullptr;
    if (!read) {
      kLog.error("Update check failed: {}", read.error());
      tell(*store, _("Couldn’t check for updates"), _("Check your connection and try again."));
      return nullptr;
    }
    if (!store->selfUpdate.isNewer(*read)) {
      tell(*store, _("You’re up to date"),
           filled(_("Orvel {version} is the latest version."),
                  {{"version", store->services().updates.program.version}}));
      return nullptr;
    }
    if (!store->selfUpdate.hasStaged(read->build))
      store->showToast(filled(_("Downloading Orvel {version}…"), {{"version", read->version}}),
                       {.symbol = kSymbol});
    return &*read;
  }

  static Task<> offer(Weak weak, UpdateRelease release) {
    Task<Prepared> preparing = prepare(weak, release);
    const Prepared prepared = co_await std::move(preparing);
    const auto store = weak.lock();
    if (!store) co_return;
    SelfUpdate& self = store->selfUpdate;
    const StagedUpdate* update = prepared ? &*prepared : nullptr;
    if (!update) logFailure(release, prepared);
    if (!self.announces(release.build)) co_return;
    if (update)
      store->showToast(isReady(update->version),
                       {.symbol = kSymbol,
                        .undo = store->whileAlive([&self] { self.restart(); }),
                        .actionTitle = _("Restart"),
                        .lasts = 30s});
    else
      store->showToast(isAvailable(release.version),
                       {.symbol = kSymbol,
                        .undo = store->whileAlive([&self, release] { self.open(release); }),
                        .actionTitle = _("Download"),
                        .lasts = 15s});
  }

  static Task<> answer(Weak weak, UpdateRelease release) {
    Task<Prepared> preparing = prepare(weak, release);
    const Prepared prepared = co_await std::move(preparing);
    const StagedUpdate* update = prepared ? &*prepared : nullptr;
    if (!update) logFailure(release, prepared);
    std::optional<Future<AlertAnswer>> asking;
    if (const auto store = weak.lock()) asking = ask(*store, question(*store, release, update));
    if (!asking) co_return;
    const AlertAnswer chosen = co_await *std::move(asking);
    const auto store = weak.lock();
    if (!store || !chosen.isFirstButton()) co_return;
    if (update)
      store->selfUpdate.restart();
    else
      store->selfUpdate.open(release);
  }

  // Null update: it is not there to be swapped in.
  static Alert question(const BrowserStore& store, const UpdateRelease& release,
                        const StagedUpdate* update) {
    return {
        .messageText = update ? isReady(update->version) : isAvailable(release.version),
        .informativeText = filled(_("You have {version}. Your tabs and logins stay as they are."),
                                  {{"version", store.services().updates.program.version}}),
        .buttons = {update ? _("Restart") : _("Download"), _("Later")}};
  }

  static void logFailure(const UpdateRelease& release, const Prepared& prepared) {
    kLog.error("Update {} not staged: {}", release.build, prepared.error());
  }

  static Task<Prepared> prepare(Weak weak, UpdateRelease release) {
    auto [future, resolve] = makeFuture<Prepared>();
    if (const auto store = weak.lock())
      beginOrJoin(*store, release, resolve);
    else
      resolve(Failure("the program ends"));
    Prepared prepared = co_await std::move(future);
    co_return prepared;
  }

  // Whoever asks for a release that is being prepared waits for that.
  static void beginOrJoin(BrowserStore& store, const UpdateRelease& release,
                          const Resolver<Prepared>& resolve) {
    SelfUpdate& self = store.selfUpdate;
    if (self.hasStaged(release.build)) return resolve(*self.staged_);
    if (self.preparing_ && self.preparing_->build == release.build)
      return self.preparing_->waiting.push_back(resolve);
    if (const auto failure = refusal(store.services().updates, release))
      return resolve(Failure(std::string(nameOf(*failure))));
    self.preparing_ = std::make_shared<Preparation>(Preparation{release.build, {resolve}});
    store.services()
        .scheduler
        .start(prepareNow(store.weak_from_this(), store.services(), release, self.preparing_,
                          ++self.preparations_))
        .detach();
  }

  static std::optional<UpdateFailure> refusal(const UpdateServices& updates,
                                              const UpdateRelease& release) {
    if (updates.program.bundle.empty() || !updates.work->canReplace(updates.program.bundle))
      return UpdateFailure::cannotReplaceApp;
    const bool isOffered = release.archive && release.signature &&
                           release.archive->scheme() == "https" && updates.program.identifier;
    if (!isOffered) return UpdateFailure::notOffered;
    return std::nullopt;
  }

  static Task<> prepareNow(Weak weak, const Services& services, UpdateRelease release,
                           std::shared_ptr<Preparation> own, uint64_t number) {
    Task<Prepared> staging = downloadAndStage(services, release);
    const Prepared prepared = co_await std::move(staging);
    const auto store = weak.lock();
    if (!store) co_return;
    SelfUpdate& self = store->selfUpdate;
    if (self.preparing_ == own) self.preparing_ = nullptr;
    const StagedUpdate* update = prepared ? &*prepared : nullptr;
    // Of two builds in one run the one that was asked for last counts.
    if (update && number > self.stagedBy_) {
      self.staged_ = *update;
      self.stagedBy_ = number;
      kLog.notice("Update {} staged", release.build);
    }
    for (const auto& resolve : own->waiting) resolve(prepared);
  }

  // The services outlive the store and this task.
  static Task<Prepared> downloadAndStage(const Services& services, UpdateRelease release) {
    const UpdateServices& updates = services.updates;
    const auto work = updates.work;
    const UpdateStage stage{updates.stagingRoot / std::to_string(release.build),
                            *updates.program.identifier, updates.publicKey};
    const auto archive = stage.folder / "update.zip";
    const auto begin = [work, folder = stage.folder] {
      work->remove(folder);
      return work->create(folder);
    };
    auto beginning = background(services.scheduler, begin, WorkPriority::Utility);
    const std::error_code error = co_await std::move(beginning);
    if (error) co_return Failure(error.message());

    const auto session = updates.makeSession();
    auto downloading = download(*session, *release.archive, archive, kArchiveLimits);
    const HTTPResult answer = co_await std::move(downloading);
    const auto finish = [=]() -> Prepared {
      Prepared prepared = stageDownload(*work, stage, archive, release, answer);
      if (!prepared) work->remove(stage.folder);
      return prepared;
    };
    auto finishing = background(services.scheduler, finish, WorkPriority::Utility);
    Prepared prepared = co_await std::move(finishing);
    co_return prepared;
  }

  static Prepared stageDownload(UpdateWork& work, const UpdateStage& stage,
                                const std::filesystem::path& archive, const UpdateRelease& release,
                                const HTTPResult& answer) {
    if (!answer) return Failure("the archive did not come whole");
    if (!answer->isOK()) return Failure(std::string(nameOf(UpdateFailure::badDownload)));
    return work.stage(stage, archive, release.build, *release.signature).map_error(descriptionOf);
  }
};

void SelfUpdate::start() {
  const UpdateServices& updates = store_.services().updates;
  Scheduler& scheduler = store_.services().scheduler;
  scheduler.runInBackground(
      [work = updates.work, root = updates.stagingRoot] { work->remove(root); }, [] {},
      WorkPriority::Utility);
  loop_ = scheduler.start(Steps::loop(store_.weak_from_this()));
}

void SelfUpdate::checkNow() {
  store_.services().scheduler.start(Steps::check(store_.weak_from_this())).detach();
}

void SelfUpdate::installIfReady() {
  if (!staged_) return;
  const UpdateServices& updates = store_.services().updates;
  if (const auto error =
          updates.work->launchSwap(updates.program.bundle, staged_->app, relaunchAfterQuit_))
    kLog.error("Couldn't start the update: {}", error.message());
  else
    kLog.notice("Installing update {} on quit", staged_->build);
}

void SelfUpdate::restart() {
  relaunchAfterQuit_ = true;
  store_.pageClosing.quit(store_.whileAlive([this] { relaunchAfterQuit_ = false; }));
}

void SelfUpdate::open(const UpdateRelease& release) {
  if (release.url.hasScheme("https") || release.url.hasScheme("http")) store_.openTab(release.url);
}

bool SelfUpdate::isNewer(const UpdateRelease& release) const {
  return store_.services().updates.program.build < release.build;
}

bool SelfUpdate::announces(int64_t build) {
  if (announced_ == build) return false;
  announced_ = build;
  return true;
}

}  // namespace orvel
