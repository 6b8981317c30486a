#include "findings.hh"

#include "byte_findings.hh"
#include "camera_findings.hh"
#include "damage_advice.hh"
#include "input_file.hh"
#include "mapped_file.hh"
#include "record_check.hh"

namespace {

void find_in_records(input_file& file, const known_elements& known, finding_list& found) {
  record_check pass(known, found);
  pass.walk(file.path());
  pass.finish();
}

}  // namespace

std::vector<finding> findings_of(input_file& file, document_kind kind, std::size_t most,
                                 bool wide) {
  const bool is_wide = wide && kind == document_kind::dictionary;
  finding_list found(most);
  if (kind == document_kind::camera) {
    find_in_camera(file, found);
  } else {
    find_in_records(file, is_wide ? known_in_wide_dictionary : traits_of(kind).elements, found);
  }
  const mapped_file document(file.path());
  find_in_bytes(document.content(), found);
  const bool is_told = found.has(rule::invalid_bytes) || found.has(rule::encoding_conflict);
  if (is_told) found.remove(rule::damage, is_about_bytes);
  if (found.has(rule::damage)) add_damage_advice(document.content(), found);
  return found.take();
}
