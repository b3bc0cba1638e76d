// SPDX-License-Identifier: MIT
#include "data/plain_text.h"

#include <algorithm>
#include <locale>
#include <sstream>

#include "discoplan/base/algorithms.h"

namespace discoplan::data {
namespace {

constexpr std::size_t kMostShown = 40;
constexpr std::size_t kMostListed = 30;

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

struct Utf8Form {
  unsigned lead_mask, lead;
  std::size_t length;
  unsigned least;  // smaller code points have a shorter form, or are C1 control characters
};
constexpr Utf8Form kUtf8Forms[] = {
    {0xE0, 0xC0, 2, 0xA0}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}};

std::string PrintablePart(std::string_view text, std::size_t most) {
  std::string shown;
  for (; !text.empty() && most > 0; --most) {
    const std::size_t length = PrintableLength(text);
    if (length == 0) {
      shown += '?';
    } else {
      shown += text.substr(0, length);
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return text.empty() ? shown : shown + "...";
}

}  // namespace

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool SameName(std::string_view a, std::string_view b) {
  return Equal(Trimmed(a), Trimmed(b), Lower);
}

std::size_t PrintableLength(std::string_view text) {
  if (text.empty()) return 0;
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (byte(0) < 0x80) return byte(0) >= 0x20 && byte(0) != 0x7F ? 1 : 0;
  for (const Utf8Form& form : kUtf8Forms) {
    if ((byte(0) & form.lead_mask) != form.lead || text.size() < form.length) continue;
    unsigned code = byte(0) & ~form.lead_mask;
    for (std::size_t i = 1; i < form.length; ++i) {
      if ((byte(i) & 0xC0U) != 0x80) return 0;
      code = code << 6 | (byte(i) & 0x3FU);
    }
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code >= form.least && code <= 0x10FFFF && !surrogate ? form.length : 0;
  }
  return 0;
}

std::string Printable(std::string_view text) { return PrintablePart(text, text.size()); }

std::string Shown(std::string_view text) { return '\'' + PrintablePart(text, kMostShown) + '\''; }

std::size_t CharactersIn(std::string_view text) {
  const auto begins = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; };
  return static_cast<std::size_t>(CountIf(text, begins));
}

std::string Listed(const std::vector<std::string>& items) {
  std::string list;
  for (std::size_t i = 0; i < std::min(items.size(), kMostListed); ++i) {
    list += (i == 0 ? "" : ", ") + items[i];
  }
  if (items.size() > kMostListed) {
    list += " and " + std::to_string(items.size() - kMostListed) + " more";
  }
  return list;
}

std::string LengthText(double length) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << length;
  return text.str();
}

std::string Counted(std::size_t count, std::string_view thing) {
  return std::to_string(count) + ' ' + std::string(thing) + (count == 1 ? "" : "s");
}

}  // namespace discoplan::data
