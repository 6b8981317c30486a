#include "writing.hh"

#include <string_view>
#include <utility>

#include "arrival.hh"
#include "document_writer.hh"
#include "input_file.hh"
#include "message.hh"
#include "reading.hh"
#include "text_table.hh"
#include "told_lines.hh"
#include "unread.hh"

namespace {

constexpr std::string_view not_arriving = "do not arrive";

/// Records that were written, as they were read back.
template <class List>
struct written_back {
  std::string document;
  List arriving;
};

template <class List, class... How>
composition compose_document(List& list, How... how) {
  const auto written = std::make_shared<written_back<List>>();
  written->document = document_of(list, how...);
  (void)read_written(written->arriving, written->document, how...);  // what is missing is told
  return {rows_of(list), rows_of(written->arriving), written,
          [written] { return std::move(written->document); }};
}

template <class List, class... How>
composition compose_table(List& list, document_form form, How... how) {
  const auto table = std::make_shared<text_table>(list, form);
  return {table->sent(), table->arriving(), table,
          [&list, how...] { return table_of(list, how...); }};
}

template <class List>
written written_in(List& list, document_form form, std::string_view record_name) {
  const composition made = compose(list, form);
  written result;
  for_each_loss(made.sent, made.arriving, record_name, form,
                [&](const loss& each) { result.losses.push_back(each.text); });
  result.content = made.content();
  return result;
}

}  // namespace

written written_form(zrt4::channel_list& list, document_form form) {
  return written_in(list, form, "channel");
}
written written_form(zrt4::env_dictionary& list, document_form form) {
  return written_in(list, form, "entry");
}
written written_form(zrt4::env_dictionary_2010& list, document_form form) {
  return written_in(list, form, "entry");
}

document_form form_of(int dialect) {
  return dialect == MORV_FORMAT ? document_form::variables : document_form::xml;
}

// A document keeps the numbers of types; a table shows masks, as the listing does.
zrt4::types types_for(document_form form) {
  return is_table(form) ? zrt4::types::masks : zrt4::types::numbers;
}

composition compose(zrt4::channel_list& list, document_form form) {
  if (is_table(form)) return compose_table(list, form, form);
  return compose_document(list, form == document_form::variables ? MORV_FORMAT : ZRT4_FORMAT);
}
composition compose(zrt4::env_dictionary& list, document_form form) {
  return is_table(form) ? compose_table(list, form) : compose_document(list);
}
composition compose(zrt4::env_dictionary_2010& list, document_form form) {
  return is_table(form) ? compose_table(list, form) : compose_document(list);
}

bool report_unread(const sources::document& from, document_form form, bool wide) {
  const std::string& name = from.file->name();
  const std::vector<unread> all = unread_in(*from.file, from.kind, {is_table(form), wide});
  tallies alike;
  for (const unread& each : all) {
    if (alike.add(each.kind)) report(name + each.place.shown(), each.text);
  }
  for (const std::string& each : alike.others(not_arriving)) report(name, each);
  return !all.empty();
}

bool report_losses(const sources& from, const composition& made, document_form form,
                   merged_origins* origins) {
  const bool is_dictionary = from.documents.front().kind == document_kind::dictionary;
  told_lines lines(not_arriving);
  for_each_loss(
      made.sent, made.arriving, is_dictionary ? "entry" : "channel", form, [&](const loss& each) {
        lines.add(each.kind, each.property, origin_of(each, origins), [&] { return each.text; });
      });
  lines.report(from);
  return !lines.empty();
}

bool write(const std::function<std::string()>& content, const sources& from, bool is_lossy,
           const target& to) {
  const bool all_well = from.read_cleanly && (to.lossy || !is_lossy);
  if (all_well || is_standard_output(to.name)) {
    write_output(to.name, content(), to.if_protected);
  } else if (from.read_cleanly) {
    report(to.name, "not written, because something would be lost; --lossy writes it all the same");
  } else {
    report(to.name,
           "not written, because not all went well; without -o, standard output takes what there "
           "is");
  }
  return all_well;
}
