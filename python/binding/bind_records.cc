// The classes of records.

#include <pybind11/pybind11.h>

#include "bindings.hh"
#include "sequences.hh"
#include "values.hh"

namespace zrt4::python {

namespace {

using record_class = py::class_<record, std::shared_ptr<record>>;

std::string documentation(const field& of) {
  std::string text;
  if (of.is_text()) {
    text = of.room == record_field::any_length
               ? "A text of any length"
               : "A text of at most " + std::to_string(of.room) + " bytes in UTF-8";
  } else if (of.holds == value_kind::threshold) {
    text = "A 32-bit floating-point number";
  } else {
    text = "A number from " + std::to_string(of.least) + " to " + std::to_string(of.most);
  }
  text += "; '" + std::string(of.name) + "' in the tool's JSON.";
  if (!of.meaning.empty()) text += " Means: " + std::string(of.meaning) + ".";
  return text;
}

template <class Class>
void bind_fields(Class& bound, const record_type& type) {
  for (const field& each : type.fields) {
    const field* const of = &each;
    bound.def_property(
        std::string(each.member).c_str(),
        [of](const record& self) { return value_of(*of, self.get()); },
        [of](record& self, const py::object& value) { set_value(*of, self.get(), value); },
        documentation(each).c_str());
  }
  for (const name_list& each : type.names) {
    const name_list* const of = &each;
    bound.def_property(
        std::string(each.name).c_str(),
        [of](const record& self) { return names_of(*of, self.get()); },
        [of](record& self, const py::object& names) { set_names(*of, self.get(), names); },
        "Names, as a tuple; none: all.");
  }
  for (const group& each : type.groups) {
    const group* const of = &each;
    bound.def_property(
        std::string(each.name).c_str(),
        [of](record& self) { return inner_list(self.shared_from_this(), *of); },
        [of](record& self, const py::object& records) { set_group(self, *of, records); },
        ("The records of the type " + std::string(each.type().name) + " inside this one.").c_str());
  }
}

/// What the table says of each field: name, name in JSON, kind of value, bytes that a text may
/// have.
py::tuple fields_of(const record_type& type) {
  py::list all;
  for (const field& each : type.fields) {
    const char* const kind = each.is_text()                                  ? "str"
                             : each.holds == value_kind::threshold           ? "float"
                             : each.enumeration == number_names::none        ? "int"
                             : each.enumeration == number_names::event_types ? "EventType"
                             : each.enumeration == number_names::data_types  ? "DataType"
                                                                             : "FeatureType";
    const std::size_t longest = each.room == record_field::any_length ? 0 : each.room;
    all.append(py::make_tuple(py::str(each.member), py::str(each.name), kind, longest));
  }
  return py::tuple(all);
}

const record_type& named(const std::string& name) {
  for (const record_type* each : all_record_types()) {
    if (each->name == name) return *each;
  }
  throw py::key_error(name);
}

template <class Raw>
void bind_type(py::module_& module) {
  const record_type& type = type_of<Raw>();
  py::class_<record_of<Raw>, record, std::shared_ptr<record_of<Raw>>> bound(
      module, std::string(type.name).c_str());
  bound.def(py::init([](const py::args& unnamed, const py::kwargs& values) {
    if (!unnamed.empty()) {
      throw py::type_error(std::string(type_of<Raw>().name) +
                           " takes fields by name: " + std::string(type_of<Raw>().name) + "(" +
                           std::string(type_of<Raw>().fields.front().member) + "=...)");
    }
    auto made = std::make_shared<record_of<Raw>>(type_of<Raw>().make());
    fill(*made, values);
    return made;
  }));
  bind_fields(bound, type);
  bound.attr("_fields") = fields_of(type);
  bound.attr("__module__") = "zrt4xml";
}

bool are_equal(const record& a, const py::object& b) {
  if (!py::isinstance<record>(b)) return false;
  const auto& other = b.cast<const record&>();
  return &a.type() == &other.type() && equal(a.type(), a.get(), other.get());
}

}  // namespace

void bind_records(py::module_& module) {
  record_class base(module, "Record");
  base.def("__repr__", &representation);
  base.def("__eq__", [](const record& self, const py::object& other) -> py::object {
    if (!py::isinstance<record>(other))
      return py::reinterpret_borrow<py::object>(Py_NotImplemented);
    return py::bool_(are_equal(self, other));
  });
  base.attr("__hash__") = py::none();
  base.def("__copy__", &record::copy);
  base.def("__deepcopy__", [](const record& self, const py::object&) { return self.copy(); });
  base.def("copy", &record::copy, "A copy of its own, with all that is inside.");
  base.def(
      "to_dict", [](const record& self) { return to_dict(self.type(), self.get()); },
      "The fields, and what is inside, as a dictionary of plain values.");
  base.def("__reduce__", [](const record& self) {
    const py::object make = py::module_::import("zrt4xml._lists").attr("record_from");
    return py::make_tuple(
        make, py::make_tuple(py::str(self.type().name), state_of(self.type(), self.get())));
  });
  base.attr("__module__") = "zrt4xml";
  module.def("record_from", [](const std::string& type, const py::tuple& state) {
    return record_from(named(type), state);
  });
  bind_type<bit_descr>(module);
  bind_type<stat_descr>(module);
  bind_type<dim_descr>(module);
  bind_type<chan_descr_2010>(module);
  bind_type<zrt4_env_index_dictionary_entry_2010>(module);
  bind_type<zrt4_ev_sb_list>(module);
  bind_type<zrt4_ev_entry>(module);
  bind_type<ZRT4GigEFeature>(module);
}

const record_type& record_type_named(const std::string& name) {
  return named(name);
}

}  // namespace zrt4::python
