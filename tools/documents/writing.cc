#include "writing.hh"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "arrival.hh"
#include "document_writer.hh"
#include "input_file.hh"
#include "message.hh"
#include "reading.hh"
#include "text_table.hh"
#include "unread.hh"

namespace {

// Of what is alike, so many are told, and the others are counted.
constexpr std::size_t most_alike = 5;

/// Counts what is alike.
class tallies {
 public:
  /// Whether this one is among those that are told.
  bool add(std::string_view kind) {
    auto at = numbers.find(kind);
    if (at == numbers.end()) at = numbers.emplace(kind, 0).first;
    return ++at->second <= most_alike;
  }

  void report_others(const std::string& file) const {
    for (const auto& [kind, number] : numbers) {
      if (number <= most_alike) continue;
      report(file,
             std::to_string(number - most_alike) + " more of the same kind do not arrive: " + kind);
    }
  }

 private:
  std::map<std::string, std::size_t, std::less<>> numbers;
};

std::string text_of(file_place place) {
  if (place.line == 0) return {};
  return ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
}

/// Which of the records of its property a loss is about: counted from the first, or, where whole
/// records do not arrive, from behind the last, because the first do.
struct told_loss {
  const loss* lost;
  std::size_t from_end;  ///< 0: the first
  std::size_t document = 0;
  file_place place{};
};

std::vector<told_loss> told_of(const std::vector<loss>& all, tallies& alike) {
  std::map<std::string_view, std::size_t> lost_records;
  for (const loss& each : all) {
    if (each.is_record) ++lost_records[each.property];
  }
  std::vector<told_loss> told;
  for (const loss& each : all) {
    const std::size_t from_end = each.is_record ? lost_records[each.property]-- : 0;
    if (alike.add(each.kind)) told.push_back({&each, from_end});
  }
  return told;
}

void find_places(std::vector<told_loss>& told, const sources& from) {
  std::vector<std::string> properties;
  properties.reserve(told.size());
  for (const told_loss& each : told) properties.push_back(each.lost->property);
  for (std::size_t i = 0; i < from.documents.size(); ++i) {
    const sources::document& document = from.documents[i];
    const record_places places(*document.file, document.kind, properties);
    for (told_loss& each : told) {
      const std::vector<file_place>& known = places.of(each.lost->property);
      if (each.place.line != 0 || known.empty()) continue;
      each.document = i;
      const bool from_end = each.from_end != 0 && each.from_end <= known.size();
      each.place = from_end ? known[known.size() - each.from_end] : known.front();
    }
  }
}

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
  for (loss& each : losses_between(made.sent, made.arriving, record_name, form)) {
    result.losses.push_back(std::move(each.text));
  }
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
    if (alike.add(each.kind)) report(name + text_of(each.place), each.text);
  }
  alike.report_others(name);
  return !all.empty();
}

bool report_losses(const sources& from, const composition& made, document_form form) {
  const bool is_dictionary = from.documents.front().kind == document_kind::dictionary;
  const std::vector<loss> all =
      losses_between(made.sent, made.arriving, is_dictionary ? "entry" : "channel", form);
  if (all.empty()) return false;
  tallies alike;
  std::vector<told_loss> told = told_of(all, alike);
  find_places(told, from);
  std::stable_sort(told.begin(), told.end(), [](const told_loss& a, const told_loss& b) {
    return std::tie(a.document, a.place.line, a.place.column) <
           std::tie(b.document, b.place.line, b.place.column);
  });
  for (const told_loss& each : told) {
    report(from.documents[each.document].file->name() + text_of(each.place), each.lost->text);
  }
  alike.report_others(from.documents.front().file->name());
  return true;
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
