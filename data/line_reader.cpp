// SPDX-License-Identifier: MIT
#include "data/line_reader.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "data/data_error.h"

namespace discoplan::data {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlockSize = 1U << 16;
constexpr std::size_t kLongestLine = 1U << 20;
constexpr std::size_t kMostOfComments = 1U << 20;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// What spreadsheets write for a number that they haven't.
constexpr std::string_view kNoNumbers[] = {"#N/A",   "#REF!", "#DIV/0!", "#VALUE!",
                                           "#NAME?", "#NUM!", "#NULL!"};

/// Signs with a separator right behind them are a field: the name of a column if there is one, and
/// a number too wide for its column if there are several.
bool IsComment(std::string_view content) {
  if (!content.starts_with('#')) return false;
  const std::size_t behind = content.find_first_not_of('#');
  if (behind == std::string_view::npos) return true;
  return std::string_view(",;\t").find(content[behind]) == std::string_view::npos &&
         std::none_of(std::begin(kNoNumbers), std::end(kNoNumbers),
                      [&](std::string_view text) { return content.starts_with(text); });
}

/// A text of measured numbers is mostly Latin digits and layout, and holds no control characters,
/// as numbers of a binary file do.
bool LooksLikeUtf16(std::string_view block, std::size_t start, ByteOrder order) {
  constexpr std::size_t kLooked = 512;
  const bool marked = start > 0;
  if (!marked && block.size() < 6) return false;
  const std::size_t high = order == ByteOrder::Little ? 1 : 0;
  std::size_t units = 0;
  std::size_t plain = 0;
  for (std::size_t at = start; at + 1 < std::min(block.size(), kLooked); at += 2, ++units) {
    const auto code = static_cast<unsigned>(static_cast<unsigned char>(block[at + high]) << 8 |
                                            static_cast<unsigned char>(block[at + 1 - high]));
    const bool is_layout = code == '\t' || code == '\n' || code == '\r' || code == '\f';
    if ((code < 0x20 && !is_layout) || code == 0x7F) return false;
    plain += code < 0x7F;
  }
  return 2 * plain >= units;
}

[[noreturn]] void RefuseUnreadable(const std::string& file, int error) {
  const std::string why = error == 0 ? "reading failed" : std::generic_category().message(error);
  throw DataError({file},
                  "the file can't be read (" + why + "); check the path and its permissions");
}

}  // namespace

FileBytes::FileBytes(const fs::path& path) : file_(path.string()), stream_(opened_) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (status.type() == fs::file_type::not_found) {
    throw DataError({file_}, "there is no such file; check the path");
  }
  if (status.type() == fs::file_type::none) RefuseUnreadable(file_, error.value());
  if (status.type() == fs::file_type::directory) {
    throw DataError({file_}, "this is a folder; name a file in it");
  }
  errno = 0;
  opened_.open(path, std::ios::binary);
  if (!opened_) RefuseUnreadable(file_, errno);
  ReadBytes();
  BeginUtf16();
}

FileBytes::FileBytes(std::string file, std::istream& stream)
    : file_(std::move(file)), stream_(stream) {
  ReadBytes();
  BeginUtf16();
}

void FileBytes::ReadBytes() {
  block_.resize(kBlockSize);
  errno = 0;
  stream_.read(block_.data(), static_cast<std::streamsize>(kBlockSize));
  if (stream_.bad()) RefuseUnreadable(file_, errno);
  block_.resize(static_cast<std::size_t>(stream_.gcount()));
}

void FileBytes::BeginUtf16() {
  for (const ByteOrder order : {ByteOrder::Little, ByteOrder::Big}) {
    const std::string_view mark = order == ByteOrder::Little ? "\xFF\xFE" : "\xFE\xFF";
    const bool marked = block_.starts_with(mark);
    const std::size_t start = marked ? mark.size() : 0;
    if (!LooksLikeUtf16(block_, start, order)) continue;
    decoder_.emplace(order);
    bytes_ = block_.substr(start);
    block_.clear();
    decoder_->Append(bytes_, block_);
    return;
  }
}

void FileBytes::NextBlock() {
  ReadBytes();
  if (!decoder_) return;
  bytes_.swap(block_);
  block_.clear();
  decoder_->Append(bytes_, block_);
  if (block_.empty() && decoder_->IsInside()) {
    throw DataError({file_}, "the text in UTF-16 ends inside a character; save it again");
  }
}

LineReader::LineReader(FileBytes& bytes) : bytes_(bytes), rest_(bytes.block()) {
  if (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
}

const std::deque<TextLine>& LineReader::Ahead() {
  TextLine line;
  TellComments([this](const Comment& comment) { KeepComment(comment); });
  while (ahead_.size() < kLinesAhead && ReadLine(line)) {
    ahead_.push_back({line.number, ahead_texts_.emplace_back(line.text)});
  }
  TellComments({});
  return ahead_;
}

bool LineReader::Next(TextLine& line) {
  if (ahead_.empty()) return ReadLine(line);
  line = ahead_.front();
  ahead_.pop_front();
  return true;
}

void LineReader::KeepComment(const Comment& comment) {
  comment_bytes_ += comment.text.size();
  for (; comment_bytes_ > kMostOfComments && !comments_.empty(); comments_.pop_front()) {
    comment_bytes_ -= comments_.front().text.size();
  }
  comments_.push_back(comment);
}

/// Characters up to the line's end, or all of them. Lines end alike: the next one of the other kind
/// is looked for once.
inline std::size_t LineReader::LineLength() {
  std::size_t length = rest_.size();
  for (NextEnd& end : ends_) {
    if (rest_.size() < end.from_back) {
      end.from_back = rest_.size() - std::min(rest_.find(end.mark), rest_.size());
    }
    length = std::min(length, rest_.size() - end.from_back);
  }
  return length;
}

/// The next line of the block; false if it doesn't end there.
inline bool LineReader::CutLine(std::string_view& text) {
  if (rest_.empty()) return false;
  if (std::exchange(after_cr_, false) && rest_.front() == '\n') rest_.remove_prefix(1);
  const std::size_t length = LineLength();
  if (length == rest_.size()) return false;
  text = rest_.substr(0, length);
  after_cr_ = rest_[length] == '\r';
  rest_.remove_prefix(length + 1);
  return true;
}

inline bool LineReader::ReadRaw(std::string_view& text) {
  ++number_;
  return CutLine(text) || JoinLine(text);
}

bool LineReader::ReadLine(TextLine& line) {
  while (ReadRaw(line.text)) {
    line.number = number_;
    // Nearly all lines begin with a sign or a digit, which stand above '#'.
    if (!line.text.empty() && line.text.front() > '#') {
      after_blank_ = false;
      return true;
    }
    std::string_view content = Trimmed(line.text);
    if (IsComment(content)) {
      content.remove_prefix(std::min(content.find_first_not_of('#'), content.size()));
      if (tell_) tell_({number_, std::string(Trimmed(content))});
      continue;
    }
    const bool blank = content.empty();
    if (blank) line.text = {};
    if (!std::exchange(after_blank_, blank) || !blank) return true;
  }
  return false;
}

/// A line that goes on in other blocks, or the last one.
bool LineReader::JoinLine(std::string_view& text) {
  joined_ = rest_;
  bool is_whole = false;
  while (!is_whole) {
    bytes_.NextBlock();
    rest_ = bytes_.block();
    ends_ = kUnknownEnds;
    if (rest_.empty()) break;
    is_whole = CutLine(text);
    const std::string_view part = is_whole ? text : rest_;
    if (joined_.size() + part.size() > kLongestLine) {
      throw DataError({file(), number_},
                      "the line is longer than 1 MiB; a table has one site on a line");
    }
    joined_ += part;
  }
  text = joined_;
  return is_whole || !text.empty();
}

}  // namespace discoplan::data
