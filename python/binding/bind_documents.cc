// Documents: what kind they are, and their records.

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <unistd.h>

#include <optional>
#include <system_error>

#include "bad_document.hh"
#include "bindings.hh"
#include "document_kind.hh"
#include "each_record.hh"
#include "file_error.hh"
#include "input_file.hh"
#include "reading.hh"
#include "record_table.hh"
#include "scan.hh"
#include "sequences.hh"
#include "values.hh"

namespace zrt4::python {

namespace {

using records = std::vector<std::shared_ptr<record>>;

/// Each record on its own; one that stands at two places, one behind the other, is one.
template <class List>
records wrapped(List& list) {
  auto& raw = *list.get();
  records all;
  all.reserve(raw.size());
  std::size_t done = 0;
  try {
    for (auto* each : raw) {
      const bool again = done != 0 && raw[done - 1] == each;
      all.push_back(again ? all.back() : type_of<typename List::value_type>().wrap(each));
      ++done;
    }
  } catch (...) {
    raw.erase(raw.begin(), raw.begin() + static_cast<std::ptrdiff_t>(done));
    throw;
  }
  raw.clear();
  return all;
}

template <class List>
reading read_all(input_file& file, records& into) {
  List list;
  reading result = read_into(list, file);
  into = wrapped(list);
  return result;
}

reading read_channels(input_file& file, records& into, int dialect) {
  zrt4::channel_list list;
  reading result = read_plain(list, file, dialect);
  into = wrapped(list);
  return result;
}

reading read_kind(document_kind kind, input_file& file, records& into) {
  switch (kind) {
    case document_kind::events:
      return read_all<zrt4::event_list>(file, into);
    case document_kind::channels:
    case document_kind::variables:
      return read_channels(file, into, dialect_of(kind));
    case document_kind::dictionary:
      return read_all<zrt4::env_dictionary_2010>(file, into);
    case document_kind::camera:
      break;
  }
  return read_all<zrt4::camera_features>(file, into);
}

document_kind kind_called(const std::string& name) {
  const auto kind = kind_named(name);
  if (!kind) throw py::value_error("no kind of document: '" + name + "'");
  return *kind;
}

/// The bytes of an object that has a buffer, for as long as this lives.
class bytes_of {
 public:
  explicit bytes_of(const py::buffer& of) {
    if (PyObject_GetBuffer(of.ptr(), &view, PyBUF_SIMPLE) != 0) throw py::error_already_set();
  }
  bytes_of(const bytes_of&) = delete;
  bytes_of& operator=(const bytes_of&) = delete;
  ~bytes_of() { PyBuffer_Release(&view); }
  std::string_view get() const {
    return {static_cast<const char*>(view.buf), static_cast<std::size_t>(view.len)};
  }

 private:
  Py_buffer view{};
};

std::unique_ptr<input_file> opened(const std::string& name, int file, bool for_one_pass) {
  const library_work work;
  descriptor own(dup(file));
  if (for_one_pass) return input_file::for_one_pass(name, std::move(own));
  return std::make_unique<input_file>(name, std::move(own));
}

std::unique_ptr<input_file> in_memory(const std::string& name, const py::buffer& document) {
  const bytes_of bytes(document);
  const library_work work;
  return std::make_unique<input_file>(name, bytes.get());
}

py::tuple kind_or_reason(input_file& file, const std::optional<std::string>& expected) {
  std::optional<document_kind> wanted;
  if (expected) wanted = kind_called(*expected);
  document_kind kind{};
  try {
    const library_work work;
    kind = kind_of(file, wanted);
    if (wanted == document_kind::channels &&
        find_root_element(file.path()).name == traits_of(document_kind::variables).root) {
      kind = document_kind::variables;
    }
  } catch (const bad_document& reason) {
    return py::make_tuple(py::none(), to_python(reason.what()), to_python(reason.place.shown()));
  }
  return py::make_tuple(py::str(traits_of(kind).name), "", "");
}

py::tuple message(std::uint64_t line, std::uint64_t column, const std::string& text,
                  zrt4::message_severity severity) {
  return py::make_tuple(line, column, to_python(text), static_cast<std::uint32_t>(severity));
}

py::list messages_of(const reading& how) {
  py::list messages;
  for (const received_message& each : how.reported) {
    messages.append(message(each.line, each.column, each.text, each.severity));
  }
  if (!how.reported.empty()) return messages;
  for (const std::string& each : how.messages) {  // of JSON, where each is about a value
    messages.append(message(0, 0, each.substr(0, each.find_last_not_of('\n') + 1),
                            zrt4::message_severity::error));
  }
  return messages;
}

/// The number of errors, and the messages.
template <class Read>
py::tuple told_of(Read read) {
  reading how;
  try {
    const library_work work;
    how = read();
  } catch (const bad_document& reason) {
    return py::make_tuple(1, py::make_tuple(message(0, 0, reason.what() + reason.place.shown(),
                                                    zrt4::message_severity::fatal_error)));
  } catch (const file_error& reason) {
    return py::make_tuple(
        1, py::make_tuple(message(0, 0, reason.what(), zrt4::message_severity::fatal_error)));
  }
  return py::make_tuple(how.errors, messages_of(how));
}

py::tuple read_document(input_file& file, const std::string& kind, record_list& into) {
  const document_kind as = kind_called(kind);
  records all;
  py::tuple told = told_of([&] { return read_kind(as, file, all); });
  into.take_all(std::move(all));
  return told;
}

py::tuple read_table(input_file& file, const std::string& kind, table& into) {
  const document_kind as = kind_called(kind);
  return told_of(
      [&] { return read_each(file, as, [&](const void* record) { into.add(record); }); });
}

}  // namespace

void bind_documents(py::module_& module) {
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      if (thrown) std::rethrow_exception(thrown);
    } catch (const std::system_error& error) {
      const py::tuple reason = py::make_tuple(error.code().value(), error.code().message());
      PyErr_SetObject(PyExc_OSError, reason.ptr());
    } catch (const file_error& error) {
      PyErr_SetString(PyExc_OSError, error.what());
    }
  });
  py::class_<input_file>(module, "Document")
      .def(py::init(&opened), py::arg("name"), py::arg("descriptor"), py::arg("for_one_pass"))
      .def(py::init(&in_memory), py::arg("name"), py::arg("document"))
      .def("kind", &kind_or_reason)
      .def("read", &read_document)
      .def("read_table", &read_table);
}

}  // namespace zrt4::python
