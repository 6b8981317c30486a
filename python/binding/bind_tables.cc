// Tables of records: structured arrays of NumPy, and columns for a DataFrame.

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bindings.hh"
#include "record_table.hh"
#include "sequences.hh"
#include "values.hh"

namespace zrt4::python {

namespace {

using records = std::vector<std::shared_ptr<record>>;

std::shared_ptr<table> new_table(const record_type& type, const std::vector<std::string>& fields) {
  try {
    return std::make_shared<table>(type, fields);
  } catch (const std::out_of_range& no_field) {
    throw py::key_error(no_field.what());
  }
}

std::shared_ptr<table> table_of(const record_list& list, const std::vector<std::string>& fields) {
  auto made = new_table(list.type(), fields);
  const records kept = list.all();  // whatever becomes of the list meanwhile
  const library_work work;
  std::vector<void*> raw;
  raw.reserve(kept.size());
  for (const auto& each : kept) raw.push_back(each->get());
  const auto unchanged = records_stay();
  made->add_all(raw);
  return made;
}

const char* code_of_number(const field& of) {
  if (of.holds == value_kind::threshold) return "f4";
  return of.least < 0 ? "i4" : "u4";
}

std::string type_code(const column& of, bool as_bytes) {
  if (!of.is_text()) return code_of_number(of.of());
  return as_bytes ? "S" + std::to_string(of.most_bytes())
                  : "U" + std::to_string(of.most_characters());
}

/// Puts a text into a cell of zeros that has room for it.
void put_text(std::string_view text, char* to, bool as_bytes) {
  if (as_bytes) {
    std::memcpy(to, text.data(), text.size());
  } else if (is_ascii(text)) {
    // Straight to its place, which is aligned: a row with characters has nothing but such.
    std::copy(text.begin(), text.end(), reinterpret_cast<wchar_t*>(to));
  } else {
    const std::vector<wchar_t> characters = characters_of(text);
    std::memcpy(to, characters.data(), characters.size() * sizeof(wchar_t));
  }
}

void fill_rows(char* row, std::size_t row_size, const table& from,
               const std::vector<std::size_t>& offsets, bool as_bytes) {
  const std::vector<column>& columns = from.columns();
  for (std::size_t i = 0; i < from.size(); ++i, row += row_size) {
    std::memset(row, 0, row_size);
    for (std::size_t at = 0; at < columns.size(); ++at) {
      char* const to = row + offsets[at];
      if (columns[at].is_text()) {
        put_text(columns[at].text(i), to, as_bytes);
      } else {
        std::memcpy(to, &columns[at].numbers()[i], sizeof(std::uint32_t));
      }
    }
  }
}

py::array structured(const table& from, bool as_bytes) {
  py::list codes;
  for (const column& each : from.columns()) {
    codes.append(py::make_tuple(py::str(each.of().member), type_code(each, as_bytes)));
  }
  const py::dtype row_type = py::dtype::from_args(codes);
  const py::dict places = row_type.attr("fields");
  std::vector<std::size_t> offsets;
  for (const column& each : from.columns()) {
    offsets.push_back(places[py::str(each.of().member)].cast<py::tuple>()[1].cast<std::size_t>());
  }
  const auto row_size = static_cast<std::size_t>(row_type.itemsize());
  // NumPy has an array of rows full of zeros before it is filled, but not one of bytes.
  py::array_t<unsigned char> bytes(static_cast<py::ssize_t>(row_size * from.size()));
  auto* const first = reinterpret_cast<char*>(bytes.mutable_data());
  {
    const library_work work;
    fill_rows(first, row_size, from, offsets, as_bytes);
  }
  return py::array(row_type, static_cast<py::ssize_t>(from.size()), first, bytes);
}

/// Texts as str. Those that come again soon, as names of subsystems do, are shared.
class shared_texts {
 public:
  /// A new reference.
  PyObject* of(std::string_view text) {
    known_text& known = all[std::hash<std::string_view>()(text) % all.size()];
    if (!known.made || known.text != text) {
      known.made = to_python(text);
      known.text = text;
    }
    return known.made.inc_ref().ptr();
  }

 private:
  struct known_text {
    std::string_view text;
    py::object made;
  };
  std::vector<known_text> all{256};
};

py::array texts_of(const column& from, std::size_t count) {
  py::array made(py::dtype("O"), static_cast<py::ssize_t>(count));
  auto** const objects = static_cast<PyObject**>(made.mutable_data());
  shared_texts texts;
  for (std::size_t i = 0; i < count; ++i) {
    Py_XDECREF(std::exchange(objects[i], texts.of(from.text(i))));
  }
  return made;
}

/// One array for each column.
py::dict columns_of(const table& from) {
  py::dict result;
  for (const column& each : from.columns()) {
    const py::str name(each.of().member);
    if (each.is_text()) {
      result[name] = texts_of(each, from.size());
    } else {
      py::array made(py::dtype(code_of_number(each.of())), static_cast<py::ssize_t>(from.size()));
      const auto& numbers = each.numbers();
      std::copy(numbers.begin(), numbers.end(), static_cast<std::uint32_t*>(made.mutable_data()));
      result[name] = made;
    }
  }
  return result;
}

/// A record of a table, and those that it is inside of.
struct inner_row {
  void* of;
  std::vector<std::size_t> positions;
};

void collect(void* of, const record_type& type, const std::vector<std::string>& path,
             std::size_t depth, std::vector<std::size_t>& at, std::vector<inner_row>& into) {
  if (depth == path.size()) {
    into.push_back({of, at});
    return;
  }
  const group* const inside = type.find_group(path[depth]);
  if (inside == nullptr) throw py::key_error(path[depth]);
  for (std::size_t i = 0; i < inside->size(of); ++i) {
    at.push_back(i);
    collect(inside->at(of, i), inside->type(), path, depth + 1, at, into);
    at.pop_back();
  }
}

/// The records inside those of a list, by the names of the groups: their columns, and first the
/// positions of the record in the list and of those in between.
py::tuple inner_columns(const record_list& list, const std::vector<std::string>& path) {
  std::vector<inner_row> found;
  for (std::size_t i = 0; i < list.size(); ++i) {
    std::vector<std::size_t> at{i};
    collect(list.at(i)->get(), list.type(), path, 0, at, found);
  }
  const record_type* type = &list.type();
  for (const std::string& each : path) {
    const group* const inside = type->find_group(each);
    if (inside == nullptr) throw py::key_error(each);
    type = &inside->type();
  }
  std::vector<std::string> fields;
  for (const field& each : type->fields) fields.emplace_back(each.member);
  const auto made = new_table(*type, fields);
  for (const inner_row& each : found) made->add(each.of);
  py::list positions;
  for (std::size_t depth = 0; depth < path.size(); ++depth) {
    py::array_t<std::int64_t> places(static_cast<py::ssize_t>(found.size()));
    for (std::size_t i = 0; i < found.size(); ++i) {
      places.mutable_data()[i] = static_cast<std::int64_t>(found[i].positions[depth]);
    }
    positions.append(places);
  }
  return py::make_tuple(positions, columns_of(*made));
}

}  // namespace

void bind_tables(py::module_& module) {
  py::class_<table, std::shared_ptr<table>>(module, "Table")
      .def(py::init([](const std::string& type, const std::vector<std::string>& fields) {
        return new_table(record_type_named(type), fields);
      }))
      .def("__len__", &table::size)
      .def("structured", &structured)
      .def("columns", &columns_of);
  module.def("use_numpy", [] { (void)py::dtype::of<float>(); });
  module.def("table_of", &table_of);
  module.def("inner_columns", &inner_columns);
}

}  // namespace zrt4::python
