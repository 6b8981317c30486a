#ifndef BINDINGS_HH
#define BINDINGS_HH

// What each source adds to the module.

#include <pybind11/pybind11.h>

#include <string>

#include "record_type.hh"

namespace zrt4::python {

void bind_records(pybind11::module_& module);
void bind_lists(pybind11::module_& module);
void bind_documents(pybind11::module_& module);
void bind_tables(pybind11::module_& module);
void bind_answers(pybind11::module_& module);
void bind_selector(pybind11::module_& module);

/// Throws KeyError.
const record_type& record_type_named(const std::string& name);

}  // namespace zrt4::python

#endif
