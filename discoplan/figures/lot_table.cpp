// SPDX-License-Identifier: MIT
#include <algorithm>

#include "discoplan/figures/lot_parts.h"

namespace discoplan::figures {
namespace {

using Row = LotTable::Row;

/// Rows below their titles, the first column from the left, the others from the right.
class Table {
 public:
  Table(Page& page, const LotTable& table, std::vector<Row> rows)
      : page_(page),
        titles_(table.titles),
        rows_(std::move(rows)),
        gap_(1.1 * page.Em()),
        size_(0.92 * page.Em()) {
    Measure();
  }

  double Width() const {
    double sum = gap_ * static_cast<double>(widths_.size() - 1);
    for (const double width : widths_) sum += width;
    return sum;
  }

  /// Size of letters in which that many rows fit.
  double LettersIn(double width, double height, std::size_t rows) const {
    const double gaps = gap_ * static_cast<double>(widths_.size() - 1);
    return std::min(size_ * std::min(1.0, (width - gaps) / (Width() - gaps)),
                    PitchIn(height, rows) / kLeading);
  }

  /// With room for that many rows.
  void Draw(const Box& box, std::size_t rows) {
    pitch_ = PitchIn(box.Height(), rows);
    size_ = std::min(size_, pitch_ / kLeading);
    Measure();
    if (Width() > box.Width() && !Squeeze(box.Width())) return;
    const auto between = static_cast<double>(std::max<std::size_t>(widths_.size() - 1, 1));
    spread_ = std::min(2 * gap_, gap_ + (box.Width() - Width()) / between);
    left_ = box.left;
    y_ = box.top + pitch_ / 2;
    Write({.texts = titles_}, true);
    Rule();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      if (rows_[i].total && i > 0 && !rows_[i - 1].total) Rule();
      Write(rows_[i], rows_[i].total);
    }
  }

 private:
  static constexpr double kLeading = 1.15;

  double PitchIn(double height, std::size_t rows) const {
    return std::min(1.5 * page_.Em(), height / (static_cast<double>(rows) + 1.6));
  }

  void Measure() {
    widths_.assign(titles_.size(), 0);
    for (std::size_t k = 0; k < titles_.size(); ++k) {
      widths_[k] = page_.Width(titles_[k], size_, true);
      for (const Row& row : rows_) {
        if (k < row.texts.size() && !RunsOver(row, k)) {
          widths_[k] = std::max(widths_[k], page_.Width(row.texts[k], size_, row.total));
        }
      }
    }
  }

  /// A total's name, and the first of its figures, share the columns that it leaves empty.
  static bool RunsOver(const Row& row, std::size_t column) {
    if (!row.total || row.texts.size() < 2 || !row.texts[1].empty()) return false;
    return column == 0 || row.texts[column - 1].empty();
  }

  /// Long names give way first, by what they have in common and then by their ends; then letters.
  bool Squeeze(double width) {
    std::vector<std::string> names;
    for (const Row& row : rows_) {
      if (!row.total) names.push_back(row.texts[0]);
    }
    const std::size_t common = CommonBeginning(names);
    for (Row& row : rows_) {
      for (std::string& text : row.texts) {
        const bool is_name = std::find(names.begin(), names.end(), text) != names.end();
        if (is_name) text = WithoutBeginning(text, common);
      }
    }
    Measure();
    const double over = Width() - width;
    if (over > 0) widths_[0] = std::max(widths_[0] - over, std::min(widths_[0], 6 * size_));
    if (Width() <= width) return true;
    const double gaps = gap_ * static_cast<double>(widths_.size() - 1);
    const double part = (width - gaps) / (Width() - gaps);
    if (part < 0.4) return false;
    for (double& one : widths_) one *= part;
    size_ *= part;
    return true;
  }

  void Write(const Row& row, bool bold) {
    const Rgba ink = row.flagged ? page_.Ink().accent : page_.Ink().text;
    double left = left_;
    double shared = 0;  // of a total's name and first figure
    for (std::size_t k = 0; k < std::min(widths_.size(), row.texts.size()); ++k) {
      const double right = left + widths_[k];
      double room = widths_[k];
      if (RunsOver(row, k)) {
        if (k == 0) {
          std::size_t figure = 1;
          double end = right;
          do {
            end += spread_ + widths_[figure];
          } while (row.texts[figure].empty() && ++figure < row.texts.size());
          const double whole = end - left_ - gap_;
          const double own =
              figure < row.texts.size() ? page_.Width(row.texts[figure], size_, bold) : 0;
          room = whole - std::min(own, whole / 2);
        } else if (!row.texts[k].empty()) {
          room = right - left_ - shared - gap_;
        }
      }
      const std::string shown = page_.Shortened(row.texts[k], room + 0.01, size_, bold);
      if (k == 0) shared = page_.Width(shown, size_, bold);
      if (!shown.empty()) {
        page_.Put({.text = shown, .size = size_, .bold = bold, .colour = ink},
                  {k == 0 ? left : right, y_}, k == 0 ? Align::Start : Align::End);
      }
      left = right + spread_;
    }
    y_ += pitch_;
  }

  void Rule() {
    const double right =
        left_ + Width() + (spread_ - gap_) * static_cast<double>(widths_.size() - 1);
    const double at = y_ - 0.4 * pitch_;
    page_.Line({left_, at}, {right, at}, page_.Ink().soft, page_.Hair());
    y_ += 0.3 * pitch_;
  }

  Page& page_;
  std::vector<std::string> titles_;
  std::vector<Row> rows_;
  std::vector<double> widths_ = {};
  double gap_;
  double size_;
  double pitch_ = 0;
  double spread_ = 0;
  double left_ = 0;
  double y_ = 0;
};

}  // namespace

std::size_t CommonBeginning(const std::vector<std::string>& names) {
  if (names.size() < 2) return 0;
  std::size_t common = names[0].size();
  for (const std::string& name : names) {
    const auto end = static_cast<std::ptrdiff_t>(std::min(common, name.size()));
    common = static_cast<std::size_t>(
        std::mismatch(name.begin(), name.begin() + end, names[0].begin()).first - name.begin());
  }
  // Numbers and words stay whole.
  const std::size_t separator = names[0].substr(0, common).find_last_of("-_./: ");
  return separator == std::string::npos ? 0 : separator + 1;
}

std::string WithoutBeginning(const std::string& name, std::size_t common) {
  return common > 0 && common < name.size() ? "\u2026" + name.substr(common) : name;
}

void DrawTable(Page& page, const Box& box, const LotPlot& lot, std::size_t first, std::size_t end) {
  if (lot.table.titles.empty()) return;
  std::vector<Row> rows;
  for (std::size_t i = 0; i < lot.table.rows.size(); ++i) {
    const Row& row = lot.table.rows[i];
    if ((row.total || (i >= first && i < end)) && !row.texts.empty()) rows.push_back(row);
  }
  if (rows.empty()) return;
  // Beside one another where they would become small below one another.
  const Table whole(page, lot.table, rows);
  const double between = 2 * page.Em();
  std::size_t parts = 1;
  double part_width = box.Width();
  for (const std::size_t more : {2U, 3U}) {
    const auto count = static_cast<double>(more);
    const double width = (box.Width() - (count - 1) * between) / count;
    if (whole.LettersIn(width, box.Height(), (rows.size() + more - 1) / more) >
        1.05 * whole.LettersIn(part_width, box.Height(), (rows.size() + parts - 1) / parts)) {
      parts = more;
      part_width = width;
    }
  }
  const std::size_t most = (rows.size() + parts - 1) / parts;
  double left = box.left;
  for (std::size_t from = 0; from < rows.size(); from += most) {
    const auto begin = rows.begin() + static_cast<std::ptrdiff_t>(from);
    const auto to = rows.begin() + static_cast<std::ptrdiff_t>(std::min(from + most, rows.size()));
    Table(page, lot.table, {begin, to}).Draw({left, box.top, left + part_width, box.bottom}, most);
    left += part_width + between;
  }
}

}  // namespace discoplan::figures
