#include "values.hh"

#include <pybind11/stl.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <type_traits>

#include "json.hh"
#include "local_text.hh"
#include "rows.hh"

namespace zrt4::python {

namespace {

locale_t utf8_locale() {
  static const locale_t made = [] {
    const locale_t locale = newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
    if (locale == nullptr) throw std::runtime_error("this system has no locale C.UTF-8");
    return locale;
  }();
  return made;
}

// Kept for the life of the process: an interpreter that ends may no longer release them.
py::dict& members_of(number_names names) {
  static auto* const all = new py::dict[4];
  return all[static_cast<std::size_t>(names)];
}

py::object number_of(const field& of, std::int64_t value) {
  py::int_ number(value);
  if (of.enumeration == number_names::none) return std::move(number);
  PyObject* const member = PyDict_GetItemWithError(members_of(of.enumeration).ptr(), number.ptr());
  if (member != nullptr) return py::reinterpret_borrow<py::object>(member);
  if (PyErr_Occurred() != nullptr) throw py::error_already_set();
  return std::move(number);
}

// The decimal that a person wrote rather than the nearest binary fraction.
double decimal_of(float value) {
  if (!std::isfinite(value)) return value;
  const std::string text = text_of(threshold{value});
  const plain_locale decimal_points;
  return std::strtod(text.c_str(), nullptr);
}

std::string quoted(py::handle value) {
  return py::repr(value).cast<std::string>();
}

std::string type_name(py::handle value) {
  return py::type::of(value).attr("__name__").cast<std::string>();
}

[[noreturn]] void wrong_type(std::string_view field, const char* wanted, py::handle value) {
  throw py::type_error(std::string(field) + ": " + wanted + " is needed, not '" + type_name(value) +
                       "'");
}

// Of a number that nobody wants to read, not every digit; Python even refuses to write those.
std::string shown_number(const py::object& number) {
  constexpr std::size_t readable_bits = 256;
  const auto bits = number.attr("bit_length")().cast<std::size_t>();
  if (bits > readable_bits) return "a number of " + std::to_string(bits) + " bits";
  return py::str(number).cast<std::string>();
}

std::int64_t whole_number(const field& of, py::handle value) {
  if (PyIndex_Check(value.ptr()) == 0) wrong_type(of.member, "an integer", value);
  const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(value.ptr()));
  if (!number) throw py::error_already_set();
  int overflow = 0;
  const std::int64_t found = PyLong_AsLongLongAndOverflow(number.ptr(), &overflow);
  if (overflow != 0 || found < of.least || found > of.most) {
    throw py::value_error(std::string(of.member) + ": " + shown_number(number) + " is outside " +
                          std::to_string(of.least) + " to " + std::to_string(of.most));
  }
  return found;
}

float single_number(const field& of, py::handle value) {
  const double number = PyFloat_AsDouble(value.ptr());
  const bool failed = number == -1.0 && PyErr_Occurred() != nullptr;
  const bool is_beyond = failed && PyErr_ExceptionMatches(PyExc_OverflowError) != 0;
  PyErr_Clear();
  if (failed && !is_beyond) wrong_type(of.member, "a number", value);
  const auto single = static_cast<float>(number);
  if (is_beyond || (std::isfinite(number) && !std::isfinite(single))) {
    throw py::value_error(std::string(of.member) + ": " +
                          (is_beyond ? "the number" : quoted(value)) +
                          " is more than a 32-bit number holds");
  }
  return single;
}

/// A value of Python for a field. `text` holds the text that it refers to.
cell given_for(const field& of, py::handle value, std::string& text) {
  if (of.holds == value_kind::number) return whole_number(of, value);
  if (of.holds == value_kind::threshold) return threshold{single_number(of, value)};
  text = from_python(value, of.member, of.room);
  return std::string_view(text);
}

struct to_value {
  const field& of;
  py::object operator()(std::string_view text) const { return to_python(text); }
  py::object operator()(threshold number) const { return py::float_(decimal_of(number.value)); }
  py::object operator()(std::int64_t number) const { return number_of(of, number); }
};

// A member of an enumeration as one writes it.
std::string shown(const py::object& value) {
  if (py::isinstance<py::int_>(value) && !PyLong_CheckExact(value.ptr())) {
    return type_name(value) + "." + value.attr("name").cast<std::string>();
  }
  return quoted(value);
}

struct to_state {
  py::object operator()(std::string_view text) const { return py::bytes(text.data(), text.size()); }
  py::object operator()(threshold number) const { return py::float_(double{number.value}); }
  py::object operator()(std::int64_t number) const { return py::int_(number); }
};

/// The value of a state for a field. `text` holds the text that it refers to.
cell state_for(const field& of, const py::object& value, std::string& text) {
  if (!of.is_text()) return given_for(of, value, text);
  text = value.cast<std::string>();
  if (text.size() > of.room) throw py::value_error(std::string(of.member) + ": too long");
  return std::string_view(text);
}

void fill_from_state(record& of, const py::tuple& state) {
  const record_type& type = of.type();
  const std::size_t parts = type.fields.size() + type.names.size() + type.groups.size();
  if (state.size() != parts) throw py::value_error("not the state of a " + std::string(type.name));
  std::size_t at = 0;
  for (const field& each : type.fields) {
    std::string text;
    each.set(of.get(), state_for(each, state[at++], text));
  }
  for (const name_list& each : type.names) {
    each.set(of.get(), state[at++].cast<std::vector<std::string>>());
  }
  for (const group& each : type.groups) {
    for (const py::handle inner : state[at++].cast<py::tuple>()) {
      of.insert(each, of.inner_count(each), record_from(each.type(), inner.cast<py::tuple>()));
    }
  }
}

}  // namespace

plain_locale::plain_locale() : before(uselocale(utf8_locale())) {}

plain_locale::~plain_locale() {
  uselocale(before);
}

py::str to_python(std::string_view utf8) {
  const auto size = static_cast<Py_ssize_t>(utf8.size());
  PyObject* text = PyUnicode_DecodeUTF8(utf8.data(), size, nullptr);
  if (text == nullptr) {
    PyErr_Clear();
    const plain_locale locale;
    const std::string mended = to_utf8(utf8);
    text = PyUnicode_DecodeUTF8(mended.data(), static_cast<Py_ssize_t>(mended.size()), "replace");
    if (text == nullptr) throw py::error_already_set();
  }
  return py::reinterpret_steal<py::str>(text);
}

std::string from_python(py::handle text, std::string_view what, std::size_t longest) {
  if (PyUnicode_Check(text.ptr()) == 0) wrong_type(what, "a str", text);
  Py_ssize_t size = 0;
  const char* const bytes = PyUnicode_AsUTF8AndSize(text.ptr(), &size);
  if (bytes == nullptr) {
    PyErr_Clear();
    throw py::value_error(std::string(what) + ": half a surrogate pair is no character");
  }
  std::string found(bytes, static_cast<std::size_t>(size));
  if (found.find('\0') != found.npos) {
    throw py::value_error(std::string(what) + ": a text cannot hold a zero character");
  }
  if (found.size() > longest) {
    throw py::value_error(std::string(what) + ": the text has " + std::to_string(found.size()) +
                          " bytes in UTF-8, the field holds " + std::to_string(longest));
  }
  return found;
}

py::object value_of(const field& of, void* in) {
  return std::visit(to_value{of}, of.get(in));
}

void set_value(const field& of, void* in, py::handle value) {
  std::string text;
  const cell given = given_for(of, value, text);
  const records_change changing;
  of.set(in, given);
  if (of.is_key) note_change_of_key();
}

py::tuple names_of(const name_list& of, void* in) {
  const std::vector<std::string> names = of.get(in);
  py::tuple result(names.size());
  for (std::size_t i = 0; i < names.size(); ++i) result[i] = to_python(names[i]);
  return result;
}

void set_names(const name_list& of, void* in, py::handle values) {
  if (PyUnicode_Check(values.ptr()) != 0) wrong_type(of.name, "a sequence of str", values);
  std::vector<std::string> names;
  for (const py::handle each : py::reinterpret_borrow<py::object>(values)) {
    names.push_back(from_python(each, of.name, record_field::any_length));
  }
  const records_change changing;
  of.set(in, names);
}

void set_group(record& of, const group& which, py::handle records) {
  const record_type& type = which.type();
  std::vector<std::shared_ptr<record>> all;
  for (const py::handle each : py::reinterpret_borrow<py::object>(records)) {
    if (py::isinstance<record>(each)) {
      auto given = each.cast<std::shared_ptr<record>>();
      if (&given->type() != &type) wrong_type(which.name, std::string(type.name).c_str(), each);
      all.push_back(given->belongs_to_another() ? given->copy() : given);
      continue;
    }
    if (PyMapping_Check(each.ptr()) == 0)
      wrong_type(which.name, std::string(type.name).c_str(), each);
    all.push_back(type.wrap(type.make()));
    fill(*all.back(), py::dict(py::reinterpret_borrow<py::object>(each)));
  }
  while (of.inner_count(which) != 0) of.erase(which, of.inner_count(which) - 1);
  for (const auto& each : all) of.insert(which, of.inner_count(which), each);
}

void fill(record& of, const py::dict& values) {
  const record_type& type = of.type();
  for (const auto& [key, value] : values) {
    const std::string name = py::str(key).cast<std::string>();
    const auto find_names = [&]() -> const name_list* {
      for (const name_list& each : type.names) {
        if (each.name == name) return &each;
      }
      return nullptr;
    };
    if (const field* each = type.find_field(name)) {
      set_value(*each, of.get(), value);
    } else if (const group* inside = type.find_group(name)) {
      set_group(of, *inside, value);
    } else if (const name_list* names = find_names()) {
      set_names(*names, of.get(), value);
    } else {
      throw py::type_error(std::string(type.name) + " has no field '" + name + "'");
    }
  }
}

py::dict to_dict(const record_type& type, void* of) {
  py::dict result;
  for (const field& each : type.fields) result[py::str(each.member)] = value_of(each, of);
  for (const name_list& each : type.names) {
    result[py::str(each.name)] = py::list(names_of(each, of));
  }
  for (const group& each : type.groups) {
    py::list inside;
    for (std::size_t i = 0; i < each.size(of); ++i)
      inside.append(to_dict(each.type(), each.at(of, i)));
    result[py::str(each.name)] = inside;
  }
  return result;
}

std::string representation(record& of) {
  const record_type& type = of.type();
  const auto blank = type.wrap(type.make());
  std::string text;
  text.append(type.name).append("(");
  const char* separator = "";
  const auto add = [&](std::string_view name, const std::string& value) {
    text.append(separator).append(name).append("=").append(value);
    separator = ", ";
  };
  for (const field& each : type.fields) {
    const bool is_first = &each == &type.fields.front();
    if (is_first || !(each.get(of.get()) == each.get(blank->get()))) {
      add(each.member, shown(value_of(each, of.get())));
    }
  }
  for (const name_list& each : type.names) {
    if (const py::tuple names = names_of(each, of.get()); !names.empty())
      add(each.name, quoted(names));
  }
  for (const group& each : type.groups) {
    const std::size_t count = of.inner_count(each);
    if (count == 0) continue;
    add(each.name, "<" + std::to_string(count) + " " + std::string(each.type().name) + ">");
  }
  return text + ")";
}

py::tuple state_of(const record_type& type, void* of) {
  py::list parts;
  for (const field& each : type.fields) parts.append(std::visit(to_state{}, each.get(of)));
  for (const name_list& each : type.names) {
    py::list names;
    for (const std::string& name : each.get(of)) names.append(py::bytes(name));
    parts.append(names);
  }
  for (const group& each : type.groups) {
    py::tuple inside(each.size(of));
    for (std::size_t i = 0; i < inside.size(); ++i)
      inside[i] = state_of(each.type(), each.at(of, i));
    parts.append(inside);
  }
  return py::tuple(parts);
}

std::shared_ptr<record> record_from(const record_type& type, const py::tuple& state) {
  auto made = type.wrap(type.make());
  fill_from_state(*made, state);
  return made;
}

void set_enumeration(number_names names, const py::dict& members) {
  members_of(names) = members;
}

}  // namespace zrt4::python
