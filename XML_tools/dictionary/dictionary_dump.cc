#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "attr_tags_functions.hh"
#include "diagnostics.hh"
#include "record_widths.hh"
#include "parse_chan_descr.hh"
#include "xml_writer.hh"

namespace {

using zrt4::detail::decimal;
using zrt4::detail::env_index_names;
using zrt4::detail::fixed;
using zrt4::detail::general;
using zrt4::detail::generation_2010;
using zrt4::detail::older_generation;
using zrt4::detail::say;

// The tags of a channel take 79 characters, numbers and name the rest. A longer channel only costs
// another allocation.
constexpr std::size_t usual_channel_size = 160;

using output_file = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

template <std::size_t Size>
std::string_view name_in(const char (&field)[Size]) {
  return {field, strnlen(field, Size)};
}

// Files never hold an empty property: their readers would not see the element.
template <class Entry>
std::string_view property_of(const Entry& entry) {
  const std::string_view name = name_in(entry.data.env_prop);
  return name.empty() ? "!!!UNDEFINED!!!" : name;
}

template <class Entry>
void list_entry(int number, const Entry& entry) {
  say(stdout, {"-------------- ", decimal(number), " -----------------\n",  //
               " Index : ", decimal(entry.index), "\n",                     //
               " Channel: ", name_in(entry.data.env_prop),                  //
               " DABS ", general(entry.data.env_ch_abs_delta),              //
               " DREL ", general(entry.data.env_ch_rel_delta), "\n"});
}

template <class Entry>
void write_line(std::FILE* file, const Entry& entry) {
  const std::string_view property = property_of(entry);
  std::fprintf(file, "%d\t%.*s\t%s\t%s\n", static_cast<int>(entry.index),
               static_cast<int>(property.size()), property.data(),
               fixed(entry.data.env_ch_abs_delta).c_str(),
               fixed(entry.data.env_ch_rel_delta).c_str());
}

template <class Entry>
void append_channel(std::string& document, const Entry& entry) {
  using zrt4::detail::append_leaf;
  START_TAGN(document, env_index_names[ENV_INDX_CHAN]);
  append_leaf(document, env_index_names[ENV_INDX_INDX], decimal(entry.index));
  append_leaf(document, env_index_names[ENV_INDX_PROP], property_of(entry));
  append_leaf(document, env_index_names[ENV_INDX_DABS], fixed(entry.data.env_ch_abs_delta));
  append_leaf(document, env_index_names[ENV_INDX_DREL], fixed(entry.data.env_ch_rel_delta));
  END_TAGN(document, env_index_names[ENV_INDX_CHAN]);
}

template <class Entry>
std::string make_document(const std::vector<Entry*>& list, std::string* destination) {
  std::string document = zrt4::detail::begin_document(destination);
  zrt4::detail::expect_length(document, list.size() * usual_channel_size);
  START_TAGN(document, env_index_names[ENV_INDX_ROOT]);
  add_iso_date(document);
  for (const Entry* entry : list) append_channel(document, *entry);
  END_TAGN(document, env_index_names[ENV_INDX_ROOT]);
  zrt4::detail::end_document(document);
  return document;
}

// Opens the file; prints that it did, or why it could not.
output_file create(std::string_view function, const char* name) {
  output_file file(std::fopen(name, "w"), std::fclose);
  const int reason = errno;
  if (file) {
    say(stdout, {function, "  file: '", name, "' has been created\n"});
  } else {
    say(stdout, {function, " failed to open file: '", name, "'\n"});
    errno = reason;
    std::perror("fopen");
  }
  return file;
}

template <class Generation>
int dump(std::vector<typename Generation::entry*>* list, const char* file_name, int mode, int fd,
         std::string* xml_str) {
  if (list == nullptr) {
    say(stdout, {Generation::dump, " invalid argument: '\n"});
    return 2;
  }
  output_file file(nullptr, std::fclose);
  if (file_name != nullptr && *file_name != '\0') {
    file = create(Generation::dump, file_name);
    if (!file) return 1;
  }
  if (!file && xml_str == nullptr && fd == -1) {
    int number = 0;
    for (const auto* entry : *list) list_entry(++number, *entry);
  } else if (mode == ENV_INDX_DUMP_TXT_FILE && file) {
    for (const auto* entry : *list) write_line(file.get(), *entry);
  } else if (mode == ENV_INDX_DUMP_XML_FILE) {
    const std::string document = make_document(*list, nullptr);
    if (file) zrt4::detail::write_document(file.get(), document);
    if (fd != -1 && !zrt4::detail::write_document(fd, document)) {
      say(stdout, {Generation::dump, Generation::write_failed});
      // Deliberately left open, as it always was.
      (void)file.release();
      return 2;
    }
  } else if (mode == ENV_INDX_DUMP_XML_STRING && xml_str != nullptr) {
    *xml_str = make_document(*list, xml_str);
  }
  if (file) {
    file.reset();
    say(stdout, {Generation::dump, "  file: '", file_name, "' has been closed\n"});
  }
  return 0;
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

template <class Generation>
int dump_text(char* xml, const char* file_name, int mode, int fd) {
  owned_entries<typename Generation::entry> entries;
  if (Generation::read_text(xml, &entries.list) != 0) {
    say(stdout, {"Failed to parse ENV INDEX DICT list\n"});
    // What was read until then is deliberately not released, as it never was.
    entries.list.clear();
    return 3;
  }
  return dump<Generation>(&entries.list, file_name, mode, fd, nullptr);
}

}  // namespace

int dump_env_index_dict(std::vector<zrt4_env_index_dictionary_entry*>* list, char* file_name,
                        int mode, int fd, std::string* xml_str) {
  return dump<older_generation>(list, file_name, mode, fd, xml_str);
}

int dump_env_index_dict_2010(std::vector<zrt4_env_index_dictionary_entry_2010*>* list,
                             char* file_name, int mode, int fd, std::string* xml_str) {
  return dump<generation_2010>(list, file_name, mode, fd, xml_str);
}

int dump_env_index_dict(char* xml, char* file_name, int mode, int fd) {
  return dump_text<older_generation>(xml, file_name, mode, fd);
}

int dump_env_index_dict_2010(char* xml, char* file_name, int mode, int fd) {
  return dump_text<generation_2010>(xml, file_name, mode, fd);
}
