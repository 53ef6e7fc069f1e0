#include "Support/Updates/SwapLaunch.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <iterator>
#include <string>

#include "BrowserCore/SelfUpdate/UpdateSwap.h"

namespace orvel::UpdateSwap {

std::error_code launch(int64_t process, const std::filesystem::path& app,
                       const std::filesystem::path& staged, bool relaunch) {
  std::string arguments[] = {"sh",
                             "-c",
                             std::string(script()),
                             "orvel-update",
                             std::to_string(process),
                             app.string(),
                             staged.string(),
                             relaunch ? "1" : "0"};
  char* pointers[std::size(arguments) + 1] = {};
  for (size_t i = 0; i < std::size(arguments); ++i) pointers[i] = arguments[i].data();

  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    posix_spawn_file_actions_addopen(&files, standard, "/dev/null", O_RDWR, 0);
  posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
  pid_t started = 0;
  const int error = posix_spawn(&started, "/bin/sh", &files, &attributes, pointers, environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  return {error, std::generic_category()};
}

}  // namespace orvel::UpdateSwap
