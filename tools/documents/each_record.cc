#include "each_record.hh"

#include <string_view>

#include "any_list.hh"
#include "channel_reader.hh"
#include "input_file.hh"
#include "json_text.hh"

namespace {

namespace library = zrt4::detail;
using variant = zrt4::file_variant;

/// The library's reader, whose records go as soon as the next channel begins.
class passing_reader : public library::channel_reader<variant> {
  using base = library::channel_reader<variant>;

 public:
  passing_reader(zrt4::channel_list& into, const std::function<void(const void*)>& user)
      : base(into.get(), false, false), list(into), use(user) {}

  bool root(std::string_view tag, const library::parser_of<variant>& pull) {
    // The other dialect merges channels into those before.
    is_passed_on = tag == library::element_dialect_names::root;
    return base::root(tag, pull);
  }

  void step(const char* tag, const char* value, library::parser_of<variant>& pull) {
    const bool begins_channel =
        !list.empty() && std::string_view(tag) == library::element_dialect_names::channel;
    if (begins_channel && is_passed_on) pass_on();
    base::step(tag, value, pull);
  }

  void pass_on() {
    for (const chan_descr_2010* each : *list.get()) use(each);
    list.clear();
  }

 private:
  zrt4::channel_list& list;
  const std::function<void(const void*)>& use;
  bool is_passed_on = false;
};

}  // namespace

reading read_each(input_file& file, document_kind kind,
                  const std::function<void(const void*)>& use) {
  if (kind == document_kind::channels && !is_json(file)) {
    zrt4::channel_list list;
    passing_reader reader(list, use);
    reading how = read_with_messages(file, [&] {
      return library::read_document<variant>(file.path(), reader,
                                             library::reader_rules<variant>::if_unusable);
    });
    reader.pass_on();
    return how;
  }
  any_list list = list_for(kind);
  reading how = read_plain(list, file, kind);
  const held_records records = records_of(list);
  for (std::size_t i = 0; i < records.size(); ++i) use(records[i]);
  return how;
}
