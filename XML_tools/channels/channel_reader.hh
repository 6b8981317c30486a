#ifndef CHANNEL_READER_HH
#define CHANNEL_READER_HH

// The reader of channel descriptions, for `read_document`: the root tells the dialect.

#include <string_view>
#include <vector>

#include "element_dialect.hh"
#include "parse_chan_descr.hh"
#include "read_document.hh"
#include "variable_dialect.hh"

namespace zrt4::detail {

/// The message has always shown where the table of `tags` keeps the name instead of the name.
template <class Variant>
void tell_no_channels(std::string_view root, const parser_of<Variant>& pull);

template <class Variant>
class channel_reader {
 public:
  channel_reader(std::vector<chan_descr_2010*>* list, bool shift, bool delete_duplicated)
      : elements(list, shift, delete_duplicated), variables(list, shift) {}

  bool root(std::string_view tag, const parser_of<Variant>& pull) {
    if (tag == element_dialect_names::root) {
      format = ZRT4_FORMAT;
    } else if (tag == variable_dialect_names::root) {
      format = MORV_FORMAT;
    } else {
      tell_no_channels<Variant>(tag, pull);
    }
    return format != INVD_FORMAT;
  }

  void step(const char* tag, const char* value, parser_of<Variant>& pull) {
    if (format == ZRT4_FORMAT) {
      elements.step(tag, value);
    } else {
      variables.step(tag, value, pull);
    }
  }

  int errors() const { return variables.errors(); }

 private:
  int format = INVD_FORMAT;
  element_dialect<Variant> elements;
  variable_dialect<Variant> variables;
};

}  // namespace zrt4::detail

#endif
