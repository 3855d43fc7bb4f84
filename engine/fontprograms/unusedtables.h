#pragma once

#include <optional>
#include <string>

namespace engine {

/// What a font program that keeps all its glyphs is for.
enum class TextToCome {
    None,    ///< only what the document shows already
    OfFields ///< also text that a reader sets later, for which it may ask the layout tables
};

/// A TrueType or OpenType program without the tables that no reader of a PDF file asks for; all
/// others are the same, byte for byte. Nothing if it has none of them, if it is no such program or
/// if it is damaged.
std::optional<std::string> withoutUnusedTables(const std::string &program, TextToCome text);

} // namespace engine
