#pragma once

namespace orvel {

// What is asked of the text that has the keyboard, in a page or in a field.
enum class EditingCommand { Undo, Redo, Cut, Copy, Paste, PasteAsPlainText, Delete, SelectAll };

}  // namespace orvel
