#include "parse_env_index_dictionary.hh"

#include "SAX_pull_parser.hh"
#include "dictionary_dump.hh"
#include "dictionary_reader.hh"
#include "record_widths.hh"

using zrt4::file_variant;
using zrt4::memory_variant;
using zrt4::detail::dump_dictionary;
using zrt4::detail::dump_dictionary_text;
using zrt4::detail::narrow_records;
using zrt4::detail::read_dictionary;
using zrt4::detail::wide_records;

using narrow_list = std::vector<zrt4_env_index_dictionary_entry*>;
using wide_list = std::vector<zrt4_env_index_dictionary_entry_2010*>;

int parse_env_index_dict_list_read(char* xml, narrow_list* list) {
  return read_dictionary<narrow_records, memory_variant>(xml, list);
}

int parse_env_index_dict_list_read_2010(char* xml, wide_list* list) {
  return read_dictionary<wide_records, memory_variant>(xml, list);
}

int parse_env_index_dict_readf(char* file, narrow_list* list) {
  return read_dictionary<narrow_records, file_variant>(file, list);
}

int parse_env_index_dict_readf_2010(char* file, wide_list* list) {
  return read_dictionary<wide_records, file_variant>(file, list);
}

int dump_env_index_dict(narrow_list* list, char* file_name, int mode, int fd,
                        std::string* xml_str) {
  return dump_dictionary<narrow_records>(list, file_name, mode, fd, xml_str);
}

int dump_env_index_dict_2010(wide_list* list, char* file_name, int mode, int fd,
                             std::string* xml_str) {
  return dump_dictionary<wide_records>(list, file_name, mode, fd, xml_str);
}

int dump_env_index_dict(char* xml, char* file_name, int mode, int fd) {
  return dump_dictionary_text<narrow_records>(xml, file_name, mode, fd);
}

int dump_env_index_dict_2010(char* xml, char* file_name, int mode, int fd) {
  return dump_dictionary_text<wide_records>(xml, file_name, mode, fd);
}
