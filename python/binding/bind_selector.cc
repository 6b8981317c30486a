// The library's selector of channels.

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "bindings.hh"
#include "chan_selector.hh"
#include "document_kind.hh"
#include "file_error.hh"
#include "input_file.hh"
#include "reading.hh"
#include "received_messages.hh"
#include "values.hh"

namespace zrt4::python {

namespace {

class selector {
 public:
  /// The lines that tell why the document was not read cleanly.
  std::pair<int, std::vector<received_message>> load(input_file& file) {
    const library_work work;
    refuse_json(file);
    const document_kind kind = kind_of(file);
    if (!is_channels(kind)) throw wrong_kind(file, kind, "channel descriptions");
    // Only a text makes masks of the variable dialect's event types.
    const bool variables = kind == document_kind::variables;
    channels.change_mode(variables ? EXTR_FROM_XML : EXTR_FROM_FILE);
    std::string text = variables ? file.content() : std::string();
    std::vector<char*> source{variables ? text.data() : file.path()};
    reading how = read_with_messages(
        file, [&] { return channels.set_descriptions(&source, nullptr) ? 1 : 0; });
    return {how.errors, std::move(how.reported)};
  }

  int size() { return channels.size(); }
  bool finds(const std::string& name, int event_type) {
    std::string asked = name;
    const received_messages unheard;
    return channels.find_channel(event_type, asked.data());
  }
  std::uint32_t event_types(const std::string& name) {
    std::string asked = name;
    const received_messages unheard;
    return static_cast<std::uint32_t>(channels.get_event_type(asked.data()));
  }
  std::uint32_t data_type(const std::string& name) {
    std::string asked = name;
    const received_messages unheard;
    return static_cast<std::uint32_t>(channels.get_data_type(asked.data()));
  }
  py::tuple at(int position) {
    const received_messages unheard;
    return py::make_tuple(
        to_python(channels.get_channel(position)), to_python(channels.get_prop(position)),
        channels.is_channel_slow(position) == 1, channels.is_channel_ml(position) == 1,
        channels.get_subchannels(position));
  }

 private:
  chan_selector channels;
};

}  // namespace

void bind_selector(py::module_& module) {
  py::class_<selector>(module, "Selector")
      .def(py::init<>())
      .def("load",
           [](selector& self, input_file& file) {
             std::pair<int, std::vector<received_message>> loaded;
             try {
               loaded = self.load(file);
             } catch (const file_error& reason) {
               return py::make_tuple(
                   1, py::make_tuple(py::make_tuple(0, 0, to_python(reason.what()), 3)));
             }
             py::list messages;
             for (const received_message& each : loaded.second) {
               messages.append(py::make_tuple(each.line, each.column, to_python(each.text),
                                              static_cast<std::uint32_t>(each.severity)));
             }
             return py::make_tuple(loaded.first, py::tuple(messages));
           })
      .def("size", &selector::size)
      .def("finds", &selector::finds)
      .def("event_types", &selector::event_types)
      .def("data_type", &selector::data_type)
      .def("at", &selector::at);
}

}  // namespace zrt4::python
