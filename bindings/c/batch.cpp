// SPDX-License-Identifier: MIT
#include <limits>

#include "bindings/c/arguments.h"
#include "bindings/c/drawing.h"
#include "bindings/c/sample_reader.h"
#include "discoplan/analysis/figures_of_merit.h"

using namespace discoplan;
using namespace discoplan::c;

namespace {

/// Pieces behind each other, and where each begins.
template <class T>
class Pieces {
 public:
  void Expect(std::size_t pieces) { offsets_.reserve(pieces + 1); }
  template <class Piece>
  void Add(const Piece& piece) {
    content_.insert(content_.end(), piece.begin(), piece.end());
    offsets_.push_back(static_cast<std::int64_t>(content_.size()));
  }
  const T* Content() const { return content_.data(); }
  const std::int64_t* Offsets() const { return offsets_.data(); }

 private:
  std::vector<T> content_;
  std::vector<std::int64_t> offsets_ = {0};
};

class BatchResult final : public Held {
 public:
  static constexpr Kind kKind = Kind::Result;
  using Handle = discoplan_result;

  explicit BatchResult(std::int64_t wafers)
      : Held(kKind),
        wafers_(static_cast<std::size_t>(wafers)),
        statistics_(wafers_ * analysis::FiguresOfMerit().size(),
                    std::numeric_limits<double>::quiet_NaN()) {
    statuses_.reserve(wafers_);
    pictures_.Expect(wafers_);
    messages_.Expect(wafers_);
  }

  void Set(const analysis::Sample& sample, FigureMask wanted) {
    ComputeFigures(sample, wanted, &statistics_[statuses_.size()], wafers_);
  }
  void Finish(discoplan_status status, std::span<const std::uint8_t> file,
              std::string_view message) {
    statuses_.push_back(status);
    pictures_.Add(file);
    messages_.Add(message);
  }
  discoplan_result_view View() const {
    return {.size = 0,
            .reserved = 0,
            .wafers = static_cast<std::int64_t>(wafers_),
            .figures = static_cast<std::int64_t>(analysis::FiguresOfMerit().size()),
            .statuses = statuses_.data(),
            .statistics = statistics_.data(),
            .pictures = pictures_.Content(),
            .picture_offsets = pictures_.Offsets(),
            .messages = messages_.Content(),
            .message_offsets = messages_.Offsets()};
  }

 private:
  std::size_t wafers_;
  std::vector<discoplan_status> statuses_;
  std::vector<double> statistics_;
  Pieces<std::uint8_t> pictures_;
  Pieces<char> messages_;
};

/// What a wafer came to, beside its figures.
struct Outcome {
  std::vector<std::uint8_t> file;
  std::string remark;  ///< on a wafer that was taken
};

/// The batch, checked as far as it is the same for all wafers.
class Batch {
 public:
  explicit Batch(const discoplan_batch& batch)
      : wafers_(Counted(batch)),
        sites_{.size = sizeof(discoplan_sites),
               .reserved = 0,
               .count = batch.count,
               .x = batch.x,
               .y = batch.y,
               .value = batch.value},
        offsets_(batch.offsets32, batch.offsets64, wafers_, batch.count),
        wafer_(Taken(batch.wafer, "discoplan_wafer_options")),
        format_(FormatOf(batch.format)),
        figures_(FiguresOf(batch.figures)),
        reader_(sites_, wafer_) {
    if (batch.plot != nullptr) drawing_ = DrawingOf(Taken(batch.plot, "discoplan_plot_options"));
    if (batch.names == nullptr) return;
    names_ = batch.names;
    name_offsets_.emplace(batch.name_offsets32, batch.name_offsets64, wafers_,
                          std::numeric_limits<std::int64_t>::max());
  }

  std::shared_ptr<BatchResult> Run() {
    auto result = std::make_shared<BatchResult>(wafers_);
    for (std::int64_t i = 0; i < wafers_; ++i) {
      Outcome outcome;
      const discoplan_status status = Guarded([&] { Do(i, *result, outcome); });
      if (status == DISCOPLAN_NO_MEMORY) throw std::bad_alloc();
      result->Finish(status, outcome.file,
                     status == DISCOPLAN_OK ? outcome.remark : std::string_view(LastError()));
    }
    return result;
  }

 private:
  static std::int64_t Counted(const discoplan_batch& batch) {
    if (batch.wafers < 0 || batch.count < 0) Refuse("batch: its counts are negative");
    return batch.wafers;
  }

  void Do(std::int64_t i, BatchResult& result, Outcome& outcome) {
    const std::int64_t begin = offsets_[i];
    const std::int64_t end = offsets_[i + 1];
    if (!drawing_) {
      if (const analysis::Sample* const sample = reader_.Read(begin, end)) {
        result.Set(*sample, figures_);
        return;
      }
    }
    std::string name = TextOr(wafer_.name);
    if (name_offsets_) {
      const std::int64_t first = (*name_offsets_)[i];
      name.assign(names_ + first, static_cast<std::size_t>((*name_offsets_)[i + 1] - first));
    }
    discoplan_wafer_options options = wafer_;
    options.name = name.c_str();
    const auto wafer = NewWafer(sites_, begin, end, options);
    result.Set(analysis::Sample(wafer->Sites()), figures_);
    if (drawing_) outcome.file = DrawnFile(wafer, *drawing_, format_);
    outcome.remark = wafer->Remark();
  }

  std::int64_t wafers_;
  discoplan_sites sites_;
  Offsets offsets_;
  discoplan_wafer_options wafer_;
  FigureFormat format_;
  FigureMask figures_;
  SampleReader reader_;
  std::optional<Drawing> drawing_;
  const char* names_ = nullptr;
  std::optional<Offsets> name_offsets_;
};

}  // namespace

discoplan_status discoplan_batch_run(const discoplan_batch* batch, discoplan_result** result) {
  return HandedOut<BatchResult>(
      result, [&] { return Batch(Taken(&Needed(batch, "batch"), "discoplan_batch")).Run(); });
}

discoplan_status discoplan_result_get(discoplan_result* result, discoplan_result_view* view) {
  return Guarded([&] { Give(view, "discoplan_result_view", Get<BatchResult>(result)->View()); });
}
