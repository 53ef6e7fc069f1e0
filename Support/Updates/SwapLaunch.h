#pragma once

#include <cstdint>
#include <filesystem>
#include <system_error>

namespace orvel::UpdateSwap {

// Starts the swap's script (see `script`) in a session of its own: it goes on when this process
// ends. Returns why it could not be started, or no error.
[[nodiscard]] std::error_code launch(int64_t process, const std::filesystem::path& app,
                                     const std::filesystem::path& staged, bool relaunch);

}  // namespace orvel::UpdateSwap
