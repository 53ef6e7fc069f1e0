#pragma once

namespace orvel {

enum class CommandBarMode { NewTab, CurrentTab, Quick };

}  // namespace orvel
