#ifndef READING_HH
#define READING_HH

// Files of the command line, XML or JSON, read into the library's lists. Of JSON, the records of
// all its documents; it is read as a whole or, with a `bad_document`, not at all. Nothing is
// printed, in whatever thread.

#include <functional>
#include <string>
#include <vector>

#include "received_messages.hh"
#include "zrt4xml.hh"

class input_file;

/// How a file was read.
struct reading {
  int errors = 0;
  std::vector<std::string> messages;       ///< to report; those of XML begin with FILE:LINE:COLUMN
  std::vector<received_message> reported;  ///< what these lines tell
};

reading read_into(zrt4::event_list& list, input_file& file);

/// `dialect` is ZRT4_FORMAT or MORV_FORMAT. In the latter each bit stands once, with its name: its
/// readers make two, of which the first is nameless. As a number, an event type that is not told is
/// `untold_event_type`; as a mask, 0.
reading read_into(zrt4::channel_list& list, input_file& file, int dialect, zrt4::types wanted);

/// The same with numbers of types as the library has them: an event type that is not told is 0.
reading read_plain(zrt4::channel_list& list, input_file& file, int dialect);

/// The readers of the variable dialect make two bits of each title, the first without its name:
/// takes that out of the channels. `read_into` does.
void drop_twins(zrt4::channel_list& list);

reading read_into(zrt4::env_dictionary& list, input_file& file);
reading read_into(zrt4::env_dictionary_2010& list, input_file& file);

/// The library reads a damaged camera file as far as it goes and counts nothing. Here the damage is
/// one error, and the first of it is told.
reading read_into(zrt4::camera_features& list, input_file& file);

/// The same for any `read` of the file that returns the number of errors.
reading read_with_messages(input_file& file, const std::function<int()>& read);

/// What the tool wrote, read back with numbers of types as `read_into` does; returns the number of
/// errors.
int read_written(zrt4::channel_list& list, const std::string& document, int dialect);
int read_written(zrt4::env_dictionary& list, const std::string& document);
int read_written(zrt4::env_dictionary_2010& list, const std::string& document);

/// Reports the messages and the number of errors, if there were any, and what becomes of the rest.
void report_reading(const std::string& file, const reading& result, const std::string& rest);

#endif
