#ifndef READING_HH
#define READING_HH

// Files of the command line, read into the library's lists. Each returns the number of errors;
// those of XML are reported as FILE:LINE:COLUMN.

#include <functional>

#include "zrt4xml.hh"

class input_file;

int read_into(zrt4::event_list& list, input_file& file);

/// `dialect` is ZRT4_FORMAT or MORV_FORMAT.
int read_into(zrt4::channel_list& list, input_file& file, int dialect, zrt4::types wanted);

int read_into(zrt4::env_dictionary& list, input_file& file);
int read_into(zrt4::env_dictionary_2010& list, input_file& file);

/// Neither counts nor reports XML errors.
int read_into(zrt4::camera_features& list, input_file& file);

/// The same for any `read` of the file.
int read_and_report(input_file& file, const std::function<int()>& read);

#endif
