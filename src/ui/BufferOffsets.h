#pragma once

#include <gtkmm/textbuffer.h>

#include <cstddef>

/// Places in a note's text, in bytes, and in its buffer, in characters. The breaks that show a very
/// long line in pieces are in the buffer alone.
namespace corvel::bufferoffsets {

int characterAt(const Gtk::TextBuffer& buffer, std::size_t byte);
std::size_t byteAt(const Gtk::TextBuffer& buffer, int character);

}  // namespace corvel::bufferoffsets
