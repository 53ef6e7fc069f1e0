#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "Support/Updates/FileDescriptor.h"

namespace orvel {

// The open file's bytes from `offset` on. False unless all `size` are there.
[[nodiscard]] bool readAt(int file, uint64_t offset, char* bytes, size_t size);

// All of the open file; absent when it is longer than `limit` or cannot be read.
[[nodiscard]] std::optional<std::string> readAll(int file, size_t limit);

[[nodiscard]] bool writeAll(int file, std::string_view bytes);

// The 32 bytes of the SHA-256 of an open file from its position on, whose contents are never in
// memory whole; absent when it cannot be read.
[[nodiscard]] std::optional<std::string> sha256(int file);

// The regular file of this name in `folder`, not through a link of its own, opened to be read.
// Nothing that is no regular file is waited for.
[[nodiscard]] FileDescriptor openRegularFile(int folder, const std::string& name);

// Removes the file, or the folder with all that is in it, whatever the modes there are. A failure
// is ignored.
void removeAll(const std::filesystem::path& path);

}  // namespace orvel
