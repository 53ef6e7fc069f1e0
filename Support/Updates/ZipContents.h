#pragma once

#include <functional>
#include <string_view>

#include "Support/Updates/ZipDirectory.h"

namespace orvel {

// The unpacked bytes of an entry, piece by piece, to `take`, which may refuse to go on. False when
// it did, and unless the bytes are as many as the directory says and of its checksum; `take` never
// gets more than it says. Also false for what is encrypted, and packed other than by deflating: the
// library knows rarer methods, but nobody makes such archives, and theirs is less trodden code.
[[nodiscard]] bool readZipContents(int archive, const ZipEntry& entry,
                                   const std::function<bool(std::string_view)>& take);

}  // namespace orvel
