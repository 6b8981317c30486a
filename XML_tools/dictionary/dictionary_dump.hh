#ifndef DICTIONARY_DUMP_HH
#define DICTIONARY_DUMP_HH

#include <string>
#include <vector>

namespace zrt4::detail {

/// `dump_env_index_dict`, for records of `Width` (see record_widths.hh).
template <class Width>
int dump_dictionary(std::vector<typename Width::entry*>* list, const char* file_name, int mode,
                    int fd, std::string* xml_str);

/// The same for a dictionary that is read from the text `xml` first.
template <class Width>
int dump_dictionary_text(char* xml, const char* file_name, int mode, int fd);

}  // namespace zrt4::detail

#endif
