#ifndef PARSE_ENV_INDEX_DICTIONARY_HH
#define PARSE_ENV_INDEX_DICTIONARY_HH

/// Environment index dictionaries: which slow property sits at which index, with its change
/// thresholds; in the older (80-character) and the 2010 (256-character) record width.
///
/// Entries are plain records from `malloc`: the caller releases each with `free`. Texts are in the
/// local code page. What holds for the whole library stands in docs/contract.md.

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

/// Read a dictionary from a zero-terminated text (null: an empty one), or from a file given by name
/// (null: an empty name, which cannot be opened), and append its entries to `list`, which must not
/// be null and is never emptied. docs/environment_dictionaries.md describes the elements. A
/// property name is cut to 79 or 255 bytes. Thresholds are read with the decimal point of
/// LC_NUMERIC.
///
/// Return
/// - 0 when the document was read without an error;
/// - 1 when the XML library cannot be set up;
/// - 1 plus the number of XML errors when the document cannot be started, when it ends or fails
///   before the start tag of its root is complete, or when its root is not "ENVINDEXDICT";
/// - otherwise the number of XML errors and warnings.
/// Entries read before an error stay in the list. XML errors and "WRONG root tag: '<root>' must be
/// 'ENVINDEXDICT'" go to standard error. When there is no memory for an entry, "Failed to allocate
/// memory for <record>" goes to standard output, the channel is skipped, and the result does not
/// tell.
///
/// A channel that names its property twice after its index (or its index twice after its property)
/// is appended twice: the list then holds one entry at two places, one behind the other, to be
/// freed once.
///
/// Kept unreleased: the parser, with its use of the XML library, when that library cannot be set
/// up; and the entry of the last channel, when it has no index or no property.
ZRT4_EXPORT int parse_env_index_dict_list_read(char* xml,
                                               std::vector<zrt4_env_index_dictionary_entry*>* list);
ZRT4_EXPORT int parse_env_index_dict_list_read_2010(
    char* xml, std::vector<zrt4_env_index_dictionary_entry_2010*>* list);
ZRT4_EXPORT int parse_env_index_dict_readf(char* file,
                                           std::vector<zrt4_env_index_dictionary_entry*>* list);
ZRT4_EXPORT int parse_env_index_dict_readf_2010(
    char* file, std::vector<zrt4_env_index_dictionary_entry_2010*>* list);

/// Write a dictionary out, every entry in the order of the list.
///
/// `file_name` null or empty: no file; otherwise the file is created, or emptied, whatever `mode`,
/// and "<function>  file: '<name>' has been created" and "... has been closed" go to standard
/// output. `fd` -1: no descriptor. `xml_str` null: no string. With no destination at all, every
/// mode lists the entries on standard output instead, numbered from 1, with thresholds of six
/// significant digits and a decimal point whatever the locale.
///
/// `mode`:
/// - ENV_INDX_DUMP_TXT_FILE, tab-separated text, goes to the file only; without a file nothing is
///   written;
/// - ENV_INDX_DUMP_XML_FILE, a document, goes to the file, then to `fd`;
/// - ENV_INDX_DUMP_XML_STRING, the same document, takes the place of what `xml_str` held, in the
///   memory of `xml_str` when it is empty; a file or a descriptor gets nothing;
/// - any other mode writes nothing.
/// Thresholds are written with six decimals and the decimal point of LC_NUMERIC. Names are written
/// as they are, without escaping, an empty one as "!!!UNDEFINED!!!" (but listed as it is).
///
/// Return
/// - 0, also when the file takes no more: nothing tells;
/// - 1 when the file cannot be opened: "<function> failed to open file: '<name>'" on standard
///   output and the reason, by `perror`, on standard error;
/// - 2 for a null list, before anything is opened: "<function> invalid argument: '" on standard
///   output;
/// - 2 when writing to `fd` fails: "dump_env_index_dict() failed to write " or
///   "dump_env_index_dict_2010()  failed to write" on standard output. Then the file has the
///   document and is left open, which is kept. A write that takes a part is continued.
/// The list stays the caller's.
ZRT4_EXPORT int dump_env_index_dict(std::vector<zrt4_env_index_dictionary_entry*>* list,
                                    char* file_name, int mode, int fd, std::string* xml_str);
ZRT4_EXPORT int dump_env_index_dict_2010(std::vector<zrt4_env_index_dictionary_entry_2010*>* list,
                                         char* file_name, int mode, int fd, std::string* xml_str);

/// Read the dictionary of a zero-terminated text, dump it as above, without string, and free it.
/// Return the dump's result; or 3, with "Failed to parse ENV INDEX DICT list" on standard output,
/// when the text cannot be read without an error. The entries read until then are kept unreleased,
/// beside what the reader keeps.
ZRT4_EXPORT int dump_env_index_dict(char* xml, char* file_name, int mode, int fd);
ZRT4_EXPORT int dump_env_index_dict_2010(char* xml, char* file_name, int mode, int fd);

static_assert(sizeof(zrt4_env_index_dictionary_entry) == 92);
static_assert(sizeof(zrt4_env_index_dictionary_entry_2010) == 268);

#endif
