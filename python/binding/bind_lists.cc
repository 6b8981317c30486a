// Records in a row: everything that Python asks of a mutable sequence and that the mixins of
// collections.abc do not make of the rest.

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <type_traits>

#include "bindings.hh"
#include "sequences.hh"
#include "values.hh"

namespace zrt4::python {

namespace {

template <class List>
struct list_iterator {
  std::shared_ptr<List> list;
  std::size_t at;

  std::shared_ptr<record> next() {
    if (list == nullptr || at >= list->size()) {
      list = nullptr;
      throw py::stop_iteration();
    }
    return list->at(at++);
  }
};

template <class List>
std::size_t position_in(const List& list, py::ssize_t index) {
  const auto size = static_cast<py::ssize_t>(list.size());
  if (index < 0) index += size;
  if (index < 0 || index >= size) throw py::index_error("no record at this index");
  return static_cast<std::size_t>(index);
}

std::shared_ptr<record> checked(const record_type& type, const py::handle& given) {
  if (py::isinstance<record>(given)) {
    auto found = given.cast<std::shared_ptr<record>>();
    if (&found->type() == &type) return found;
  }
  throw py::type_error("a " + std::string(type.name) + " is needed, not '" +
                       py::type::of(given).attr("__name__").cast<std::string>() + "'");
}

std::vector<std::shared_ptr<record>> all_checked(const record_type& type, const py::object& given) {
  std::vector<std::shared_ptr<record>> records;
  for (const py::handle each : given) records.push_back(checked(type, each));
  return records;
}

template <class List>
void append_all(List& list, const std::vector<std::shared_ptr<record>>& records) {
  if constexpr (std::is_same_v<List, record_list>) {
    auto all = list.all();
    all.insert(all.end(), records.begin(), records.end());
    list.take_all(std::move(all));
  } else {
    for (const auto& each : records) list.insert(list.size(), each);
  }
}

struct span {
  std::size_t start, step, count;
  bool backwards;

  std::size_t at(std::size_t i) const { return backwards ? start - i * step : start + i * step; }
};

template <class List>
span span_in(const List& list, const py::slice& slice) {
  py::ssize_t start = 0;
  py::ssize_t stop = 0;
  py::ssize_t step = 0;
  py::ssize_t count = 0;
  if (!slice.compute(static_cast<py::ssize_t>(list.size()), &start, &stop, &step, &count)) {
    throw py::error_already_set();
  }
  return {static_cast<std::size_t>(start), static_cast<std::size_t>(step < 0 ? -step : step),
          static_cast<std::size_t>(count), step < 0};
}

template <class List>
std::vector<std::shared_ptr<record>> those_in(const List& list, const span& of) {
  std::vector<std::shared_ptr<record>> records;
  records.reserve(of.count);
  for (std::size_t i = 0; i < of.count; ++i) records.push_back(list.at(of.at(i)));
  return records;
}

template <class List>
void erase_span(List& list, const span& of) {
  // From the back, so that positions stay.
  for (std::size_t i = 0; i < of.count; ++i) {
    list.erase(of.at(of.backwards ? i : of.count - 1 - i));
  }
}

void erase_span(record_list& list, const span& of) {
  std::vector<bool> goes(list.size());
  for (std::size_t i = 0; i < of.count; ++i) goes[of.at(i)] = true;
  std::vector<std::shared_ptr<record>> rest;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (!goes[i]) rest.push_back(list.at(i));
  }
  list.take_all(std::move(rest));
}

template <class List>
void set_span(List& list, const py::slice& slice, const py::object& given) {
  const auto records = all_checked(list.type(), given);
  const span of = span_in(list, slice);
  if (of.step != 1 || of.backwards) {
    if (records.size() != of.count) {
      throw py::value_error("attempt to assign sequence of size " + std::to_string(records.size()) +
                            " to extended slice of size " + std::to_string(of.count));
    }
    for (std::size_t i = 0; i < of.count; ++i) {
      list.erase(of.at(i));
      list.insert(of.at(i), records[i]);
    }
    return;
  }
  // What stands in the list already stays itself, and is not copied.
  std::vector<std::shared_ptr<record>> behind;
  for (std::size_t i = of.start + of.count; i < list.size(); ++i) behind.push_back(list.at(i));
  while (list.size() > of.start) list.erase(list.size() - 1);
  append_all(list, records);
  append_all(list, behind);
}

py::type_error no_index(const py::object& given) {
  return py::type_error("an index, a slice or a key (str) is needed, not '" +
                        py::type::of(given).attr("__name__").cast<std::string>() + "'");
}

template <class List>
std::size_t position_of(List& list, const std::string& key) {
  const auto found = list.find(key);
  if (!found) throw py::key_error(key);
  return *found;
}

template <class List>
bool contains(List& list, const py::object& what) {
  if (PyUnicode_Check(what.ptr()) != 0) {
    return list.find(py::str(what).cast<std::string>()).has_value();
  }
  if (!py::isinstance<record>(what)) return false;
  const auto& wanted = what.cast<const record&>();
  if (&wanted.type() != &list.type()) return false;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (equal(list.type(), list.at(i)->get(), wanted.get())) return true;
  }
  return false;
}

template <class List>
bool are_equal(const List& a, const List& b) {
  if (&a.type() != &b.type() || a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!equal(a.type(), a.at(i)->get(), b.at(i)->get())) return false;
  }
  return true;
}

template <class List, class Class>
void bind_sequence(py::module_& module, Class& bound, const char* iterator_name) {
  using iterator = list_iterator<List>;
  py::class_<iterator>(module, iterator_name)
      .def("__iter__", [](py::object self) { return self; })
      .def("__next__", &iterator::next);
  bound.def("__len__", &List::size);
  bound.def("__iter__", [](std::shared_ptr<List> self) { return iterator{std::move(self), 0}; });
  bound.def("__getitem__", [](List& self, py::ssize_t index) -> std::shared_ptr<record> {
    return self.at(position_in(self, index));
  });
  // One that has more bits than an index, as 10 ** 12 where sizes have 32 bits.
  bound.def("__getitem__",
            [](const List& /*self*/, const py::int_& /*index*/) -> std::shared_ptr<record> {
              throw py::index_error("list index out of range");
            });
  bound.def("__getitem__", [](const py::object& self, const py::slice& slice) -> py::object {
    const List& list = self.cast<const List&>();
    auto records = those_in(list, span_in(list, slice));
    if constexpr (std::is_same_v<List, record_list>) {
      py::object made = self.attr("_empty_like")();
      made.cast<List&>().take_all(std::move(records));
      return made;
    } else {
      return py::cast(records);
    }
  });
  bound.def("__getitem__", [](List& self, const std::string& key) -> std::shared_ptr<record> {
    return self.at(position_of(self, key));
  });
  bound.def("__getitem__",
            [](const List&, const py::object& index) -> py::object { throw no_index(index); });
  bound.def(
      "get",
      [](List& self, const std::string& key, const py::object& otherwise) {
        const auto found = self.find(key);
        return found ? py::cast(self.at(*found)) : otherwise;
      },
      py::arg("key"), py::arg("default") = py::none(),
      "The first record that has this key, or `default`.");
  bound.def("__setitem__", [](List& self, py::ssize_t index, const py::object& given) {
    const auto one = checked(self.type(), given);
    const std::size_t position = position_in(self, index);
    self.erase(position);
    self.insert(position, one);
  });
  bound.def("__setitem__", &set_span<List>);
  bound.def("__delitem__",
            [](List& self, py::ssize_t index) { self.erase(position_in(self, index)); });
  bound.def("__delitem__",
            [](List& self, const py::slice& slice) { erase_span(self, span_in(self, slice)); });
  bound.def("__delitem__",
            [](List& self, const std::string& key) { self.erase(position_of(self, key)); });
  bound.def("__delitem__", [](const List&, const py::object& index) { throw no_index(index); });
  bound.def(
      "insert",
      [](List& self, py::ssize_t index, const py::object& given) {
        const auto one = checked(self.type(), given);
        const auto size = static_cast<py::ssize_t>(self.size());
        if (index < 0) index = std::max<py::ssize_t>(0, index + size);
        self.insert(static_cast<std::size_t>(std::min(index, size)), one);
      },
      py::arg("index"), py::arg("record"), "Puts a record in front of the one at `index`.");
  bound.def(
      "append",
      [](List& self, const py::object& given) {
        self.insert(self.size(), checked(self.type(), given));
      },
      py::arg("record"), "Puts a record at the end.");
  bound.def(
      "extend",
      [](List& self, const py::object& records) {
        append_all(self, all_checked(self.type(), records));
      },
      py::arg("records"), "Puts records at the end.");
  bound.def(
      "clear",
      [](List& self) {
        erase_span(self, span{0, 1, self.size(), false});
      },
      "Takes all records out.");
  bound.def("__contains__", &contains<List>);
  bound.def("__eq__", [](const List& self, const py::object& other) -> py::object {
    if (!py::isinstance<List>(other)) {
      // As a list of Python is no tuple, a document is no list; the records of a record are.
      if (std::is_same_v<List, record_list> || !py::isinstance<py::list>(other)) {
        return py::reinterpret_borrow<py::object>(Py_NotImplemented);
      }
      return py::bool_(py::list(py::cast(those_in(self, {0, 1, self.size(), false}))).equal(other));
    }
    return py::bool_(are_equal(self, other.cast<const List&>()));
  });
  bound.attr("__hash__") = py::none();
}

}  // namespace

void bind_lists(py::module_& module) {
  py::class_<record_list, std::shared_ptr<record_list>> list(module, "RecordList");
  list.def(py::init([](const std::string& type) {
    return std::make_shared<record_list>(record_type_named(type));
  }));
  bind_sequence<record_list>(module, list, "_RecordListIterator");

  py::class_<inner_list, std::shared_ptr<inner_list>> inner(module, "InnerList");
  bind_sequence<inner_list>(module, inner, "_InnerListIterator");
  inner.def("__repr__", [](const inner_list& self) {
    std::string text = "[";
    for (std::size_t i = 0; i < self.size(); ++i) {
      if (i != 0) text += ", ";
      text += representation(*self.at(i));
    }
    return text + "]";
  });
}

}  // namespace zrt4::python
