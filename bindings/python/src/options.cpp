// SPDX-License-Identifier: MIT
#include "bindings/python/src/options.h"

#include <cstring>
#include <limits>

namespace discoplan::python {
namespace {

using enum Field::Type;

#define DISCOPLAN_FIELD(options, name, type) \
  Field { #name, type, offsetof(options, name) }

constexpr Field kWaferFields[] = {
    DISCOPLAN_FIELD(discoplan_wafer_options, skip_invalid, Whole),
    DISCOPLAN_FIELD(discoplan_wafer_options, diameter, Number),
    DISCOPLAN_FIELD(discoplan_wafer_options, test_diameter, Number),
    DISCOPLAN_FIELD(discoplan_wafer_options, name, Text),
    DISCOPLAN_FIELD(discoplan_wafer_options, quantity, Text),
    DISCOPLAN_FIELD(discoplan_wafer_options, unit, Text),
    DISCOPLAN_FIELD(discoplan_wafer_options, orientation, Whole),
    DISCOPLAN_FIELD(discoplan_wafer_options, notch_side, Whole),
    DISCOPLAN_FIELD(discoplan_wafer_options, edge_given, Whole),
    DISCOPLAN_FIELD(discoplan_wafer_options, edge_exclusion, Number),
};

constexpr Field kReadFields[] = {
    DISCOPLAN_FIELD(discoplan_read_options, skip_invalid, Whole),
    DISCOPLAN_FIELD(discoplan_read_options, columns, Text),
    DISCOPLAN_FIELD(discoplan_read_options, parameters, Text),
    DISCOPLAN_FIELD(discoplan_read_options, by, Text),
    DISCOPLAN_FIELD(discoplan_read_options, wafers, Text),
    DISCOPLAN_FIELD(discoplan_read_options, where, Text),
    DISCOPLAN_FIELD(discoplan_read_options, unit, Text),
    DISCOPLAN_FIELD(discoplan_read_options, corner, Whole),
    DISCOPLAN_FIELD(discoplan_read_options, thin, Whole),
    DISCOPLAN_FIELD(discoplan_read_options, diameter, Number),
    DISCOPLAN_FIELD(discoplan_read_options, test_diameter, Number),
    DISCOPLAN_FIELD(discoplan_read_options, edge_given, Whole),
    DISCOPLAN_FIELD(discoplan_read_options, edge_exclusion, Number),
    DISCOPLAN_FIELD(discoplan_read_options, pitch_width, Number),
    DISCOPLAN_FIELD(discoplan_read_options, pitch_height, Number),
    DISCOPLAN_FIELD(discoplan_read_options, value_unit, Text),
    DISCOPLAN_FIELD(discoplan_read_options, drop_outliers, Text),
    DISCOPLAN_FIELD(discoplan_read_options, sites, Whole),
};

constexpr Field kPlotFields[] = {
    DISCOPLAN_FIELD(discoplan_plot_options, look, Whole),
    DISCOPLAN_FIELD(discoplan_plot_options, kind, Text),
    DISCOPLAN_FIELD(discoplan_plot_options, flags, Whole),
    DISCOPLAN_FIELD(discoplan_plot_options, bands, Whole),
    DISCOPLAN_FIELD(discoplan_plot_options, width, Whole),
    DISCOPLAN_FIELD(discoplan_plot_options, height, Whole),
    DISCOPLAN_FIELD(discoplan_plot_options, width_mm, Number),
    DISCOPLAN_FIELD(discoplan_plot_options, height_mm, Number),
    DISCOPLAN_FIELD(discoplan_plot_options, dpi, Number),
    DISCOPLAN_FIELD(discoplan_plot_options, low, Number),
    DISCOPLAN_FIELD(discoplan_plot_options, high, Number),
    DISCOPLAN_FIELD(discoplan_plot_options, colours, Text),
    DISCOPLAN_FIELD(discoplan_plot_options, method, Whole),
    DISCOPLAN_FIELD(discoplan_plot_options, bins, Whole),
    DISCOPLAN_FIELD(discoplan_plot_options, title, Text),
    DISCOPLAN_FIELD(discoplan_plot_options, font, Text),
    DISCOPLAN_FIELD(discoplan_plot_options, font_file, Text),
    DISCOPLAN_FIELD(discoplan_plot_options, bold_font_file, Text),
    DISCOPLAN_FIELD(discoplan_plot_options, sigma_range, Number),
    DISCOPLAN_FIELD(discoplan_plot_options, cut, FourNumbers),
    DISCOPLAN_FIELD(discoplan_plot_options, lower_control, Number),
    DISCOPLAN_FIELD(discoplan_plot_options, upper_control, Number),
};

#undef DISCOPLAN_FIELD

template <class T>
void Put(std::byte* at, const T& value) {
  std::memcpy(at, &value, sizeof value);
}

void PutNumbers(std::byte* at, PyObject* sequence) {
  if (PySequence_Size(sequence) != 4) Raise(PyExc_ValueError, "takes four numbers");
  for (Py_ssize_t i = 0; i < 4; ++i) {
    const Object item(PySequence_GetItem(sequence, i));
    Put(at + static_cast<std::size_t>(i) * sizeof(double), NumberOf(item.Get()));
  }
}

void PutWhole(std::byte* at, PyObject* value, const std::string& name) {
  const std::int64_t number = WholeOf(value);
  if (number != static_cast<std::int32_t>(number)) {
    Raise(PyExc_ValueError, name + " needs more than 32 bits");
  }
  Put(at, static_cast<std::int32_t>(number));
}

[[noreturn]] void Refuse(const std::string& wanted, PyObject* value) {
  Raise(PyExc_TypeError, wanted + ", not " + TypeNameOf(value));
}

}  // namespace

std::span<const Field> FieldsOf(const discoplan_wafer_options*) { return kWaferFields; }
std::span<const Field> FieldsOf(const discoplan_read_options*) { return kReadFields; }
std::span<const Field> FieldsOf(const discoplan_plot_options*) { return kPlotFields; }

void Fill(std::span<const Field> fields, PyObject* key, PyObject* value, std::byte* options,
          std::deque<std::string>& texts) {
  const std::string name = TextOf(key);
  for (const Field& field : fields) {
    if (name != field.name) continue;
    std::byte* const at = options + field.offset;
    switch (field.type) {
      case Whole:
        return PutWhole(at, value, name);
      case Number:
        if (!IsNumber(value)) Refuse(name + " takes a number", value);
        return Put(at, NumberOf(value));
      case Text:
        if (PyUnicode_Check(value) == 0) Refuse(name + " takes a text", value);
        return Put(at, texts.emplace_back(TextOf(value)).c_str());
      case FourNumbers:
        return PutNumbers(at, value);
    }
  }
  Raise(PyExc_TypeError, "there is no option '" + name + "'");
}

}  // namespace discoplan::python
