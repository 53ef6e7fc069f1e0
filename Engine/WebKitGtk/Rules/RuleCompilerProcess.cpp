#include "Engine/WebKitGtk/Rules/RuleCompilerProcess.h"

#include <fmt/format.h>
#include <gio/gio.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <memory>
#include <utility>

#include "Base/GRef.h"
#include "Base/GioCall.h"

namespace orvel {

namespace fs = std::filesystem;

namespace {

constexpr guint kMaxSeconds = 300;
// Asking for no descriptors to be closed lets GLib start the process without copying this one's
// page tables, which would hold the main thread for 5 to 9 ms. Ours are all closed on exec.
constexpr auto kFlags =
    static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_INHERIT_FDS);
constexpr const char* kFolderPrefix = "compile-";

using Outcome = Result<void, std::string>;

// A process that ends with this object at the latest.
class Process {
 public:
  Process(GSubprocess* process, Resolver<Outcome> resolve)
      : process_(GRef<GSubprocess>::adopt(process)) {
    deadline_ = g_timeout_add_seconds(
        kMaxSeconds,
        [](gpointer self) -> gboolean {
          static_cast<Process*>(self)->deadline_ = 0;
          g_subprocess_force_exit(static_cast<Process*>(self)->process_.get());
          return G_SOURCE_REMOVE;
        },
        this);
    gioCall(g_subprocess_communicate_utf8_async, process, nullptr, nullptr)
        .then([resolve = std::move(resolve)](GObject* source, GAsyncResult* result) {
          resolve(outcome(G_SUBPROCESS(source), result));
        });
  }
  ~Process() {
    if (deadline_) g_source_remove(deadline_);
    g_subprocess_force_exit(process_.get());
  }
  Process(const Process&) = delete;

 private:
  static Outcome outcome(GSubprocess* process, GAsyncResult* result) {
    gchar* rawText = nullptr;
    GError* rawError = nullptr;
    g_subprocess_communicate_utf8_finish(process, result, &rawText, nullptr, &rawError);
    const GText text(rawText);
    const GErrorRef error(rawError);
    if (error) return Failure(error->message);
    if (g_subprocess_get_successful(process)) return {};
    if (!g_subprocess_get_if_exited(process))
      return Failure(
          fmt::format("the compiler was ended by signal {}", g_subprocess_get_term_sig(process)));
    const std::string reason = text ? text.get() : "";
    return Failure(reason.empty() ? "the compiler failed" : reason);
  }

  GRef<GSubprocess> process_;
  guint deadline_ = 0;
};

}  // namespace

std::optional<CompilerFolder> CompilerFolder::make(const fs::path& store) {
  std::error_code ignored;
  fs::create_directories(store, ignored);
  std::string pattern = (store / kFolderPrefix).string() + "XXXXXX";
  if (!mkdtemp(pattern.data())) return std::nullopt;
  return CompilerFolder(pattern);
}

void CompilerFolder::clear(const fs::path& store) {
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(store, error))
    if (entry.path().filename().string().starts_with(kFolderPrefix))
      fs::remove_all(entry.path(), error);
}

CompilerFolder::CompilerFolder(CompilerFolder&& other) noexcept
    : path_(std::exchange(other.path_, {})) {}

CompilerFolder::~CompilerFolder() {
  std::error_code ignored;
  if (!path_.empty()) fs::remove_all(path_, ignored);
}

std::optional<CompilerInput> CompilerInput::make(const std::string& json) {
  CompilerInput input(memfd_create("rules", MFD_CLOEXEC));
  if (input.descriptor_ < 0) return std::nullopt;
  for (size_t written = 0; written < json.size();) {
    const ssize_t count = write(input.descriptor_, json.data() + written, json.size() - written);
    if (count < 0) return std::nullopt;
    written += static_cast<size_t>(count);
  }
  return input;
}

CompilerInput::CompilerInput(CompilerInput&& other) noexcept : descriptor_(other.release()) {}

CompilerInput::~CompilerInput() {
  if (descriptor_ >= 0) close(descriptor_);
}

int CompilerInput::release() { return std::exchange(descriptor_, -1); }

Task<Result<void, std::string>> runCompiler(fs::path program, fs::path folder,
                                            std::string identifier, CompilerInput input) {
  const auto launcher = GRef<GSubprocessLauncher>::adopt(g_subprocess_launcher_new(kFlags));
  g_subprocess_launcher_setenv(launcher.get(), "TMPDIR", folder.c_str(), TRUE);
  g_subprocess_launcher_take_stdin_fd(launcher.get(), input.release());
  GError* rawError = nullptr;
  auto* started =
      g_subprocess_launcher_spawn(launcher.get(), &rawError, program.c_str(), folder.c_str(),
                                  identifier.c_str(), static_cast<const char*>(nullptr));
  const GErrorRef error(rawError);
  if (!started) co_return Failure(error->message);
  auto [future, resolve] = makeFuture<Outcome>();
  const Process process(started, std::move(resolve));
  Outcome outcome = co_await std::move(future);
  co_return std::move(outcome);
}

}  // namespace orvel
