#pragma once

#include <gtk/gtk.h>

#include <filesystem>
#include <string_view>

// The system's symbols, drawn from their outlines: nothing is looked up in icon themes and nothing
// decoded, which would take longer than the rest of the window.
namespace orvel::Symbols {

// Names the file of outlines, a line each: the symbol, a tab, and a path of absolute M, L, C and Z
// commands in a square of 256. Call it once, before the first symbol is wanted.
void load(const std::filesystem::path& file);

enum class Side { Drawn, Mirrored };

// The symbol as a symbolic paintable, sharp at any size, which lives as long as the program. Null
// where its outline is missing or is none.
[[nodiscard]] GdkPaintable* paintable(std::string_view symbol, Side side = Side::Drawn);

}  // namespace orvel::Symbols
