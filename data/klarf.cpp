// SPDX-License-Identifier: MIT
#include "data/klarf.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "data/left_out.h"
#include "data/site_rows.h"
#include "data/utf16.h"
#include "data/wafer_choice.h"
#include "discoplan/base/numbers.h"

namespace discoplan::data {
namespace {

constexpr double kMicrometre = 1e-3;
constexpr std::string_view kMendOrSkip = "mend the value or use --skip-invalid";

/// The words of a line; a text in quotes is one, without them. A semicolon is a word of its own.
std::vector<std::string_view> WordsOf(std::string_view line) {
  std::vector<std::string_view> words;
  for (std::size_t at = 0; at < line.size();) {
    if (line[at] == ' ' || line[at] == '\t' || line[at] == '\f') {
      ++at;
      continue;
    }
    std::size_t end = at + 1;
    if (line[at] == '"') {
      end = std::min(line.find('"', end), line.size());
      words.push_back(line.substr(at + 1, end - at - 1));
      at = std::min(end + 1, line.size());
      continue;
    }
    if (line[at] != ';') end = std::min(line.find_first_of(" \t\f;\"", at), line.size());
    words.push_back(line.substr(at, end - at));
    at = end;
  }
  return words;
}

/// The places of the fields that a position is made of.
enum PositionField { kXRel, kYRel, kXIndex, kYIndex, kPositionFields };
constexpr std::array<std::string_view, kPositionFields> kPositionNames = {"XREL", "YREL", "XINDEX",
                                                                          "YINDEX"};
constexpr std::array<std::string_view, 3> kUsualValues = {"DSIZE", "DEFECTAREA", "CLASSNUMBER"};

std::string UnitOf(std::string_view field) {
  if (SameName(field, "DEFECTAREA")) return "\xC2\xB5m\xC2\xB2";
  for (const std::string_view length : {"DSIZE", "XSIZE", "YSIZE", "XREL", "YREL"}) {
    if (SameName(field, length)) return "\xC2\xB5m";
  }
  return {};
}

class KlarfReader {
 public:
  KlarfReader(const ReadRequest& request, LineReader& lines)
      : request_(request), lines_(lines), choice_(request.wafers, lines.file()) {
    lot_.kind = FileKind::Defects;
  }

  Lot Read();

 private:
  using Words = std::vector<std::string>;

  void RefuseUnfit() const;
  void TakeWords(const TextLine& line);
  void TakeStatement();
  void CheckVersion() const;
  void TellOfOrientation();
  void TakeSpec();
  void BeginWafer();
  void EndWafer();
  void TakeDefect(const std::vector<std::string_view>& words);
  void AddDefect(const std::vector<std::string_view>& words);
  std::optional<double> Field(const std::vector<std::string_view>& words, std::size_t column);
  double Number(std::size_t word) const;
  std::array<double, 2> Pair() const { return {Number(1), Number(2)}; }
  bool IsChosen();
  std::optional<std::size_t> FindField(std::string_view name) const;
  std::size_t FieldOf(std::string_view name) const;
  [[noreturn]] void Refuse(const std::string& sentence) const {
    throw DataError({lines_.file(), line_}, sentence);
  }

  const ReadRequest& request_;
  LineReader& lines_;
  WaferChoice choice_;
  Lot lot_;
  std::int64_t line_ = 0;
  Words statement_;
  Words fields_;
  std::array<std::size_t, kPositionFields> positions_{};
  std::vector<std::size_t> values_;
  std::optional<std::size_t> image_count_;
  std::size_t fewest_ = 0;  // words of a defect
  bool images_last_ = false;
  Condition condition_;
  bool in_list_ = false;
  double images_due_ = 0;
  std::optional<std::array<double, 2>> pitch_, centre_;
  std::optional<double> diameter_;
  Wafer wafer_;
  std::vector<Wafer> current_;
  std::optional<bool> chosen_;
  std::vector<std::vector<Wafer>> wafers_;  // of each parameter
  bool ended_ = false;
};

void KlarfReader::RefuseUnfit() const {
  struct Unfit {
    bool given;
    const char* option;
  };
  const Unfit unfits[] = {{request_.pitch.has_value(), "--pitch"},
                          {request_.unit.has_value(), "--unit"},
                          {request_.origin != Origin::Centre, "--origin"},
                          {!request_.columns.empty(), "--columns"},
                          {!request_.by.empty(), "--by"}};
  for (const Unfit& unfit : unfits) {
    if (!unfit.given) continue;
    throw DataError({lines_.file()},
                    "a KLARF says itself where its defects lie and on which wafer; leave out " +
                        std::string(unfit.option));
  }
}

void KlarfReader::TakeWords(const TextLine& line) {
  line_ = line.number;
  std::vector<std::string_view> defect;
  for (const std::string_view word : WordsOf(line.text)) {
    const bool ends = word == ";";
    if (in_list_) {
      if (!ends) {
        defect.push_back(word);
        continue;
      }
      TakeDefect(defect);
      defect.clear();
      in_list_ = false;
    } else if (ends) {
      TakeStatement();
      statement_.clear();
    } else {
      statement_.emplace_back(word);
      if (statement_.size() == 1 && SameName(word, "DefectList")) {
        if (fields_.empty()) Refuse("a DefectList stands above its DefectRecordSpec; put it below");
        if (!pitch_ || !centre_) {
          Refuse(
              "there is no DiePitch or no SampleCenterLocation above the defects, "
              "so that nobody knows where they lie; add them");
        }
        in_list_ = true;
        images_due_ = 0;
        statement_.clear();
      }
    }
  }
  if (in_list_) TakeDefect(defect);
}

double KlarfReader::Number(std::size_t word) const {
  if (word >= statement_.size()) Refuse(statement_[0] + " has too few numbers; complete it");
  const ParsedNumber number = ParseNumber(statement_[word]);
  if (number.fault != NumberFault::None) {
    Refuse(FaultSentence(number.fault, statement_[word], "mend the value"));
  }
  return number.value;
}

void KlarfReader::CheckVersion() const {
  if (Number(1) == 1 && Number(2) <= 2) return;
  Refuse("this is KLARF " + Printable(statement_[1] + '.' + statement_[2]) + "; save it as 1.2");
}

void KlarfReader::TakeStatement() {
  if (statement_.empty()) return;
  const std::string& name = statement_[0];
  if (ParseNumber(name).fault == NumberFault::None) {
    Refuse("a row of numbers stands outside of all lists; remove the semicolon that ends its list");
  }
  if (SameName(name, "FileVersion")) return CheckVersion();
  if (SameName(name, "DefectRecordSpec")) return TakeSpec();
  if (SameName(name, "WaferID")) return BeginWafer();
  if (SameName(name, "DiePitch")) {
    pitch_ = Pair();
    if (!((*pitch_)[0] > 0 && (*pitch_)[1] > 0)) {
      Refuse("DiePitch isn't two positive numbers; save the file again");
    }
  }
  if (SameName(name, "SampleCenterLocation")) centre_ = Pair();
  if (SameName(name, "EndOfFile")) ended_ = true;
  if (SameName(name, "SampleSize") && Number(1) == 1) {
    diameter_ = Number(2);
    if (!(*diameter_ > 0)) Refuse("SampleSize isn't positive; mend it");
  }
  TellOfOrientation();
  if (SameName(name, "DieOrigin") && (Number(1) != 0 || Number(2) != 0)) {
    Refuse("DieOrigin isn't 0 0; save the positions from the lower left corner of their dies");
  }
  if (SameName(name, "Slot")) {
    const double slot = Number(1);
    if (slot < 0 || slot > 9999 || slot != ToInt32(slot)) {
      Refuse(Shown(statement_[1]) + " is no slot; write a whole number");
    }
    wafer_.slot = ToInt32(slot);
  }
}

/// Positions stay as they are.
void KlarfReader::TellOfOrientation() {
  const std::string value = statement_.size() > 1 ? statement_[1] : "";
  const auto warn = [&](const std::string& text) {
    auto& warnings = lot_.warnings;
    const std::string warning = statement_[0] + " is " + Printable(Utf8(value)) + text;
    if (std::find(warnings.begin(), warnings.end(), warning) == warnings.end()) {
      warnings.push_back(warning);
    }
  };
  if (SameName(statement_[0], "OrientationMarkLocation") && !SameName(value, "DOWN")) {
    warn(", and the mark of a plot is at the bottom unless it is set elsewhere");
  }
  if (SameName(statement_[0], "CoordinatesMirrored") && SameName(value, "YES")) {
    warn("; the defects are shown as the file has them");
  }
}

std::optional<std::size_t> KlarfReader::FindField(std::string_view name) const {
  if (SameName(name, "DEFECTSIZE")) name = "DSIZE";
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (SameName(fields_[i], name)) return i;
  }
  return {};
}

std::size_t KlarfReader::FieldOf(std::string_view name) const {
  const auto field = FindField(name);
  if (field) return *field;
  std::vector<std::string> shown;
  for (const std::string& other : fields_) shown.push_back(Shown(other));
  Refuse("there is no field " + Shown(name) + "; choose from " + Listed(shown));
}

void KlarfReader::TakeSpec() {
  const double count = Number(1);
  if (!fields_.empty()) {
    if (Words(statement_.begin() + 2, statement_.end()) == fields_) return;
    Refuse("a second DefectRecordSpec has other fields; split the file");
  }
  if (count != static_cast<double>(statement_.size() - 2)) {
    Refuse("DefectRecordSpec announces " + Printable(statement_[1]) + " fields and names " +
           std::to_string(statement_.size() - 2) + "; mend it");
  }
  fields_.assign(statement_.begin() + 2, statement_.end());
  for (std::size_t i = 0; i < positions_.size(); ++i) positions_[i] = FieldOf(kPositionNames[i]);
  images_last_ = SameName(fields_.back(), "IMAGELIST");
  fewest_ = fields_.size() - (images_last_ ? 1 : 0);
  image_count_ = FindField("IMAGECOUNT");
  const bool all = std::any_of(request_.parameters.begin(), request_.parameters.end(),
                               [](const std::string& entry) { return SameName(entry, "all"); });
  if (all) {
    for (const std::string_view name : kUsualValues) {
      if (const auto field = FindField(name)) values_.push_back(*field);
    }
  } else {
    for (const std::string& entry : request_.parameters) values_.push_back(FieldOf(entry));
  }
  for (std::size_t i = 0; values_.empty() && i < kUsualValues.size(); ++i) {
    if (const auto field = FindField(kUsualValues[i])) values_.push_back(*field);
  }
  if (values_.empty()) FieldOf(kUsualValues[0]);
  for (const std::size_t field : values_) {
    if (field >= fewest_) Refuse(Shown(fields_[field]) + " is no number; choose another field");
    lot_.parameters.push_back({Utf8(fields_[field]), UnitOf(fields_[field])});
  }
  wafers_.resize(values_.size());
  if (request_.where.empty()) return;
  condition_ = Condition(
      request_.where, {FieldNames(fields_.begin(), fields_.end()), true, {lines_.file(), line_}});
}

void KlarfReader::BeginWafer() {
  EndWafer();
  wafer_ = {};
  if (statement_.size() > 1) wafer_.name = Utf8(statement_[1]);
}

void KlarfReader::EndWafer() {
  for (std::size_t i = 0; i < current_.size(); ++i) {
    if (!current_[i].x.empty()) wafers_[i].push_back(std::move(current_[i]));
  }
  current_.clear();
  chosen_.reset();
}

bool KlarfReader::IsChosen() {
  if (chosen_) return *chosen_;
  if (wafer_.name.empty()) wafer_.name = request_.path.stem().string();
  wafer_.diameter = static_cast<float>(diameter_.value_or(0));
  chosen_ = choice_.Takes(wafer_.name, wafer_.slot);
  if (*chosen_) current_.assign(values_.size(), wafer_);
  for (std::size_t i = 0; i < current_.size(); ++i) current_[i].parameter = i;
  return *chosen_;
}

/// A defect is one line; its images may stand on further ones.
void KlarfReader::TakeDefect(const std::vector<std::string_view>& words) {
  if (words.empty()) return;
  if (words.size() < fewest_ && images_due_ > 0) {
    images_due_ -= static_cast<double>(words.size());
    return;
  }
  if (words.size() < fewest_ || (!images_last_ && words.size() > fewest_)) {
    if (words.size() < fewest_ && request_.skip_invalid) {
      return CountSkipped(Reason::TooFewColumns, line_, lot_.skipped);
    }
    Refuse(Counted(words.size(), "field") + " where DefectRecordSpec names " +
           std::to_string(fields_.size()) + "; mend the line or the DefectRecordSpec");
  }
  const auto images = image_count_ ? ParseNumber(words[*image_count_]).value : 0;
  images_due_ = 2 * images - static_cast<double>(words.size() - fewest_);
  if (IsChosen()) AddDefect(words);
}

std::optional<double> KlarfReader::Field(const std::vector<std::string_view>& words,
                                         std::size_t column) {
  const ParsedNumber number = ParseNumber(words[column]);
  if (number.fault == NumberFault::None) return number.value;
  if (!request_.skip_invalid) {
    throw DataError({lines_.file(), line_, static_cast<std::int64_t>(column) + 1},
                    FaultSentence(number.fault, words[column], kMendOrSkip));
  }
  const Reason reason = number.fault == NumberFault::Text ? Reason::Text : Reason::NotFinite;
  CountSkipped(reason, line_, lot_.skipped);
  for (Wafer& wafer : current_) Count(reason, wafer.left_out);
  return {};
}

void KlarfReader::AddDefect(const std::vector<std::string_view>& words) {
  Condition::Fault fault;
  if (!condition_.Holds(words, fault)) {
    if (fault.fault != NumberFault::None) {
      Field(words, fault.column);
      return;
    }
    for (Wafer& wafer : current_) Count(Reason::NotAskedFor, wafer.left_out);
    return;
  }
  std::array<double, kPositionFields> place{};
  for (std::size_t i = 0; i < place.size(); ++i) {
    const auto number = Field(words, positions_[i]);
    if (!number) return;
    place[i] = *number;
  }
  float x = 0;
  float y = 0;
  const bool fits = Attempt([&] {
    x = ToFloat((place[kXIndex] * (*pitch_)[0] + place[kXRel] - (*centre_)[0]) * kMicrometre);
    y = ToFloat((place[kYIndex] * (*pitch_)[1] + place[kYRel] - (*centre_)[1]) * kMicrometre);
  });
  if (!fits) Refuse("the defect lies beyond all 32-bit floats; mend its position");
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const auto value = Field(words, values_[i]);
    if (!value) continue;
    current_[i].x.push_back(x);
    current_[i].y.push_back(y);
    current_[i].value.push_back(static_cast<float>(*value));
  }
}

Lot KlarfReader::Read() {
  RefuseUnfit();
  TextLine line;
  while (!ended_ && lines_.Next(line)) TakeWords(line);
  EndWafer();
  line_ = 0;
  // The last semicolon is no matter.
  if (!ended_ && (statement_.empty() || !SameName(statement_[0], "EndOfFile")))
    Refuse("the file ends without EndOfFile, so that a part of it is missing; save it again");
  choice_.RequireAll();
  for (std::vector<Wafer>& wafers : wafers_) {
    for (Wafer& wafer : wafers) lot_.wafers.push_back(std::move(wafer));
  }
  if (lot_.wafers.empty() && request_.where.empty()) {
    Refuse("no defect is left; choose another file or wafer");
  }
  return std::move(lot_);
}

std::string_view FirstText(LineReader& lines) {
  for (const TextLine& line : lines.Ahead()) {
    if (!line.text.empty()) return Trimmed(line.text);
  }
  return {};
}

bool BeginsWith(std::string_view text, std::string_view words) {
  return SameName(text.substr(0, words.size()), words);
}

}  // namespace

bool IsKlarf(LineReader& lines) {
  const std::string_view first = FirstText(lines);
  if (BeginsWith(first, "FileVersion ") || BeginsWith(first, "Record FileRecord")) return true;
  const auto& ahead = lines.Ahead();
  return std::any_of(ahead.begin(), ahead.end(), [](const TextLine& line) {
    return BeginsWith(Trimmed(line.text), "DefectRecordSpec ");
  });
}

Lot ReadKlarf(const ReadRequest& request, LineReader& lines, PositionScale& scale) {
  if (BeginsWith(FirstText(lines), "Record FileRecord")) {
    throw DataError({lines.file(), lines.Ahead().front().number},
                    "this is KLARF 1.8 or newer; save it as 1.2");
  }
  if (!BeginsWith(FirstText(lines), "FileVersion ")) {
    throw DataError(
        {lines.file(), lines.Ahead().front().number},
        "this is a KLARF that doesn't begin with its FileVersion; save it again as 1.2");
  }
  scale.stated = true;
  return KlarfReader(request, lines).Read();
}

}  // namespace discoplan::data
