#ifndef CAMERA_FINDINGS_HH
#define CAMERA_FINDINGS_HH

#include "document_kind.hh"
#include "finding_list.hh"

/// What is found in a camera's file and in its features.
void find_in_camera(input_file& file, const loaded_document& document, finding_list& found);

#endif
