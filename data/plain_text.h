// SPDX-License-Identifier: MIT
#pragma once

/// Small texts from data files: comparing them, and showing them without harm to a terminal.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace discoplan::data {

/// `text` without the blanks and tabs around it.
std::string_view Trimmed(std::string_view text);

/// Equal but for the case of ASCII letters and the blanks around.
bool SameName(std::string_view a, std::string_view b);

/// Bytes of the printable character at the start of `text`: 1 for ASCII, 2 to 4 for valid UTF-8, 0
/// for control characters (C1 ones too), for anything else, and for an empty text.
std::size_t PrintableLength(std::string_view text);

/// `text` with '?' for each byte that isn't part of a printable character.
std::string Printable(std::string_view text);

/// `text` printable, in single quotes, cut to 40 characters and "..." if it is longer.
std::string Shown(std::string_view text);

/// The items with ", " between them: the first 30, and how many more there are.
std::string Listed(const std::vector<std::string>& items);

/// Characters of printable UTF-8.
std::size_t CharactersIn(std::string_view text);

/// "147", "146.5": up to 6 digits, whatever the locale.
std::string LengthText(double length);

/// "1 column", "2 columns".
std::string Counted(std::size_t count, std::string_view thing);

}  // namespace discoplan::data
