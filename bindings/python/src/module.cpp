// SPDX-License-Identifier: MIT
// The module `discoplan._core`: the C interface, function by function, for the package around it.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include "bindings/python/src/arrow.h"
#include "bindings/python/src/buffers.h"
#include "bindings/python/src/controls.h"
#include "bindings/python/src/handle.h"
#include "bindings/python/src/options.h"

namespace discoplan::python {
namespace {

Object None() { return Object::Borrowed(Py_None); }

template <class... Objects>
Object Tuple(Objects... objects) {
  Object tuple(PyTuple_New(sizeof...(objects)));
  Py_ssize_t i = 0;
  (PyTuple_SetItem(tuple.Get(), i++, objects.Give()), ...);
  return tuple;
}

Object Whole(std::int64_t number) { return Object(PyLong_FromLongLong(number)); }
Object Number(double number) { return Object(PyFloat_FromDouble(number)); }

/// The handles of a list.
template <class T>
std::vector<T*> Handles(PyObject* list) {
  std::vector<T*> handles;
  for (Py_ssize_t i = 0; i < PyList_Size(list); ++i) {
    handles.push_back(HandleAs<T>(PyList_GetItem(list, i)));
  }
  if (PyErr_Occurred() != nullptr) throw PythonError();
  return handles;
}

Object NewWafer(Arguments args) {
  const Column x(args[0], "x"), y(args[1], "y"), value(args[2], "value");
  RequireEqual({{"x", &x}, {"y", &y}, {"value", &value}});
  const Options<discoplan_wafer_options> options(args[3]);
  const discoplan_sites sites = {sizeof sites, 0, x.Size(), x.Array(), y.Array(), value.Array()};
  discoplan_wafer* wafer = nullptr;
  Unlocked([&] { return discoplan_wafer_new(&sites, options.Get(), &wafer); });
  return NewHandle(wafer);
}

discoplan_wafer_info InfoOf(PyObject* wafer) {
  discoplan_wafer_info info{};
  info.size = sizeof info;
  Check(discoplan_wafer_describe(HandleAs<discoplan_wafer>(wafer), &info));
  return info;
}

Object WaferInfo(Arguments args) {
  const discoplan_wafer_info info = InfoOf(args[0]);
  return Tuple(Whole(info.sites), Whole(info.left_out), Number(info.diameter),
               Number(info.test_diameter), TextObject(info.name), TextObject(info.quantity),
               TextObject(info.unit), TextObject(info.sites_text));
}

Object Copied(const float* numbers, std::int64_t count) {
  NewArray made(static_cast<Py_ssize_t>(count) * static_cast<Py_ssize_t>(sizeof(float)));
  std::copy(numbers, numbers + count, static_cast<float*>(made.Data()));
  return made.View("f");
}

Object WaferSites(Arguments args) {
  auto* const wafer = HandleAs<discoplan_wafer>(args[0]);
  const float *x = nullptr, *y = nullptr, *value = nullptr;
  Check(discoplan_wafer_sites(wafer, &x, &y, &value));
  const std::int64_t count = InfoOf(args[0]).sites;
  return Tuple(Copied(x, count), Copied(y, count), Copied(value, count));
}

Object PackWafer(Arguments args) {
  auto* const wafer = HandleAs<discoplan_wafer>(args[0]);
  std::int64_t count = 0;
  Check(discoplan_wafer_pack(wafer, nullptr, 0, &count));
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(count));
  Check(discoplan_wafer_pack(wafer, bytes.data(), count, &count));
  return Object(PyBytes_FromStringAndSize(reinterpret_cast<const char*>(bytes.data()),
                                          static_cast<Py_ssize_t>(count)));
}

Object UnpackWafer(Arguments args) {
  char* bytes = nullptr;
  Py_ssize_t count = 0;
  if (PyBytes_AsStringAndSize(args[0], &bytes, &count) != 0) throw PythonError();
  discoplan_wafer* wafer = nullptr;
  Check(discoplan_wafer_unpack(reinterpret_cast<const std::uint8_t*>(bytes), count, &wafer));
  return NewHandle(wafer);
}

Object Repeated(Arguments args) {
  const discoplan_wafer_info info = InfoOf(args[0]);
  return Tuple(Whole(info.repeated), Whole(info.may_be_several));
}

std::int64_t FigureCount() {
  std::int64_t count = 0;
  Check(discoplan_figure_count(&count));
  return count;
}

Object Figures(Arguments) {
  Object list(PyList_New(0));
  for (std::int64_t i = 0; i < FigureCount(); ++i) {
    discoplan_figure figure{};
    figure.size = sizeof figure;
    Check(discoplan_figure_describe(i, &figure));
    const Object row =
        Tuple(TextObject(figure.key), TextObject(figure.title), TextObject(figure.formula),
              TextObject(figure.source), Whole(figure.unit));
    if (PyList_Append(list.Get(), row.Get()) < 0) throw PythonError();
  }
  return list;
}

/// wafer, mask of figures
Object Statistics(Arguments args) {
  auto* const wafer = HandleAs<discoplan_wafer>(args[0]);
  const auto wanted = static_cast<std::uint64_t>(WholeOf(args[1]));
  std::vector<double> values(static_cast<std::size_t>(FigureCount()));
  const auto count = static_cast<Py_ssize_t>(values.size());
  Unlocked([&] { return discoplan_wafer_figures(wafer, wanted, values.data(), count); });
  Object tuple(PyTuple_New(count));
  for (Py_ssize_t i = 0; i < count; ++i) {
    const double value = values[static_cast<std::size_t>(i)];
    PyTuple_SetItem(tuple.Get(), i, (std::isnan(value) ? None() : Number(value)).Give());
  }
  return tuple;
}

Object Interpolate(Arguments args) {
  auto* const wafer = HandleAs<discoplan_wafer>(args[0]);
  if (IsNumber(args[1]) && IsNumber(args[2])) {
    const double x = NumberOf(args[1]), y = NumberOf(args[2]);
    const discoplan_array across = {&x, 0, DISCOPLAN_FLOAT64, 0},
                          up = {&y, 0, DISCOPLAN_FLOAT64, 0};
    float value = 0;
    Check(discoplan_wafer_interpolate(wafer, 1, &across, &up, &value));
    return Number(value);
  }
  const Column x(args[1], "x"), y(args[2], "y");
  RequireEqual({{"x", &x}, {"y", &y}});
  NewArray values(static_cast<Py_ssize_t>(x.Size()) * static_cast<Py_ssize_t>(sizeof(float)));
  auto* const made = static_cast<float*>(values.Data());
  Unlocked(
      [&] { return discoplan_wafer_interpolate(wafer, x.Size(), &x.Array(), &y.Array(), made); });
  return values.View("f");
}

/// wafer, columns, rows, method, x0, y0, step
Object Lattice(Arguments args) {
  auto* const wafer = HandleAs<discoplan_wafer>(args[0]);
  const std::int64_t columns = WholeOf(args[1]), rows = WholeOf(args[2]);
  if (columns < 1 || rows < 1 || columns > 20000 || rows > 20000) {
    Raise(PyExc_ValueError, "a lattice has 1 to 20000 columns and rows");
  }
  const discoplan_lattice lattice = {sizeof lattice,
                                     static_cast<std::int32_t>(columns),
                                     static_cast<std::int32_t>(rows),
                                     static_cast<std::int32_t>(WholeOf(args[3])),
                                     NumberOf(args[4]),
                                     NumberOf(args[5]),
                                     NumberOf(args[6])};
  NewArray values(static_cast<Py_ssize_t>(columns * rows) * static_cast<Py_ssize_t>(sizeof(float)));
  auto* const made = static_cast<float*>(values.Data());
  Unlocked([&] { return discoplan_wafer_lattice(wafer, &lattice, made, columns * rows); });
  return values.View("f", {rows, columns});
}

Object Minus(Arguments args) {
  auto* const wafer = HandleAs<discoplan_wafer>(args[0]);
  auto* const other = HandleAs<discoplan_wafer>(args[1]);
  discoplan_wafer* difference = nullptr;
  std::int64_t interpolated = 0;
  Unlocked([&] { return discoplan_wafer_minus(wafer, other, &interpolated, &difference); });
  return Tuple(NewHandle(difference), Whole(interpolated));
}

Object Mean(Arguments args) {
  const std::vector<discoplan_wafer*> wafers = Handles<discoplan_wafer>(args[0]);
  discoplan_wafer* mean = nullptr;
  std::int64_t interpolated = 0;
  Unlocked([&] {
    return discoplan_wafers_mean(wafers.data(), static_cast<std::int64_t>(wafers.size()),
                                 &interpolated, &mean);
  });
  return Tuple(NewHandle(mean), Whole(interpolated));
}

Object Read(Arguments args) {
  const std::string path = TextOf(args[0]);
  const Options<discoplan_read_options> options(args[1]);
  discoplan_lot* lot = nullptr;
  Unlocked([&] { return discoplan_read(path.c_str(), options.Get(), &lot); });
  const Object held = NewHandle(lot);
  std::int64_t count = 0;
  Check(discoplan_lot_count(lot, &count));
  Object wafers(PyList_New(0));
  for (std::int64_t i = 0; i < count; ++i) {
    discoplan_wafer* wafer = nullptr;
    Check(discoplan_lot_wafer(lot, i, &wafer));
    if (PyList_Append(wafers.Get(), NewHandle(wafer).Get()) < 0) throw PythonError();
  }
  const char* notes = nullptr;
  Check(discoplan_lot_notes(lot, &notes));
  return Tuple(std::move(wafers), TextObject(notes));
}

Object Plot(Arguments args) {
  auto* const wafer = HandleAs<discoplan_wafer>(args[0]);
  const Options<discoplan_plot_options> options(args[1]);
  discoplan_picture* picture = nullptr;
  Unlocked([&] { return discoplan_plot(wafer, options.Get(), &picture); });
  return NewHandle(picture);
}

Object Sheet(Arguments args) {
  const std::vector<discoplan_wafer*> wafers = Handles<discoplan_wafer>(args[0]);
  const Options<discoplan_plot_options> options(args[1]);
  discoplan_picture* picture = nullptr;
  Unlocked([&] {
    return discoplan_sheet(wafers.data(), static_cast<std::int64_t>(wafers.size()), options.Get(),
                           &picture);
  });
  return NewHandle(picture);
}

Object PictureSize(Arguments args) {
  std::int32_t width = 0, height = 0;
  Check(discoplan_picture_size(HandleAs<discoplan_picture>(args[0]), &width, &height));
  return Tuple(Whole(width), Whole(height));
}

Object PictureRgba(Arguments args) {
  auto* const picture = HandleAs<discoplan_picture>(args[0]);
  std::int32_t width = 0, height = 0;
  Check(discoplan_picture_size(picture, &width, &height));
  const std::int64_t size = std::int64_t{4} * width * height;
  NewArray pixels(static_cast<Py_ssize_t>(size));
  auto* const made = static_cast<std::uint8_t*>(pixels.Data());
  Unlocked([&] { return discoplan_picture_rgba(picture, made, size, 0); });
  return pixels.View("B", {height, width, 4});
}

Object PictureFile(Arguments args) {
  auto* const picture = HandleAs<discoplan_picture>(args[0]);
  const auto format = static_cast<std::int32_t>(WholeOf(args[1]));
  const std::uint8_t* bytes = nullptr;
  std::int64_t count = 0;
  Unlocked([&] { return discoplan_picture_encode(picture, format, &bytes, &count); });
  return Object(PyBytes_FromStringAndSize(reinterpret_cast<const char*>(bytes),
                                          static_cast<Py_ssize_t>(count)));
}

Object PictureSave(Arguments args) {
  auto* const picture = HandleAs<discoplan_picture>(args[0]);
  const std::string path = TextOf(args[1]);
  Unlocked([&] { return discoplan_picture_save(picture, path.c_str()); });
  return None();
}

Object Colours(Arguments args) {
  const std::string name = TextOf(args[0]);
  const std::int64_t count = WholeOf(args[1]);
  if (count < 1 || count > 65536) Raise(PyExc_ValueError, "takes 1 to 65536 colours");
  NewArray rgba(static_cast<Py_ssize_t>(4 * count));
  Check(discoplan_colours(name.c_str(), count, static_cast<std::uint8_t*>(rgba.Data())));
  return rgba.View("B", {count, 4});
}

Object ColourNames(Arguments) {
  const char* names = nullptr;
  Check(discoplan_colour_names(&names));
  return TextObject(names);
}

Object Version(Arguments) { return TextObject(discoplan_version()); }

Object Describe(Arguments) {
  const char* json = nullptr;
  Check(discoplan_describe(&json));
  return TextObject(json);
}

Object BytesOf(const void* from, std::int64_t size, const char* format) {
  NewArray made(static_cast<Py_ssize_t>(size));
  if (size > 0) std::memcpy(made.Data(), from, static_cast<std::size_t>(size));
  return made.View(format);
}

/// offsets, x, y, value, names, name offsets, wafer's options, plot's options or None, format,
/// mask of figures
Object Batch(Arguments args) {
  const Offsets offsets(args[0], "offsets");
  const Column x(args[1], "x"), y(args[2], "y"), value(args[3], "value");
  RequireEqual({{"x", &x}, {"y", &y}, {"value", &value}});
  const Offsets name_offsets(args[5], "name offsets");
  const Options<discoplan_wafer_options> wafer(args[6]);
  const Options<discoplan_plot_options> plot(args[7]);
  if (offsets.Size() < 1 || (name_offsets.Size() != 0 && name_offsets.Size() != offsets.Size())) {
    Raise(PyExc_ValueError, "there is one offset more than there are wafers");
  }
  const std::int64_t format = WholeOf(args[8]), figures = WholeOf(args[9]);
  Py_buffer names{};
  const bool has_names = name_offsets.Size() != 0;
  if (has_names && PyObject_GetBuffer(args[4], &names, PyBUF_SIMPLE) != 0) throw PythonError();
  discoplan_batch batch{};
  batch.size = sizeof batch;
  batch.format = static_cast<std::int32_t>(format);
  batch.wafers = offsets.Size() - 1;
  batch.offsets32 = offsets.Narrow();
  batch.offsets64 = offsets.Wide();
  batch.count = x.Size();
  batch.x = x.Array();
  batch.y = y.Array();
  batch.value = value.Array();
  if (has_names) {
    batch.names = static_cast<const char*>(names.buf);
    batch.name_offsets32 = name_offsets.Narrow();
    batch.name_offsets64 = name_offsets.Wide();
  }
  batch.wafer = wafer.Get();
  batch.plot = args[7] != Py_None ? plot.Get() : nullptr;
  batch.figures = static_cast<std::uint64_t>(figures);
  discoplan_result* result = nullptr;
  PyThreadState* const state = PyEval_SaveThread();
  const discoplan_status status = discoplan_batch_run(&batch, &result);
  PyEval_RestoreThread(state);
  if (has_names) PyBuffer_Release(&names);
  Check(status);
  const Object held = NewHandle(result);
  discoplan_result_view view{};
  view.size = sizeof view;
  Check(discoplan_result_get(result, &view));
  const std::int64_t n = view.wafers;
  return Tuple(BytesOf(view.statuses, 4 * n, "i"),
               BytesOf(view.statistics, 8 * n * view.figures, "d"),
               BytesOf(view.pictures, view.picture_offsets[n], "B"),
               BytesOf(view.picture_offsets, 8 * (n + 1), "q"),
               BytesOf(view.messages, view.message_offsets[n], "B"),
               BytesOf(view.message_offsets, 8 * (n + 1), "q"));
}

Object ArrowStream(Arguments args) { return ColumnFromStream(args[0], TextOf(args[1]).c_str()); }
Object ArrowColumn(Arguments args) {
  return ColumnFromArray(args[0], args[1], TextOf(args[2]).c_str());
}
Object ArrowTable(Arguments args) { return GroupedTable(args[0], args[1], args[2]); }

template <Object (*work)(Arguments), Py_ssize_t count>
PyObject* Call(PyObject*, PyObject* const* args, Py_ssize_t given) {
  return Answered([&] {
    RequireCount(given, count);
    return work(args);
  });
}

template <Object (*work)(Arguments), Py_ssize_t count>
PyMethodDef Row(const char* name) {
  return {name, reinterpret_cast<PyCFunction>(reinterpret_cast<void*>(&Call<work, count>)),
          METH_FASTCALL, nullptr};
}

PyMethodDef methods[] = {
    Row<Version, 0>("version"),
    Row<NewWafer, 4>("wafer"),
    Row<WaferInfo, 1>("wafer_info"),
    Row<WaferSites, 1>("wafer_sites"),
    Row<Repeated, 1>("repeated"),
    Row<PackWafer, 1>("pack_wafer"),
    Row<UnpackWafer, 1>("unpack_wafer"),
    Row<Figures, 0>("figures"),
    Row<Statistics, 2>("statistics"),
    Row<Interpolate, 3>("interpolate"),
    Row<Lattice, 7>("lattice"),
    Row<Minus, 2>("minus"),
    Row<Mean, 1>("mean"),
    Row<Read, 2>("read"),
    Row<Plot, 2>("plot"),
    Row<Sheet, 2>("sheet"),
    Row<PictureSize, 1>("picture_size"),
    Row<PictureRgba, 1>("picture_rgba"),
    Row<PictureFile, 2>("picture_file"),
    Row<PictureSave, 2>("picture_save"),
    Row<Colours, 2>("colours"),
    Row<ColourNames, 0>("colour_names"),
    Row<Describe, 0>("describe"),
    Row<Batch, 10>("batch"),
    Row<ArrowStream, 2>("arrow_stream"),
    Row<ArrowColumn, 3>("arrow_column"),
    Row<ArrowTable, 3>("arrow_table"),
    Row<NewControl, 3>("control"),
    Row<ControlResize, 3>("control_resize"),
    Row<ControlGet, 2>("control_get"),
    Row<ControlSet, 3>("control_set"),
    Row<ControlCall, 3>("control_call"),
    Row<ControlListen, 2>("control_listen"),
    Row<ControlMouse, 7>("control_mouse"),
    Row<ControlPicture, 1>("control_picture"),
    Row<ControlPrint, 3>("control_print"),
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef definition = {PyModuleDef_HEAD_INIT,
                          "discoplan._core",
                          nullptr,
                          -1,
                          methods,
                          nullptr,
                          nullptr,
                          nullptr,
                          nullptr};

}  // namespace
}  // namespace discoplan::python

PyMODINIT_FUNC PyInit__core() {
  using namespace discoplan::python;
  return Answered([] {
    Object module(PyModule_Create(&definition));
    AddHandleType(module.Get());
    return module;
  });
}
