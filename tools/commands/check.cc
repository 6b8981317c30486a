#include "check.hh"

#include <algorithm>
#include <cstdio>

#include "any_list.hh"
#include "byte_findings.hh"
#include "check_output.hh"
#include "damage_advice.hh"
#include "each_file.hh"
#include "mapped_file.hh"
#include "strict_findings.hh"

namespace {

// Also of a document of which nothing can be read a person wants to know what is wrong.
checked_document not_read(input_file& file, const bad_document& reason, std::size_t most) {
  checked_document result;
  result.file = file.name();
  result.errors = 1;
  finding_list found(most);
  const mapped_file document(file.path());
  find_in_bytes(document.content(), found);
  if (found.is_empty()) {
    const xml_error advised = with_advice(document.content(), {reason.what(), reason.place});
    found.add(rule::unreadable, advised.place, advised.text);
  }
  result.found = found.take();
  return result;
}

// What the readers tell is among the findings, with file, line and column.
checked_document check_document(input_file& file, const check_wishes& wishes) {
  refuse_json(file);
  try {
    checked_document result;
    result.file = file.name();
    result.kind = kind_of(file);
    {  // the records are gone before the document is walked through
      any_list list = list_for(*result.kind);
      result.errors = read_plain(list, file, *result.kind).errors;
      result.records = records_of(list).size();
    }
    result.found = findings_of(file, *result.kind, wishes.most, wishes.wide);
    if (wishes.strict) add_strict_findings(file, *result.kind, result.found);
    return result;
  } catch (const bad_document& reason) {
    return not_read(file, reason, wishes.most);
  }
}

/// Leaves the findings that count, and counts them.
finding_count choose(std::vector<finding>& found, const rule_choice& rules) {
  finding_count count;
  const auto end = std::remove_if(found.begin(), found.end(), [&](const finding& each) {
    const auto weight = rules.weight_of(each.what);
    if (weight == severity::error) count.errors += each.count;
    if (weight == severity::warning) count.warnings += each.count;
    return !weight;
  });
  found.erase(end, found.end());
  return count;
}

}  // namespace

exit_code check(const std::vector<std::string>& files, const check_wishes& wishes) {
  const auto output = output_of(wishes);
  check_summary summary;
  const exit_code code = for_each_file(
      files, wishes.jobs, [&](input_file& file) { return check_document(file, wishes); },
      [&](checked_document document) {
        const bool is_explained = document.errors == 0 || !document.found.empty();
        const finding_count count = choose(document.found, wishes.rules);
        output->tell(document, count);
        ++summary.documents;
        if (count.all() != 0) ++summary.with_findings;
        summary.count.errors += count.errors;
        summary.count.warnings += count.warnings;
        return fine_if(count.errors == 0 && is_explained);
      },
      [&](const unusable_file& file) {
        output->tell_unusable(file);
        ++summary.unusable;
      });
  output->end(summary);
  return code;
}

exit_code list_rules() {
  for (const rule_traits& each : all_rules()) {
    std::printf("%-24s %-7s  %s\n", each.name.data(),
                each.weight == severity::error ? "error" : "warning", each.meaning.data());
  }
  return exit_fine;
}
