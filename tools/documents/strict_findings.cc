#include "strict_findings.hh"

#include <algorithm>
#include <iterator>
#include <set>

#include "grammar_pass.hh"
#include "input_file.hh"
#include "scan.hh"

namespace {

// What these tell of an element is what its grammar would tell, too.
constexpr rule rules_of_form[] = {
    rule::unknown_element,   rule::misspelt_element,  rule::misplaced_element,
    rule::too_early,         rule::loose_element,     rule::nested_record,
    rule::repeated_element,  rule::read_again,        rule::stray_text,
    rule::stray_attribute,   rule::missing_attribute, rule::record_left_out,
    rule::event_skipped,     rule::empty_element,     rule::empty_list,
    rule::not_a_number,      rule::rest_ignored,      rule::out_of_range,
    rule::impossible_number, rule::text_cut,          rule::unknown_event_type,
    rule::unknown_data_type,
};

bool is_of_form(rule what) {
  return std::find(std::begin(rules_of_form), std::end(rules_of_form), what) !=
         std::end(rules_of_form);
}

}  // namespace

void add_strict_findings(input_file& file, document_kind kind, std::vector<finding>& found) {
  const document_grammar* grammar = grammar_of(kind);
  if (grammar == nullptr) return;
  std::set<file_place> told;
  for (const finding& each : found) {
    if (!is_of_form(each.what)) continue;
    told.insert(each.place);
    told.insert(each.places.begin(), each.places.end());
  }
  finding_list deviations;
  grammar_pass pass(*grammar, [&](file_place place, std::string text) {
    if (told.count(place) == 0) deviations.add(rule::beyond_grammar, place, std::move(text));
  });
  scan_document(file.path(), pass, xercesc::SAXParser::Val_Never, true);
  std::vector<finding> added = deviations.take();
  std::move(added.begin(), added.end(), std::back_inserter(found));
  std::stable_sort(found.begin(), found.end(),
                   [](const finding& a, const finding& b) { return a.place < b.place; });
}
