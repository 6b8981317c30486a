#include "dictionary_dump.hh"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "SAX_pull_parser.hh"
#include "attr_tags_functions.hh"
#include "diagnostics.hh"
#include "dictionary_fields.hh"
#include "dictionary_reader.hh"
#include "document_head.hh"
#include "number_text.hh"
#include "record_widths.hh"
#include "xml_writer.hh"

namespace {

using zrt4::message_severity;
using zrt4::message_topic;
using zrt4::detail::decimal;
using zrt4::detail::dictionary_fields;
using zrt4::detail::env_index_names;
using zrt4::detail::fixed;
using zrt4::detail::general;
using zrt4::detail::number_text;
using zrt4::detail::place;
using zrt4::detail::say;
using zrt4::detail::tell;
using zrt4::detail::with_value;

// The tags of a channel take 79 characters, numbers and name the rest. A longer channel only costs
// another allocation.
constexpr std::size_t usual_channel_size = 160;

using output_file = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

template <std::size_t Size>
std::string_view name_in(const char (&field)[Size]) {
  return {field, strnlen(field, Size)};
}

template <class Entry>
void list_entry(int number, const Entry& entry) {
  say(stdout, {"-------------- ", decimal(number), " -----------------\n",  //
               " Index : ", decimal(entry.index), "\n",                     //
               " Channel: ", name_in(entry.data.env_prop),                  //
               " DABS ", general(entry.data.env_ch_abs_delta),              //
               " DREL ", general(entry.data.env_ch_rel_delta), "\n"});
}

// What a file holds of a field.
number_text as_text(std::int32_t index) {
  return decimal(index);
}
number_text as_text(float threshold) {
  return fixed(static_cast<double>(threshold));
}
template <std::size_t Size>
std::string_view as_text(const char (&property)[Size]) {
  const std::string_view name = name_in(property);
  return name.empty() ? "!!!UNDEFINED!!!" : name;  // readers would not see an empty element
}

template <class Entry>
void write_line(std::FILE* file, const Entry& entry) {
  const char* separator = "";
  for (const auto& field : dictionary_fields<Entry>) {
    with_value(field.member, entry, [&](const auto& value) {
      const auto text = as_text(value);
      const std::string_view shown = text;
      std::fprintf(file, "%s%.*s", separator, static_cast<int>(shown.size()), shown.data());
    });
    separator = "\t";
  }
  std::fputc('\n', file);
}

template <class Entry>
void append_channel(std::string& document, const Entry& entry) {
  START_TAGN(document, env_index_names[ENV_INDX_CHAN]);
  for (const auto& field : dictionary_fields<Entry>) {
    with_value(field.member, entry, [&](const auto& value) {
      zrt4::detail::append_leaf(document, field.element, as_text(value));
    });
  }
  END_TAGN(document, env_index_names[ENV_INDX_CHAN]);
}

template <class Entry>
std::string make_document(const std::vector<Entry*>& list, std::string* destination) {
  std::string document = zrt4::detail::begin_document(destination);
  zrt4::detail::expect_length(document, list.size() * usual_channel_size);
  START_TAGN(document, env_index_names[ENV_INDX_ROOT]);
  zrt4::detail::append_date_line(document);
  for (const Entry* entry : list) append_channel(document, *entry);
  END_TAGN(document, env_index_names[ENV_INDX_ROOT]);
  zrt4::detail::end_document(document);
  return document;
}

// Opens the file; tells that it did, or why it could not.
output_file create(std::string_view function, const char* name) {
  output_file file(std::fopen(name, "w"), std::fclose);
  if (file) {
    tell({message_topic::file_created, message_severity::remark, stdout},
         {function, "  file: '", name, "' has been created\n"}, [name] { return place{name}; });
  } else {
    zrt4::detail::tell_not_opened(function, name);
  }
  return file;
}

// Entries from a reader. A channel that named its property twice is listed twice, in a row.
template <class Entry>
struct owned_entries {
  std::vector<Entry*> list;

  owned_entries() = default;
  owned_entries(const owned_entries&) = delete;
  owned_entries& operator=(const owned_entries&) = delete;
  ~owned_entries() {
    list.erase(std::unique(list.begin(), list.end()), list.end());
    for (Entry* entry : list) std::free(entry);
  }
};

}  // namespace

template <class Width>
int zrt4::detail::dump_dictionary(std::vector<typename Width::entry*>* list, const char* file_name,
                                  int mode, int fd, std::string* xml_str) {
  if (list == nullptr) {
    tell({message_topic::invalid_argument, message_severity::error, stdout},
         {Width::dump, " invalid argument: '\n"});
    return 2;
  }
  output_file file(nullptr, std::fclose);
  if (file_name != nullptr && *file_name != '\0') {
    file = create(Width::dump, file_name);
    if (!file) return 1;
  }
  if (!file && xml_str == nullptr && fd == -1) {
    int number = 0;
    for (const auto* entry : *list) list_entry(++number, *entry);
  } else if (mode == ENV_INDX_DUMP_TXT_FILE && file) {
    for (const auto* entry : *list) write_line(file.get(), *entry);
  } else if (mode == ENV_INDX_DUMP_XML_FILE) {
    const std::string document = make_document(*list, nullptr);
    if (file) write_document(file.get(), document);
    if (fd != -1 && !write_document(fd, document)) {
      tell({message_topic::cannot_write, message_severity::error, stdout},
           {Width::dump, Width::write_failed});
      // Deliberately left open, as it always was.
      (void)file.release();
      return 2;
    }
  } else if (mode == ENV_INDX_DUMP_XML_STRING && xml_str != nullptr) {
    *xml_str = make_document(*list, xml_str);
  }
  if (file) {
    file.reset();
    tell({message_topic::file_closed, message_severity::remark, stdout},
         {Width::dump, "  file: '", file_name, "' has been closed\n"},
         [file_name] { return place{file_name}; });
  }
  return 0;
}

template <class Width>
int zrt4::detail::dump_dictionary_text(char* xml, const char* file_name, int mode, int fd) {
  owned_entries<typename Width::entry> entries;
  if (read_dictionary<Width, memory_variant>(xml, &entries.list) != 0) {
    tell({message_topic::not_read, message_severity::error, stdout},
         {"Failed to parse ENV INDEX DICT list\n"});
    // What was read until then is deliberately not released, as it never was.
    entries.list.clear();
    return 3;
  }
  return dump_dictionary<Width>(&entries.list, file_name, mode, fd, nullptr);
}

namespace zrt4::detail {

template int dump_dictionary<narrow_records>(std::vector<zrt4_env_index_dictionary_entry*>*,
                                             const char*, int, int, std::string*);
template int dump_dictionary<wide_records>(std::vector<zrt4_env_index_dictionary_entry_2010*>*,
                                           const char*, int, int, std::string*);
template int dump_dictionary_text<narrow_records>(char*, const char*, int, int);
template int dump_dictionary_text<wide_records>(char*, const char*, int, int);

}  // namespace zrt4::detail
