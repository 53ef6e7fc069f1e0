#pragma once

#include <chrono>

namespace orvel {

// A moment in UTC. BrowserCore never asks for the time: the present moment comes in as an argument.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

}  // namespace orvel
