#include <cstdio>
#include <string_view>

#include "diagnostics.hh"
#include "element_dialect.hh"
#include "parse_chan_descr.hh"
#include "read_document.hh"
#include "reader_rules.hh"
#include "variable_dialect.hh"

namespace {

using zrt4::detail::parser_of;

constexpr std::string_view element_root = zrt4::detail::element_dialect_names::root;
constexpr std::string_view variable_root = zrt4::detail::variable_dialect_names::root;

template <class Variant>
class channel_reader {
 public:
  channel_reader(std::vector<chan_descr_2010*>* list, bool shift, bool delete_duplicated)
      : elements(list, shift, delete_duplicated), variables(list, shift) {}

  bool root(std::string_view tag, const parser_of<Variant>& pull) {
    if (tag == element_root) {
      format = ZRT4_FORMAT;
    } else if (tag == variable_root) {
      format = MORV_FORMAT;
    } else {
      tell_wrong_root(tag, pull);
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
  // The message has always shown where the table keeps the name instead of the name.
  static void tell_wrong_root(std::string_view tag, const parser_of<Variant>& pull) {
    char address[2 + 2 * sizeof(void*) + 1];
    std::snprintf(address, sizeof address, "%p", static_cast<const void*>(tags[DESCR_ROOT]));
    zrt4::detail::tell_wrong_root(
        {"WRONG root tag: '", tag, "' must be '", address, " or ", variable_root, "'\n"}, pull);
  }

  int format = INVD_FORMAT;
  zrt4::detail::element_dialect<Variant> elements;
  zrt4::detail::variable_dialect<Variant> variables;
};

template <class Variant>
int read_channels(char* source, std::vector<chan_descr_2010*>* list, bool shift,
                  bool delete_duplicated) {
  using rules = zrt4::detail::reader_rules<Variant>;
  if (rules::refuses_null_list && list == nullptr) return 2;
  channel_reader<Variant> reader(list, shift, delete_duplicated);
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
