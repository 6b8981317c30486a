#include "findings.hh"

#include "camera_findings.hh"
#include "input_file.hh"
#include "record_check.hh"

namespace {

void find_in_records(input_file& file, const known_elements& known, finding_list& found) {
  record_check pass(known, found);
  pass.walk(file.path());
  pass.finish();
}

}  // namespace

std::vector<finding> findings_of(input_file& file, document_kind kind,
                                 const loaded_document& document) {
  finding_list found;
  if (kind == document_kind::camera) {
    find_in_camera(file, document, found);
  } else {
    find_in_records(file, traits_of(kind).elements, found);
  }
  return found.take();
}
