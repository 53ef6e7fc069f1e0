// What every target shares. A target is one source that includes this and defines `fuzz`.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string_view>

void fuzz(std::string_view input);

inline void require(bool condition) {
  if (!condition) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz({reinterpret_cast<const char*>(data), size});
  return 0;
}
