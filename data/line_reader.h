// SPDX-License-Identifier: MIT
#pragma once

/// A data file as blocks of bytes and as lines of text, read from front to back, once.

#include <array>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/utf16.h"

namespace discoplan::data {

/// A file in blocks of about 64 KiB; UTF-16 comes as UTF-8. Throws `DataError` if the file is
/// missing, a folder or unreadable.
class FileBytes {
 public:
  explicit FileBytes(const std::filesystem::path& path);
  /// Reads an open stream, which `file` names in messages. It must outlive this.
  FileBytes(std::string file, std::istream& stream);

  const std::string& file() const { return file_; }
  /// The current block, at first the first one; empty at the end of the file.
  std::string_view block() const { return block_; }
  void NextBlock();

 private:
  void ReadBytes();
  void BeginUtf16();

  std::string file_;
  std::ifstream opened_;
  std::istream& stream_;
  std::string block_;
  std::string bytes_;  // of UTF-16
  std::optional<Utf16Decoder> decoder_;
};

struct TextLine {
  std::int64_t number = 0;  ///< from 1
  std::string_view text;    ///< without its end; it holds until the next line is read
};

/// The lines of a text, ended by LF, CRLF or CR. A byte order mark and lines that start with '#'
/// are left out; lines of blanks come as an empty line, several of them as one. A line of more than
/// 1 MiB is a `DataError`.
class LineReader {
 public:
  /// Goes on from the current block of `bytes`.
  explicit LineReader(FileBytes& bytes);

  const std::string& file() const { return bytes_.file(); }
  static constexpr std::size_t kLinesAhead = 100;
  /// The first lines, `kLinesAhead` of them or all; they stay in line to be read, and hold until
  /// then.
  const std::deque<TextLine>& Ahead();

  struct Comment {
    std::int64_t number = 0;
    std::string text;  ///< behind the signs
  };
  /// The comments among the lines that `Ahead` has read; of more than 1 MiB, the last ones.
  const std::deque<Comment>& Comments() const { return comments_; }
  /// Has `tell` told of those behind them, as `Next` passes over them.
  void TellComments(std::function<void(const Comment&)> tell) { tell_ = std::move(tell); }
  /// Reads the next line; false at the end.
  bool Next(TextLine& line);

 private:
  struct NextEnd {
    char mark;
    std::size_t from_back;  // what is left of the block from there on
  };
  static constexpr std::size_t kUnknown = static_cast<std::size_t>(-1);
  static constexpr std::array<NextEnd, 2> kUnknownEnds = {{{'\n', kUnknown}, {'\r', kUnknown}}};

  bool ReadLine(TextLine& line);
  void KeepComment(const Comment& comment);
  std::size_t LineLength();
  bool CutLine(std::string_view& text);
  bool JoinLine(std::string_view& text);
  bool ReadRaw(std::string_view& text);

  FileBytes& bytes_;
  std::string_view rest_;
  std::int64_t number_ = 0;
  std::array<NextEnd, 2> ends_ = kUnknownEnds;
  bool after_cr_ = false;
  bool after_blank_ = false;
  std::string joined_;  // a line whose parts lie in several blocks
  std::deque<TextLine> ahead_;
  std::deque<std::string> ahead_texts_;
  std::deque<Comment> comments_;
  std::size_t comment_bytes_ = 0;
  std::function<void(const Comment&)> tell_;
};

}  // namespace discoplan::data
