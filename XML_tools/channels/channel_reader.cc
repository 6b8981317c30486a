#include <cstdio>
#include <string_view>

#include "diagnostics.hh"
#include "parse_chan_descr.hh"
#include "element_dialect.hh"
#include "reader_rules.hh"
#include "variable_dialect.hh"
#include "read_document.hh"

namespace {

constexpr std::string_view variable_root = "DAQvariables";

template <class Rules>
class channel_reader {
 public:
  template <class Input>
  static constexpr bool keeps_unusable_parser = Rules::keeps_unusable_parser;

  channel_reader(std::vector<chan_descr_2010*>* list, bool shift, bool delete_duplicated)
      : elements(list, shift, delete_duplicated), variables(list, shift) {}

  bool root(std::string_view tag) {
    if (tag == tags[DESCR_ROOT][0]) {
      format = ZRT4_FORMAT;
    } else if (tag == variable_root) {
      format = MORV_FORMAT;
    } else {
      complain(tag);
    }
    return format != INVD_FORMAT;
  }

  void step(const char* tag, const char* value, typename Rules::input::parser& pull) {
    if (format == ZRT4_FORMAT) {
      elements.step(tag, value);
    } else {
      variables.step(tag, value, pull);
    }
  }

  int errors() const { return variables.errors(); }

 private:
  // The message has always shown where the table keeps the name instead of the name.
  static void complain(std::string_view tag) {
    char address[2 + 2 * sizeof(void*) + 1];
    std::snprintf(address, sizeof address, "%p", static_cast<const void*>(tags[DESCR_ROOT]));
    zrt4::detail::say(
        stderr, {"WRONG root tag: '", tag, "' must be '", address, " or ", variable_root, "'\n"});
  }

  int format = INVD_FORMAT;
  zrt4::detail::element_dialect<Rules> elements;
  zrt4::detail::variable_dialect<Rules> variables;
};

template <class Rules>
int read_channels(char* source, std::vector<chan_descr_2010*>* list, bool shift,
                  bool delete_duplicated) {
  if (Rules::refuses_null_list && list == nullptr) return 2;
  channel_reader<Rules> reader(list, shift, delete_duplicated);
  return zrt4::detail::read_document<typename Rules::input>(source, reader);
}

}  // namespace

int parse_descr_list_read(char* xml, std::vector<chan_descr_2010*>* list, bool shift,
                          bool delete_duplicated) {
  return read_channels<zrt4::detail::memory_reader>(xml, list, shift, delete_duplicated);
}

int parse_descr_list_readf(char* file, std::vector<chan_descr_2010*>* list, bool shift,
                           bool delete_duplicated) {
  return read_channels<zrt4::detail::file_reader>(file, list, shift, delete_duplicated);
}
