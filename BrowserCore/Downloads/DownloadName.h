#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace orvel {

// A free name for a downloaded file: the last path component of what the server suggests, or
// "download" without one, with a number from 2 on before its extension while `exists` holds for it.
//
// The name cannot leave its folder or disguise itself: it is neither "." nor "..", and holds no
// slash, control character or character that turns the direction of writing. It has at most 255
// bytes, the longest that file systems keep; a longer one loses the end of what stands before the
// extension.
[[nodiscard]] std::string downloadName(std::string_view suggested,
                                       const std::function<bool(const std::string&)>& exists);

// The name of the file `name` while it is not whole yet: that name with ".part" behind it. It loses
// its end where the engine, which puts another 12 bytes behind it, would have no room for them.
[[nodiscard]] std::string partialName(std::string_view name);

// Whether opening the file could start it as a program, going by its name. Such a file is shown in
// its folder and never opened.
[[nodiscard]] bool isProgram(std::string_view name);

}  // namespace orvel
