// Records as tables: structured arrays of NumPy, and columns for a DataFrame.

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <string>
#include <type_traits>
#include <vector>

#include "bindings.hh"
#include "json.hh"
#include "sequences.hh"
#include "values.hh"

namespace zrt4::python {

namespace {

using records = std::vector<std::shared_ptr<record>>;

/// A record of a table, and those that it is inside of.
struct table_row {
  void* of;
  std::vector<std::size_t> positions;
};

// Without a way out of the loop, the compiler takes many characters at a time.
bool is_ascii(std::string_view text) {
  unsigned seen = 0;
  for (const char each : text) seen |= static_cast<unsigned char>(each);
  return seen < 0x80;
}

std::string_view text_in(const place& from) {
  if (const auto* const fixed = std::get_if<text_place>(&from)) return fixed->bytes;
  return *std::get<std::string*>(from);
}

static_assert(sizeof(wchar_t) == 4);  // a character of NumPy, in the locale at hand

/// The characters of a UTF-8 text, at most as many as it has bytes.
std::size_t to_characters(std::string_view text, wchar_t* to) {
  if (is_ascii(text)) {
    std::copy(text.begin(), text.end(), to);
    return text.size();
  }
  const std::string whole(text);
  const char* from = whole.c_str();
  std::mbstate_t state{};
  const std::size_t count = std::mbsrtowcs(to, &from, whole.size() + 1, &state);
  if (count != static_cast<std::size_t>(-1)) return count;
  return to_characters(to_utf8(text), to);  // cut within a character
}

struct column {
  const field* of;
  std::size_t width = 0;   ///< of a text, in characters or bytes
  std::size_t offset = 0;  ///< in a row of the table
};

/// The most that a text of the column has.
std::size_t width_of(const field& of, const std::vector<void*>& rows, bool as_bytes) {
  std::size_t widest = 1;  // NumPy has no texts of no characters
  for (void* const each : rows) {
    const std::string_view text = text_in(of.in(each));
    if (text.size() <= widest) continue;
    if (as_bytes || is_ascii(text)) {
      widest = text.size();
    } else {
      // A piece of a character becomes one of three bytes.
      std::vector<wchar_t> characters(3 * text.size() + 1);
      widest = std::max(widest, to_characters(text, characters.data()));
    }
  }
  return widest;
}

std::string type_code(const column& of, bool as_bytes) {
  if (of.of->is_text()) return (as_bytes ? "S" : "U") + std::to_string(of.width);
  if (of.of->least == of.of->most) return "f4";
  return of.of->most > INT32_MAX || of.of->names != number_names::none ? "u4" : "i4";
}

class cell_writer {
 public:
  cell_writer(char* where, std::size_t width, bool bytes, bool& all_fit)
      : to(where), room(width), as_bytes(bytes), fits(all_fit) {}

  void operator()(const text_place& text) const { write(text.bytes); }
  void operator()(const std::string* text) const { write(*text); }
  template <class Number>
  void operator()(const Number* number) const {
    std::memcpy(to, number, sizeof *number);
  }

 private:
  void write(std::string_view text) const {
    if (as_bytes) {
      fits = fits && text.size() <= room;
      std::memcpy(to, text.data(), std::min(text.size(), room));
      return;
    }
    if (is_ascii(text) && text.size() <= room) {
      // Straight to its place, which is aligned: a row with characters has nothing but such.
      std::copy(text.begin(), text.end(), reinterpret_cast<wchar_t*>(to));
      return;
    }
    std::vector<wchar_t> characters(3 * text.size() + 1);
    const std::size_t count = to_characters(text, characters.data());
    fits = fits && count <= room;
    std::memcpy(to, characters.data(), std::min(count, room) * sizeof(wchar_t));
  }

  char* to;
  std::size_t room;
  bool as_bytes;
  bool& fits;
};

std::vector<void*> raw_of(const records& all) {
  std::vector<void*> raw;
  raw.reserve(all.size());
  for (const auto& each : all) raw.push_back(each->get());
  return raw;
}

std::vector<column> columns_of(const record_type& type, const std::vector<std::string>& names) {
  std::vector<column> columns;
  for (const std::string& name : names) {
    const field* const found = type.find_field(name);
    if (found == nullptr) {
      throw py::key_error(std::string(type.name) + " has no field '" + name + "'");
    }
    columns.push_back({found});
  }
  return columns;
}

py::array structured(const record_list& list, const std::vector<std::string>& names,
                     bool as_bytes) {
  std::vector<column> columns = columns_of(list.type(), names);
  const records kept = list.all();  // whatever becomes of the list meanwhile
  const std::vector<void*> rows = raw_of(kept);
  // Between the two walks over them, another thread may make a text longer.
  for (;;) {
    {
      const library_work work;
      const auto unchanged = records_stay();
      for (column& each : columns) {
        if (each.of->is_text()) each.width = width_of(*each.of, rows, as_bytes);
      }
    }
    py::list codes;
    for (const column& each : columns) {
      codes.append(py::make_tuple(py::str(each.of->name), type_code(each, as_bytes)));
    }
    const py::dtype row_type = py::dtype::from_args(codes);
    const py::dict offsets = row_type.attr("fields");
    for (column& each : columns) {
      each.offset = offsets[py::str(each.of->name)].cast<py::tuple>()[1].cast<std::size_t>();
    }
    const auto row_size = static_cast<std::size_t>(row_type.itemsize());
    py::array table = py::module_::import("numpy").attr("zeros")(rows.size(), row_type);
    char* const first = static_cast<char*>(table.mutable_data());
    bool fits = true;
    {
      const library_work work;
      const auto unchanged = records_stay();
      char* row = first;
      for (void* const each : rows) {
        for (const column& one : columns) {
          std::visit(cell_writer(row + one.offset, one.width, as_bytes, fits), one.of->in(each));
        }
        row += row_size;
      }
    }
    if (fits) return table;
  }
}

/// One array for each column; a text becomes a str, which neighbours with the same text share.
py::object column_of(const field& of, const std::vector<void*>& rows) {
  const auto count = static_cast<py::ssize_t>(rows.size());
  if (of.is_text()) {
    py::array made(py::dtype("O"), count);
    auto** const objects = static_cast<PyObject**>(made.mutable_data());
    py::str last("");
    std::string_view last_text;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const std::string_view text = text_in(of.in(rows[i]));
      if (text != last_text) {
        last = to_python(text);
        last_text = text;
      }
      Py_XDECREF(objects[i]);
      objects[i] = last.inc_ref().ptr();
    }
    return std::move(made);
  }
  const auto fill = [&](auto* first) {
    using number = std::remove_reference_t<decltype(*first)>;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      std::visit(
          [&](auto from) {
            if constexpr (std::is_pointer_v<decltype(from)>) {
              if constexpr (sizeof(*from) == sizeof(number))
                std::memcpy(first + i, from, sizeof *from);
            }
          },
          of.in(rows[i]));
    }
  };
  if (of.least == of.most) {
    py::array_t<float> made(count);
    fill(made.mutable_data());
    return std::move(made);
  }
  if (of.least < 0) {
    py::array_t<std::int32_t> made(count);
    fill(made.mutable_data());
    return std::move(made);
  }
  py::array_t<std::uint32_t> made(count);
  fill(made.mutable_data());
  return std::move(made);
}

py::dict columns(const record_list& list, const std::vector<std::string>& names) {
  const std::vector<void*> rows = raw_of(list.all());
  py::dict result;
  for (const column& each : columns_of(list.type(), names)) {
    result[py::str(each.of->name)] = column_of(*each.of, rows);
  }
  return result;
}

void collect(void* of, const record_type& type, const std::vector<std::string>& path,
             std::size_t depth, std::vector<std::size_t>& at, std::vector<table_row>& into) {
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
  std::vector<table_row> found;
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
  std::vector<void*> rows;
  for (const table_row& each : found) rows.push_back(each.of);
  py::list positions;
  for (std::size_t depth = 0; depth < path.size(); ++depth) {
    py::array_t<std::int64_t> made(static_cast<py::ssize_t>(found.size()));
    for (std::size_t i = 0; i < found.size(); ++i) {
      made.mutable_data()[i] = static_cast<std::int64_t>(found[i].positions[depth]);
    }
    positions.append(made);
  }
  py::dict result;
  for (const field& each : type->fields) result[py::str(each.name)] = column_of(each, rows);
  return py::make_tuple(positions, result);
}

}  // namespace

void bind_tables(py::module_& module) {
  module.def("structured", &structured);
  module.def("columns", &columns);
  module.def("inner_columns", &inner_columns);
}

}  // namespace zrt4::python
