// SPDX-License-Identifier: MIT
#include "bindings/python/src/arrow.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>
#include <vector>

#include "bindings/python/src/arrow_values.h"
#include "bindings/python/src/buffers.h"

namespace discoplan::python {
namespace {

/// One of the three, released by itself.
template <class T>
struct Owned : T {
  Owned() : T() {}
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() {
    if (this->release != nullptr) this->release(this);
  }
};

template <class T>
T* InCapsule(PyObject* capsule, const char* name) {
  auto* const held = static_cast<T*>(PyCapsule_GetPointer(capsule, name));
  if (held == nullptr) throw PythonError();
  return held;
}

void AppendNumbers(const ArrowSchema& schema, const ArrowArray& array, const std::string& name,
                   std::vector<double>& numbers) {
  numbers.reserve(numbers.size() + static_cast<std::size_t>(array.length));
  for (int64_t i = 0; i < array.length; ++i) numbers.push_back(NumberAt(schema, array, i, name));
}

Object Doubles(const std::vector<double>& numbers) {
  NewArray made(static_cast<Py_ssize_t>(numbers.size() * sizeof(double)));
  std::memcpy(made.Data(), numbers.data(), numbers.size() * sizeof(double));
  return made.View("d");
}

/// Calls `visit` with each chunk of a stream.
template <class Visit>
void ForEachChunk(PyObject* capsule, const Visit& visit) {
  auto* const stream = InCapsule<ArrowArrayStream>(capsule, "arrow_array_stream");
  const auto check = [&](int code) {
    if (code == 0) return;
    const char* const text = stream->get_last_error(stream);
    Raise(PyExc_ValueError, text != nullptr ? text : "the table can't be read");
  };
  Owned<ArrowSchema> schema;
  check(stream->get_schema(stream, &schema));
  while (true) {
    Owned<ArrowArray> chunk;
    check(stream->get_next(stream, &chunk));
    if (chunk.release == nullptr) return;
    visit(static_cast<const ArrowSchema&>(schema), static_cast<const ArrowArray&>(chunk));
  }
}

std::vector<std::string> Names(PyObject* list) {
  std::vector<std::string> names;
  for (Py_ssize_t i = 0; i < PyList_Size(list); ++i)
    names.push_back(TextOf(PyList_GetItem(list, i)));
  return names;
}

/// The only child of that name; raises for none or several.
int64_t ChildOf(const ArrowSchema& schema, const std::string& name) {
  std::string all;
  std::vector<int64_t> found;
  for (int64_t i = 0; i < schema.n_children; ++i) {
    if (name == schema.children[i]->name) found.push_back(i);
    all += std::string(i == 0 ? "" : ", ") + schema.children[i]->name;
  }
  if (found.size() == 1) return found[0];
  if (found.empty()) {
    Raise(PyExc_ValueError, "the table has no column '" + name + "', but " + all);
  }
  Raise(PyExc_ValueError, "the table has " + std::to_string(found.size()) + " columns '" + name +
                              "'; give them names of their own");
}

/// The wafers of a table, numbered as they come.
class Groups {
 public:
  /// `keys` are the texts of one row; one of them that is missing makes it a row without a wafer.
  void Add(std::vector<std::string> keys) {
    const auto missing = std::find(keys.begin(), keys.end(), "");
    if (missing != keys.end()) {
      nameless_.emplace_back(ids_.size(), static_cast<std::size_t>(missing - keys.begin()));
      ids_.push_back(kNoWafer);
      return;
    }
    std::string joined;
    for (const std::string& key : keys) joined += key + '\x1f';
    if (last_ >= 0 && joined == last_key_) {
      ids_.push_back(last_);
      return;
    }
    const auto [at, is_new] = by_key_.emplace(joined, static_cast<std::int64_t>(keys_.size()));
    if (is_new) keys_.push_back(std::move(keys));
    last_ = at->second;
    last_key_ = std::move(joined);
    ids_.push_back(last_);
  }

  /// Where each wafer begins once the rows are sorted, and for each row its place: those without a
  /// wafer come last.
  std::pair<std::vector<std::int64_t>, std::vector<std::int64_t>> Sorted() const {
    const std::size_t wafers = keys_.size();
    const auto part = [&](std::int64_t id) {
      return id == kNoWafer ? wafers : static_cast<std::size_t>(id);
    };
    std::vector<std::int64_t> offsets(wafers + 2);
    for (const std::int64_t id : ids_) ++offsets[part(id) + 1];
    for (std::size_t i = 1; i < offsets.size(); ++i) offsets[i] += offsets[i - 1];
    std::vector<std::int64_t> next = offsets, places;
    places.reserve(ids_.size());
    for (const std::int64_t id : ids_) places.push_back(next[part(id)]++);
    offsets.pop_back();
    return {std::move(offsets), std::move(places)};
  }

  /// Rows without a wafer, with the name of the column that should tell it.
  Object Nameless(const std::vector<std::string>& names) const {
    Object list(PyList_New(0));
    for (const auto& [row, key] : nameless_) {
      Object entry(PyTuple_New(2));
      PyTuple_SetItem(entry.Get(), 0, Object(PyLong_FromSize_t(row)).Give());
      PyTuple_SetItem(entry.Get(), 1, TextObject(names[key].c_str()).Give());
      if (PyList_Append(list.Get(), entry.Get()) < 0) throw PythonError();
    }
    return list;
  }

  Object Keys() const {
    Object list(PyList_New(0));
    for (const std::vector<std::string>& keys : keys_) {
      Object row(PyTuple_New(static_cast<Py_ssize_t>(keys.size())));
      for (std::size_t i = 0; i < keys.size(); ++i) {
        PyTuple_SetItem(row.Get(), static_cast<Py_ssize_t>(i), TextObject(keys[i].c_str()).Give());
      }
      if (PyList_Append(list.Get(), row.Get()) < 0) throw PythonError();
    }
    return list;
  }

 private:
  static constexpr std::int64_t kNoWafer = -1;

  std::unordered_map<std::string, std::int64_t> by_key_;
  std::vector<std::vector<std::string>> keys_;
  std::vector<std::int64_t> ids_;  // of the wafers, for each row
  std::vector<std::pair<std::size_t, std::size_t>> nameless_;
  std::string last_key_;
  std::int64_t last_ = -1;
};

}  // namespace

Object ColumnFromStream(PyObject* capsule, const char* name) {
  std::vector<double> numbers;
  ForEachChunk(capsule, [&](const ArrowSchema& schema, const ArrowArray& chunk) {
    AppendNumbers(schema, chunk, name, numbers);
  });
  return Doubles(numbers);
}

Object ColumnFromArray(PyObject* schema, PyObject* array, const char* name) {
  std::vector<double> numbers;
  AppendNumbers(*InCapsule<ArrowSchema>(schema, "arrow_schema"),
                *InCapsule<ArrowArray>(array, "arrow_array"), name, numbers);
  return Doubles(numbers);
}

Object GroupedTable(PyObject* capsule, PyObject* numbers, PyObject* keys) {
  const std::vector<std::string> number_names = Names(numbers), key_names = Names(keys);
  std::vector<std::vector<double>> columns(number_names.size());
  Groups groups;
  ForEachChunk(capsule, [&](const ArrowSchema& schema, const ArrowArray& chunk) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const int64_t child = ChildOf(schema, number_names[i]);
      AppendNumbers(*schema.children[child], *chunk.children[child], number_names[i], columns[i]);
    }
    std::vector<int64_t> children;
    for (const std::string& name : key_names) children.push_back(ChildOf(schema, name));
    for (int64_t row = 0; row < chunk.length; ++row) {
      std::vector<std::string> texts;
      for (std::size_t i = 0; i < children.size(); ++i) {
        const auto child = children[i];
        texts.push_back(TextAt(*schema.children[child], *chunk.children[child], row, key_names[i]));
      }
      groups.Add(std::move(texts));
    }
  });
  const auto [offsets, places] = groups.Sorted();
  Object list(PyList_New(0));
  for (const std::vector<double>& column : columns) {
    std::vector<double> sorted(column.size());
    for (std::size_t i = 0; i < column.size(); ++i) {
      sorted[static_cast<std::size_t>(places[i])] = column[i];
    }
    if (PyList_Append(list.Get(), Doubles(sorted).Get()) < 0) throw PythonError();
  }
  NewArray starts(static_cast<Py_ssize_t>(offsets.size() * sizeof(std::int64_t)));
  std::memcpy(starts.Data(), offsets.data(), offsets.size() * sizeof(std::int64_t));
  Object all(PyTuple_New(4));
  PyTuple_SetItem(all.Get(), 0, list.Give());
  PyTuple_SetItem(all.Get(), 1, starts.View("q").Give());
  PyTuple_SetItem(all.Get(), 2, groups.Keys().Give());
  PyTuple_SetItem(all.Get(), 3, groups.Nameless(key_names).Give());
  return all;
}

}  // namespace discoplan::python
