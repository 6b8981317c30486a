// The module zrt4xml._core: what the package zrt4xml is made of.

#include <pybind11/pybind11.h>

#include "bindings.hh"
#include "event_util.hh"
#include "selector_rules.hh"
#include "values.hh"
#include "zrt4_gige_descr.hh"
#include "zrt4xml.hh"

namespace {

namespace py = pybind11;

py::list named_numbers(int end, const char* (*name_of)(int)) {
  py::list all;
  for (int number = 0; number < end; ++number) {
    const std::string name = name_of(number);
    if (name != "UNKNOWN") all.append(py::make_tuple(name, number));
  }
  return all;
}

}  // namespace

PYBIND11_MODULE(_core, module) {
  using namespace zrt4::python;
  // Kept for the life of the process, so that no document pays for a beginning.
  static const zrt4::xml_session* const in_use = new zrt4::xml_session;
  (void)in_use;
  bind_records(module);
  bind_lists(module);
  bind_documents(module);
  bind_tables(module);
  bind_answers(module);
  bind_selector(module);
  module.attr("version") = ZRT4_VERSION;
  constexpr int data_types_end = ZRT4_BLOCK_MAX_2010 + 1;
  module.attr("event_types") = named_numbers(ZRT4_EV_EVMAX + 1, event_name_itoa);
  module.attr("data_types") = named_numbers(data_types_end, block_name_itoa);
  module.attr("feature_types") =
      named_numbers(FEATURE_TYPE_MAX, [](int type) { return FeatureTags[type]; });
  module.attr("events_end") = static_cast<int>(ZRT4_EV_EVMAX);
  module.def("set_enumerations",
             [](const py::dict& events, const py::dict& data, const py::dict& features) {
               set_enumeration(number_names::event_types, events);
               set_enumeration(number_names::data_types, data);
               set_enumeration(number_names::feature_types, features);
             });
}
