#ifndef EVERY_OPERATION_HH
#define EVERY_OPERATION_HH

// Every reader and every writer of the library, each as one operation that can be repeated.

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "SAX_File_Parser.hh"
#include "SAX_Memory_Parser.hh"
#include "chan_selector.hh"
#include "dictionary_support.hh"
#include "handmade_channels.hh"

namespace test {

// Documents that bring every element of their kind

inline const std::string all_elements = R"(<?xml version="1.0" encoding="ISO-8859-1" ?>
<CHANDESCRIPTIONS>
<CHANNEL><STREAM>1</STREAM><EVTYPE>2</EVTYPE><DTYPE>4</DTYPE><DB_KEY>7</DB_KEY><COUNT>3</COUNT>
<SB_NAME>BLOCK</SB_NAME><PROP>A.B/C/D/E</PROP><NAME>first</NAME><SETPOINT>1</SETPOINT>
<SUBSYSTEM>S</SUBSYSTEM><UNITS>mm</UNITS><DESC>described</DESC><SIZE>8</SIZE>
<BIT>0<BIT_NAME>on</BIT_NAME><BIT_DESCR>is on</BIT_DESCR></BIT>
<BIT>1<BIT_NAME>off</BIT_NAME></BIT>
<DIM>0<DIM_NAME>time</DIM_NAME><DIM_UNITS>s</DIM_UNITS><DIM_DESCR>axis</DIM_DESCR>
<STAT>1<STAT_NAME>mean</STAT_NAME><STAT_UNITS>s</STAT_UNITS><STAT_DESCR>m</STAT_DESCR></STAT></DIM>
<DIM>1<DIM_NAME>place</DIM_NAME></DIM></CHANNEL>
<CHANNEL><PROP>A.B/C/D/F</PROP><NAME>second</NAME><DTYPE>4</DTYPE></CHANNEL>
<CHANNEL><PROP>A.B/C/D/E</PROP><NAME>again</NAME><EVTYPE>5</EVTYPE>
<BIT>2<BIT_NAME>more</BIT_NAME></BIT><DIM>0<STAT>2<STAT_NAME>s</STAT_NAME></STAT></DIM></CHANNEL>
</CHANDESCRIPTIONS>
)";
inline const std::string all_variables =
    "<DAQvariables><DaqFloat><evType>1</evType><vindo>A/B/C</vindo><daqName>A.C</daqName>"
    "<units>mm</units></DaqFloat><DaqBits><evType>1</evType><vindo>A/B/D</vindo>"
    "<daqName>A.D</daqName><bitTitle bit='3'>on</bitTitle><bitTitle bit='4'>off</bitTitle>"
    "</DaqBits><DaqFloatMatrix><vindo>A/B/E</vindo><dimension id='0'><name>x</name>"
    "<description>d</description><units>mm</units></dimension></DaqFloatMatrix></DAQvariables>";
inline const std::string all_of_an_event =
    "<BMR><EVENT><TYPE>1</TYPE><TMASK>0x10</TMASK><MINTIMESEC>1</MINTIMESEC><PRIORITY>2</PRIORITY>"
    "<SBLOCK>one</SBLOCK><CHLIST><CHAN>first</CHAN><CHAN>second</CHAN></CHLIST><SBLOCK>two</SBLOCK>"
    "<CHLIST><CHAN>third</CHAN></CHLIST></EVENT><EVENT><TYPE>2</TYPE><SBLOCK>three</SBLOCK>"
    "<CHLIST><CHAN>fourth</CHAN></CHLIST></EVENT></BMR>";
inline const std::string all_of_a_dictionary =
    "<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>A.B/C/D/E</PROP><DABS>0.5</DABS>"
    "<DREL>1e-300000000000000000000000000000000000000000000</DREL></CHANNEL>"
    "<CHANNEL><PROP>A.B/C/D/F</PROP><INDEX>2</INDEX></CHANNEL>"
    "<CHANNEL><INDEX>3</INDEX><PROP>G</PROP></CHANNEL></ENVINDEXDICT>";
inline const std::string all_of_a_camera =
    "<?xml version='1.0'?><r><Integer Name='Width'><ToolTip>a tool tip of more than a few letters"
    "</ToolTip><Description>&lt;w&#252;de&gt;</Description></Integer><Enumeration Name='Mode'>"
    "<PvRename Name='PV.MODE'/></Enumeration><!-- c --><Float/></r>";
inline const std::string declarations =
    "<!DOCTYPE BMR [<!ELEMENT BMR ANY><!ENTITY % p '<!ELEMENT e (f|g)*>'>%p;<!ENTITY x 'text'>"
    "<!ENTITY y '&x;&x;'><!NOTATION n SYSTEM 'n'><!ATTLIST BMR a CDATA 'd' b (c|d) 'c'>"
    "<!ELEMENT EVENT (TYPE,(TMASK|PRIORITY)+)><!ELEMENT TYPE (#PCDATA)><!ELEMENT TMASK (#PCDATA)>]>"
    "<BMR><EVENT><TYPE>1</TYPE><TMASK>7</TMASK></EVENT>&y;</BMR>";

/// More than one piece of text, many names and long values: what the scanner has to grow for.
inline std::string many_and_long() {
#ifdef ZRT4_LEAK_CHECKED
  constexpr int names = 10;  // each takes many requests there, which the scanner's cells spare
#else
  constexpr int names = 150;
#endif
  std::string text = "<BMR>";
  for (int n = 0; n < names; ++n) {
    const std::string name = "element-" + std::to_string(n);
    text += "<" + name + " a" + name + "='" + std::string(50, 'v') + "'>" +
            std::string(static_cast<std::size_t>(n) * 20, 't') + "</" + name + ">";
  }
  return text + "<EVENT><TYPE>1</TYPE></EVENT>" + std::string(70'000, 'x') + "</BMR>";
}

// What is done with them. Each tells in `result`, unless that is null, what came of it.

struct operation {
  const char* name;
  std::function<void(std::string* result)> run;
  bool may_keep_file = false;     ///< where docs/security.md says that one may stay open
  bool may_skip_records = false;  ///< a dictionary prints that it does, and goes on
};

inline void tell(std::string* result, int code, const std::string& what) {
  if (result != nullptr) *result += std::to_string(code) + "\n" + what;
}

inline void tell(std::string* result, int code, zrt4::channel_list& list) {
  if (result == nullptr) return;
  tell(result, code, std::to_string(list.size()));
  dump_chan_desr(list.get(), nullptr, DUMP_XML_FILE, ZRT4_FORMAT, -1, result, nullptr);
}

inline void tell(std::string* result, int code, const zrt4::event_list& list) {
  if (result == nullptr) return;
  tell(result, code, "");
  for (const zrt4_ev_entry& entry : list) {
    *result += std::to_string(entry.evtype) + " " + std::to_string(entry.tmask);
    for (const zrt4_ev_sb_list* block : *entry.sb_list) {
      *result += std::string(" ") + block->sb_list;
      for (const char* channel : *block->ch_list) *result += std::string(",") + channel;
    }
    *result += "\n";
  }
}

inline void tell(std::string* result, int code, const zrt4::camera_features& list) {
  if (result == nullptr) return;
  tell(result, code, "");
  for (const ZRT4GigEFeature& feature : list) {
    *result += feature.name + "," + feature.extension + "," + feature.tooltip + "," +
               feature.description + "\n";
  }
}

template <class Entry>
void tell(std::string* result, int code, const zrt4::basic_env_dictionary<Entry>& list) {
  if (result == nullptr) return;
  tell(result, code, "");
  for (const Entry& entry : list) {
    *result += std::to_string(entry.index) + entry.data.env_prop +
               std::to_string(entry.data.env_ch_abs_delta) + "\n";
  }
}

inline operation channels_of(const char* name, const std::string& document, bool merge) {
  return {name, [document, merge](std::string* result) {
            std::string text = document;
            zrt4::channel_list list;
            const int code = parse_descr_list_read(text.data(), list.get(), true, merge);
            tell(result, code, list);
          }};
}

inline operation channels_of_file(const char* name, const std::string& document, bool merge) {
  const auto file = std::make_shared<temporary_file>(document);
  return {name,
          [file, merge](std::string* result) {
            zrt4::channel_list list;
            const int code = parse_descr_list_readf(file->name(), list.get(), true, merge);
            tell(result, code, list);
          },
          true};
}

inline operation events_of(const char* name, const std::string& document) {
  return {name, [document](std::string* result) {
            std::string text = document;
            zrt4::event_list list;
            const int code = zrt4_parse_ev_list_read(text.data(), list.get());
            tell(result, code, list);
          }};
}

inline operation events_of_file(const char* name, const std::string& document) {
  const auto file = std::make_shared<temporary_file>(document);
  return {name,
          [file](std::string* result) {
            zrt4::event_list list;
            const int code = zrt4_parse_ev_list_readf(file->name(), list.get());
            tell(result, code, list);
          },
          true};
}

template <class Generation>
operation dictionary_of(const char* name) {
  return {name,
          [](std::string* result) {
            std::string text = all_of_a_dictionary;
            typename Generation::list list;
            const int code = Generation::read(text.data(), list.get());
            tell(result, code, list);
          },
          false, true};
}

template <class Generation>
operation dictionary_of_file(const char* name) {
  const auto file = std::make_shared<temporary_file>(all_of_a_dictionary);
  return {name,
          [file](std::string* result) {
            typename Generation::list list;
            const int code = Generation::readf(file->name(), list.get());
            tell(result, code, list);
          },
          true, true};
}

inline operation camera_of(const char* name, const std::string& document) {
  const auto file = std::make_shared<temporary_file>(document);
  return {name,
          [file](std::string* result) {
            zrt4::camera_features list;
            const bool failed = zrt4_fill_gige_descr(file->name(), list.get());
            tell(result, failed ? 1 : 0, list);
          },
          true};
}

template <class Parser>
void pull(Parser& parser, bool failed, std::string* result) {
  char* tag = nullptr;
  char* text = nullptr;
  char* value = nullptr;
  char attribute[] = "bit";
  std::string seen;
  while (!failed && parser.parse(&tag, &text) == 0) {
    parser.get_attr(attribute, &value);
    if (result == nullptr) continue;
    for (const char* part : {tag, text, value}) seen += part != nullptr ? part : "-";
  }
  tell(result, (failed ? 1 : 0) + parser.get_error_counter(), seen);
}

inline operation steps_of(const char* name, const std::string& document) {
  return {name, [document](std::string* result) {
            std::string text = document;
            SAX_Memory_Parser parser(text.data());
            pull(parser, !parser.init_ok() || parser.start(), result);
          }};
}

inline operation steps_of_file(const char* name, const std::string& document) {
  const auto file = std::make_shared<temporary_file>(document);
  return {name,
          [file](std::string* result) {
            SAX_File_Parser parser;
            pull(parser, !parser.init_ok() || parser.start(file->name()), result);
          },
          true};
}

inline std::vector<std::uint32_t> blob_of(const std::string& text) {
  const std::size_t length = 8 + text.size();
  std::vector<std::uint32_t> blob(2 + text.size() / 4 + 1);
  blob[0] = 0xCDECDEF2;
  blob[1] = static_cast<std::uint32_t>(length);
  std::memcpy(blob.data() + 2, text.data(), text.size());
  return blob;
}

inline std::vector<operation> readers() {
  const auto blob = std::make_shared<std::vector<std::uint32_t>>(blob_of(all_elements));
  const auto master = std::make_shared<temporary_file>(all_elements);
  return {
      channels_of("channels", all_elements, false),
      channels_of("channels, merged", all_elements, true),
      channels_of("variables", all_variables, false),
      channels_of("variables, merged", all_variables, true),
      channels_of_file("channels of a file", all_elements, false),
      channels_of_file("channels of a file, merged", all_elements, true),
      channels_of_file("variables of a file", all_variables, true),
      {"blob",
       [blob](std::string* result) {
         zrt4::channel_list list;
         auto* header = reinterpret_cast<zrt4_xml_chan_descr_header*>(blob->data());
         const int code = zrt4_load_chan_descr(header, list.get());
         tell(result, code, list);
       }},
      {"master file",
       [master](std::string* result) {
         zrt4::channel_list list;
         const int code = zrt4_load_master_daq_channel_description_file(list.get(), master->name());
         tell(result, code, list);
       },
       true},
      events_of("events", all_of_an_event),
      events_of_file("events of a file", all_of_an_event),
      events_of("declarations", declarations),
      events_of("large document", many_and_long()),
      events_of("broken document", all_of_an_event.substr(0, 100)),
      events_of("what would be opened", "<!DOCTYPE BMR SYSTEM 'no.dtd'><BMR/>"),
      dictionary_of<older>("dictionary"),
      dictionary_of<y2010>("2010 dictionary"),
      dictionary_of_file<older>("dictionary of a file"),
      dictionary_of_file<y2010>("2010 dictionary of a file"),
      camera_of("camera", all_of_a_camera),
      camera_of("camera, declarations", declarations),
      camera_of("camera, broken", all_of_a_camera.substr(0, 100)),
      steps_of("steps", all_variables),
      steps_of_file("steps of a file", all_variables),
      {"selector",
       [master](std::string* result) {
         chan_selector selector;
         std::vector<char*> names{master->name()};
         int total = 0;
         const bool failed = selector.set_descriptions(&names, &total);
         char wanted[] = "A.B/C/D/F";
         tell(result, failed ? 1 : 0, selector.find_channel(1, wanted) ? "found" : "");
       },
       true},
      {"extractor",
       [](std::string* result) {
         std::string text = all_variables;
         std::vector<char*> texts{text.data()};
         int total = 0;
         zrt4::channel_list list;
         descr_extractor extractor;
         extractor.set_mode(EXTR_FROM_XML);
         const bool failed = extractor.get_descriptions(&texts, &total, list.get(), true);
         tell(result, failed ? 1 : 0, list);
       }},
  };
}

inline void full_channel(records& list) {
  auto& channel = list.add("P/1", "D1");
  channel.max_size = 8;
  list.add_bit(channel, 3, "ON", "is on");
  list.add_stat(list.add_dim(channel, 0, "time", "time axis", "s"), 1, "mean", "m", "ms");
  list.add("P/2").dtype = 0x200;
}

/// Dumps to a file, to a descriptor and into a string at once.
template <int Mode, int Format>
operation dump_of(const char* name) {
  const auto file = std::make_shared<temporary_file>("");
  return {name, [file](std::string* result) {
            records list;
            full_channel(list);
            zrt4_spect_header_2010 spectrum{};
            char daq_name[] = "D1";
            dim_params one{};
            one.name = daq_name;
            one.num = 1;
            one.params = &spectrum;
            std::vector<dim_params*> parameters{&one};
            std::string text;
            const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
            int code = -1;
            try {
              code = dump_chan_desr(&list.list, file->name(), Mode, Format, nowhere, &text,
                                    &parameters);
            } catch (...) {
              close(nowhere);
              throw;
            }
            close(nowhere);
            tell(result, code, std::to_string(text.size()));
            if (result != nullptr)
              *result += std::to_string(std::filesystem::file_size(file->path()));
          }};
}

template <int Mode, int Format>
operation dump_of_text(const char* name) {
  const auto file = std::make_shared<temporary_file>("");
  return {name, [file](std::string* result) {
            std::string text = all_elements;
            const int code = dump_chan_desr_from_xml(text.data(), file->name(), Mode, Format, -1);
            tell(result, code, "");
            if (result != nullptr)
              *result += std::to_string(std::filesystem::file_size(file->path()));
          }};
}

template <class Generation>
auto two_entries() {
  auto list = std::make_shared<typename Generation::list>();
  for (int n = 0; n < 2; ++n) {
    list->get()->push_back(new_entry<typename Generation::entry>(n, "P", 0.5F, 1e30F));
  }
  return list;
}

template <class Generation, int Mode>
operation dictionary_dump(const char* name) {
  const auto file = std::make_shared<temporary_file>("");
  const auto list = two_entries<Generation>();
  return {name, [file, list](std::string* result) {
            std::string text;
            std::vector<typename Generation::entry*>* entries = list->get();
            const int code = Generation::dump(entries, file->name(), Mode, -1, &text);
            tell(result, code, std::to_string(text.size()));
            if (result != nullptr)
              *result += std::to_string(std::filesystem::file_size(file->path()));
          }};
}

template <class Generation, int Mode>
operation dictionary_dump_of_text(const char* name) {
  const auto file = std::make_shared<temporary_file>("");
  return {name,
          [file](std::string* result) {
            std::string text = all_of_a_dictionary;
            const int code = Generation::dump(text.data(), file->name(), Mode, -1);
            tell(result, code, "");
            if (result != nullptr)
              *result += std::to_string(std::filesystem::file_size(file->path()));
          },
          false, true};
}

inline std::vector<operation> writers() {
  return {
      dump_of<DUMP_XML_FILE, ZRT4_FORMAT>("elements written"),
      dump_of<DUMP_XML_FILE, MORV_FORMAT>("variables written"),
      dump_of<DUMP_TXT_FILE, ZRT4_FORMAT>("text written"),
      dump_of<DUMP_TXT_FILE_SHORT, ZRT4_FORMAT>("short text written"),
      dump_of_text<DUMP_XML_FILE, ZRT4_FORMAT>("elements written from a text"),
      dump_of_text<DUMP_XML_FILE, MORV_FORMAT>("variables written from a text"),
      dump_of_text<DUMP_TXT_FILE, ZRT4_FORMAT>("text written from a text"),
      dictionary_dump<older, ENV_INDX_DUMP_XML_FILE>("dictionary written"),
      dictionary_dump<older, ENV_INDX_DUMP_XML_STRING>("dictionary written into a string"),
      dictionary_dump<older, ENV_INDX_DUMP_TXT_FILE>("dictionary written as text"),
      dictionary_dump<y2010, ENV_INDX_DUMP_XML_FILE>("2010 dictionary written"),
      dictionary_dump_of_text<older, ENV_INDX_DUMP_XML_FILE>("dictionary written from a text"),
      dictionary_dump_of_text<y2010, ENV_INDX_DUMP_TXT_FILE>("2010 dictionary from a text"),
      {"channels listed",
       [](std::string* result) {
         records list;
         full_channel(list);
         print_zrt4_chan_descr(&list.list);
         tell(result, 0, "");
       }},
      {"dictionary listed",
       [list = two_entries<older>()](std::string* result) {
         std::vector<zrt4_env_index_dictionary_entry*>* entries = list->get();
         tell(result, dump_env_index_dict(entries, nullptr, 0, -1, nullptr), "");
       }},
      {"channels extended",
       [](std::string* result) {
         std::string text = all_elements;
         zrt4::channel_list list;
         if (parse_descr_list_read(text.data(), list.get(), true, false) != 0) return;
         for (const bool force : {false, true, false}) {
           extend_channel_description(list.get()->front(), list.get()->back(), force);
         }
         tell(result, 0, list);
       }},
  };
}

}  // namespace test

#endif
