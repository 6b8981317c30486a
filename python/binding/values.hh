#ifndef VALUES_HH
#define VALUES_HH

// Values of fields as Python's, and back.

#include <pybind11/pybind11.h>

#include <string>
#include <string_view>

#include "record.hh"

namespace zrt4::python {

namespace py = pybind11;

/// While it lives, the thread's texts are UTF-8 and its numbers have decimal points, whatever the
/// locale of the process is.
class plain_locale {
 public:
  plain_locale();
  plain_locale(const plain_locale&) = delete;
  plain_locale& operator=(const plain_locale&) = delete;
  ~plain_locale();

 private:
  locale_t before;
};

/// While it lives, other threads run Python, and this one works for the library in that locale.
class library_work {
  others_run meanwhile;
  plain_locale locale;
};

/// A text of a record. Where it was cut within a character, U+FFFD stands for each byte of the
/// rest, as in the tool's JSON.
py::str to_python(std::string_view utf8);

/// The bytes of a text. Throws ValueError, naming `what`, when it has no UTF-8, holds a zero, or
/// has more bytes than `longest`.
std::string from_python(py::handle text, std::string_view what, std::size_t longest);

py::object value_of(const field& of, void* in);

/// Throws TypeError or ValueError, naming the field, and changes nothing then.
void set_value(const field& of, void* in, py::handle value);

/// The names inside a record, as a tuple.
py::tuple names_of(const name_list& of, void* in);
void set_names(const name_list& of, void* in, py::handle values);

/// Makes `records`, records or mappings, those inside `of`.
void set_group(record& of, const group& which, py::handle records);

/// Sets what the mapping names: fields, and what is inside.
void fill(record& of, const py::dict& values);

/// The record as a dictionary of plain values.
py::dict to_dict(const record_type& type, void* of);

/// `Channel(prop_name='...', ...)`, without what has its value from the beginning.
std::string representation(record& of);

/// The whole record as a tuple of plain values, texts as bytes, and back.
py::tuple state_of(const record_type& type, void* of);
std::shared_ptr<record> record_from(const record_type& type, const py::tuple& state);

/// The members of an enumeration by their numbers; what has none stays a number.
void set_enumeration(number_names names, const py::dict& members);

}  // namespace zrt4::python

#endif
