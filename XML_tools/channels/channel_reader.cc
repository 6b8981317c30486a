#include "channel_reader.hh"

#include <cstdio>
#include <string_view>

#include "diagnostics.hh"
#include "parse_chan_descr.hh"
#include "reader_rules.hh"

namespace zrt4::detail {

template <class Variant>
void tell_no_channels(std::string_view root, const parser_of<Variant>& pull) {
  char address[2 + 2 * sizeof(void*) + 1];
  std::snprintf(address, sizeof address, "%p", static_cast<const void*>(tags[DESCR_ROOT]));
  tell_wrong_root({"WRONG root tag: '", root, "' must be '", address, " or ",
                   variable_dialect_names::root, "'\n"},
                  pull);
}

template void tell_no_channels<memory_variant>(std::string_view, const SAX_Memory_Parser&);
template void tell_no_channels<file_variant>(std::string_view, const SAX_File_Parser&);

}  // namespace zrt4::detail

namespace {

template <class Variant>
int read_channels(char* source, std::vector<chan_descr_2010*>* list, bool shift,
                  bool delete_duplicated) {
  using rules = zrt4::detail::reader_rules<Variant>;
  if (rules::refuses_null_list && list == nullptr) return 2;
  zrt4::detail::channel_reader<Variant> reader(list, shift, delete_duplicated);
  return zrt4::detail::read_document<Variant>(source, reader, rules::if_unusable);
}

}  // namespace

int parse_descr_list_read(char* xml, std::vector<chan_descr_2010*>* list, bool shift,
                          bool delete_duplicated) {
  return read_channels<zrt4::memory_variant>(xml, list, shift, delete_duplicated);
}

int parse_descr_list_readf(char* file, std::vector<chan_descr_2010*>* list, bool shift,
                           bool delete_duplicated) {
  return read_channels<zrt4::file_variant>(file, list, shift, delete_duplicated);
}
