#ifndef PARSE_ENV_INDEX_DICTIONARY_HH
#define PARSE_ENV_INDEX_DICTIONARY_HH

/// Environment index dictionaries: which slow property sits at which index, with its change
/// thresholds; in the older (80-character) and the 2010 (256-character) record width.
///
/// Entries are plain records from `malloc`: the caller releases each with `free`. Texts are in the
/// local code page.

#include <cstdint>
#include <string>
#include <vector>

#include "event.hh"
#include "zrt4_export.hh"

/// Element names "ENVINDEXDICT", "CHANNEL", "INDEX", "PROP", "DABS", "DREL", in this order.
enum {
  ENV_INDX_ROOT = 0,
  ENV_INDX_CHAN = 1,
  ENV_INDX_INDX = 2,
  ENV_INDX_PROP = 3,
  ENV_INDX_DABS = 4,
  ENV_INDX_DREL = 5
};

/// Dump modes, see `dump_env_index_dict`.
enum {
  ENV_INDX_DUMP_TO_SCREEN = 0,
  ENV_INDX_DUMP_TXT_FILE = 1,
  ENV_INDX_DUMP_XML_FILE = 2,
  ENV_INDX_DUMP_XML_STRING = 3
};

struct zrt4_env_index_dictionary_entry {
  std::int32_t index;
  zrt4_env_dictionary_block data;
};

struct zrt4_env_index_dictionary_entry_2010 {
  std::int32_t index;
  zrt4_env_dictionary_block_2010 data;
};

/// Read a dictionary from a zero-terminated text, or from a file given by name, and append its
/// entries to `list`, which is never emptied. A property name is cut to 79 or 255 characters.
/// Return 0; 1 when the XML library cannot be set up; 1 plus the number of XML errors when the
/// document cannot be started or its root is not "ENVINDEXDICT" ("WRONG root tag: '<root>' must be
/// 'ENVINDEXDICT'" on standard error); otherwise the number of XML errors and warnings. Entries
/// read before an error stay in the list. When memory runs out, "Failed to allocate memory for
/// <record>" goes to standard output and the channel is skipped. A channel that names its property
/// twice after its index (or its index twice after its property) is appended twice: the list then
/// holds one entry at two places, to be freed once.
ZRT4_EXPORT int parse_env_index_dict_list_read(char* xml,
                                               std::vector<zrt4_env_index_dictionary_entry*>* list);
ZRT4_EXPORT int parse_env_index_dict_list_read_2010(
    char* xml, std::vector<zrt4_env_index_dictionary_entry_2010*>* list);
ZRT4_EXPORT int parse_env_index_dict_readf(char* file,
                                           std::vector<zrt4_env_index_dictionary_entry*>* list);
ZRT4_EXPORT int parse_env_index_dict_readf_2010(
    char* file, std::vector<zrt4_env_index_dictionary_entry_2010*>* list);

/// Write a dictionary out. `mode`: ENV_INDX_DUMP_TXT_FILE, tab-separated text to the file;
/// ENV_INDX_DUMP_XML_FILE, a document to the file, then to the descriptor `fd`;
/// ENV_INDX_DUMP_XML_STRING, the document in place of what `xml_str` held (in its memory when it is
/// empty); any other mode writes nothing into the file. `file_name` null or empty: no file; `fd`
/// -1: no descriptor; `xml_str` null: no string. With no destination at all the entries are listed
/// on standard output, whatever the mode. A file is created whatever the mode, and its creation and
/// closing are told on standard output. An empty property is written as "!!!UNDEFINED!!!" (but
/// listed as it is). Return 0; 1 when the file cannot be opened; 2 for a null list, or when writing
/// to `fd` failed (then the file is left open). Messages go to standard output, the reason of a
/// failed opening to standard error.
ZRT4_EXPORT int dump_env_index_dict(std::vector<zrt4_env_index_dictionary_entry*>* list,
                                    char* file_name, int mode, int fd, std::string* xml_str);
ZRT4_EXPORT int dump_env_index_dict_2010(std::vector<zrt4_env_index_dictionary_entry_2010*>* list,
                                         char* file_name, int mode, int fd, std::string* xml_str);

/// Read the dictionary of a zero-terminated text and dump it as above, without string. Return the
/// dump's result, or 3, with "Failed to parse ENV INDEX DICT list" on standard output, when the
/// text cannot be read without error (the entries read until then are deliberately not freed).
ZRT4_EXPORT int dump_env_index_dict(char* xml, char* file_name, int mode, int fd);
ZRT4_EXPORT int dump_env_index_dict_2010(char* xml, char* file_name, int mode, int fd);

static_assert(sizeof(zrt4_env_index_dictionary_entry) == 92);
static_assert(sizeof(zrt4_env_index_dictionary_entry_2010) == 268);

#endif
