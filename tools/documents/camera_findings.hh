#ifndef CAMERA_FINDINGS_HH
#define CAMERA_FINDINGS_HH

#include "finding_list.hh"

class input_file;

/// What is found in a camera's file.
void find_in_camera(input_file& file, finding_list& found);

#endif
