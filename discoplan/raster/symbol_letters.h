// SPDX-License-Identifier: MIT
#pragma once

/// Greek on machines without the Symbol font.

namespace discoplan {

/// What the encoding of that font has in place of a Latin letter; other characters stand for
/// themselves.
constexpr char32_t SymbolLetter(char32_t character) {
  constexpr char32_t kCapitals[] = U"ΑΒΧΔΕΦΓΗΙϑΚΛΜΝΟΠΘΡΣΤΥςΩΞΨΖ";
  constexpr char32_t kSmall[] = U"αβχδεφγηιϕκλμνοπθρστυϖωξψζ";
  if (character >= 'A' && character <= 'Z') return kCapitals[character - 'A'];
  if (character >= 'a' && character <= 'z') return kSmall[character - 'a'];
  return character;
}

inline constexpr const char* kSymbolFont = "Symbol";

}  // namespace discoplan
