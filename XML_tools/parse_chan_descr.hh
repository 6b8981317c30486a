#ifndef PARSE_CHAN_DESCR_HH
#define PARSE_CHAN_DESCR_HH

/// Channel descriptions: names, lookup, copies, release, reading in both dialects, merging,
/// loading, listing and dumping; and the XML declaration and ISO date that every writer uses.
///
/// A list is a vector of pointers to `chan_descr_2010` records that it owns; release the records
/// with `clean_chan_desr_list`. Texts are in the local code page.

#include <ctime>
#include <string>
#include <vector>

#include "event_util.hh"
#include "zrt4_export.hh"

/// Description file formats: the element dialect (root "CHANDESCRIPTIONS"), the variable dialect
/// (root "DAQvariables"), and no dialect at all.
enum { ZRT4_FORMAT = 0, MORV_FORMAT = 1, INVD_FORMAT = 2 };

/// Kinds of variables in the variable dialect: "DaqFloat", "DaqBits", "DaqFloatMatrix".
enum { MORV_TYPE_FLOAT = 0, MORV_TYPE_BITS = 1, MORV_TYPE_ARRAY = 2 };

/// Dump modes, see `dump_chan_desr`.
enum { DUMP_TO_SCREEN = 0, DUMP_TXT_FILE = 1, DUMP_XML_FILE = 2, DUMP_TXT_FILE_SHORT = 3 };

/// Where a `descr_extractor` finds its descriptions: in files, or in XML texts.
enum { EXTR_FROM_FILE = 0, EXTR_FROM_XML = 1 };

/// Rows of `tags`.
enum {
  DESCR_ROOT = 0,
  DESCR_CHAN = 1,
  DESCR_EVTYPE = 2,
  DESCR_STREAM = 3,
  DESCR_PROP = 4,
  DESCR_NAME = 5,
  DESCR_DESC = 6,
  DESCR_UNITS = 7,
  DESCR_SIZE = 8,
  DESCR_BIT = 9,
  DESCR_BIT_NAME = 10,
  DESCR_BIT_DESC = 11,
  DESCR_SB_NAME = 12,
  DESCR_DTYPE = 13,
  DESCR_COUNT = 14,
  DESCR_SETPNT = 15,
  DESCR_SUBSYS = 16,
  DESCR_DBKEY = 17
};

/// Element names of the element dialect: column 0 for a channel and its bits, 1 for a dimension, 2
/// for a statistic; null where there is no such element.
ZRT4_EXPORT extern const char* const tags[18][3];

/// The text of `tags` row `n`, column `m`; null for an empty cell, for `m` outside 0 to 2 and for
/// `n` outside 0 to 13: the rows from DESCR_COUNT on are deliberately not given out.
ZRT4_EXPORT const char* get_chan_descr_root_tag(int n, int m);

/// The first record of `list` (not null) whose `prop_name` is exactly `prop`, or null. The record
/// stays the list's.
ZRT4_EXPORT chan_descr_2010* find_chan_entry(std::vector<chan_descr_2010*>* list, const char* prop);

/// Independent copies, owned by the caller; null for null. The copy of a dimension has a copy of
/// each non-null statistic, and `nstats` counts those.
ZRT4_EXPORT bit_descr* zrt4_clone_bit_descr(bit_descr* in);
ZRT4_EXPORT stat_descr* zrt4_clone_stat_descr(stat_descr* in);
ZRT4_EXPORT dim_descr* zrt4_clone_dim_descr(dim_descr* in);

/// Releases every record of `list` with its sub-records, then empties it; nothing when `list` is
/// null or empty. A record listed twice in a row is released once. The counters say what is owned:
/// entries of a vector whose counter is zero are reported on standard output ("ERROR: nbits = 0,
/// but bits.size() > 0 prop: <prop_name>" and the like) and left alone.
ZRT4_EXPORT void clean_chan_desr_list(std::vector<chan_descr_2010*>* list);

/// Reads channel descriptions in either dialect from `xml`, a zero-terminated text, and appends
/// them to `list`, which is never emptied. With `shift`, event types and data types become masks (1
/// << n; a data type above 31: 0x80000000 + (1 << (n - 32))). With `delete_duplicated`, a channel
/// whose property is already in the list is merged into the record there instead of being appended;
/// the variable dialect always does so. Returns 0; 2 when `list` is null; 1 when the XML library
/// cannot be set up; 1 plus the number of XML errors when the document cannot be started or has
/// another root ("WRONG root tag: ..." on standard error); otherwise the number of XML errors and
/// warnings plus that of "bitTitle" and "dimension" elements without their attribute (each reported
/// on standard error). A "bitTitle" without text is reported on standard output. Records read
/// before an error stay in the list.
ZRT4_EXPORT int parse_descr_list_read(char* xml, std::vector<chan_descr_2010*>* list, bool shift,
                                      bool delete_duplicated);

/// The same for an XML file given by name, with these deliberate differences: `list` must not be
/// null; in the element dialect nothing is merged whatever `delete_duplicated` says, "DIM" keeps
/// the current statistic, "STAT_DESCR" without a statistic is ignored, "STAT_UNITS" needs no
/// dimension; in the variable dialect "evType" is never shifted, duplicates merge all three masks
/// by OR, and a "bitTitle" without text is not reported.
ZRT4_EXPORT int parse_descr_list_readf(char* file, std::vector<chan_descr_2010*>* list, bool shift,
                                       bool delete_duplicated);

/// Completes `in` with what `from`, a description of the same channel, knows: fills what `in`
/// lacks, or, with `force`, replaces wherever `from` has a value. Sub-records are copied, `from` is
/// never changed. Returns true when refused (a null argument or different `prop_name`), else false.
ZRT4_EXPORT bool extend_channel_description(chan_descr_2010* in, chan_descr_2010* from, bool force);

/// Reads the descriptions of a blob (unshifted, duplicates kept) and appends them to `list`.
/// Returns the result of `parse_descr_list_read`, or -1 for a null argument, -3 for an unknown
/// pattern, -4 for a length of 8 or less. The caller guarantees that `length` bytes are there.
ZRT4_EXPORT int zrt4_load_chan_descr(zrt4_xml_chan_descr_header* tab,
                                     std::vector<chan_descr_2010*>* list);

/// Reads the DAQ's master description file (unshifted, duplicates kept) and appends to `list`.
/// Returns the result of `parse_descr_list_readf`, or -1 for a null argument or an empty name.
ZRT4_EXPORT int zrt4_load_master_daq_channel_description_file(std::vector<chan_descr_2010*>* list,
                                                              char* file);

/// Lists the descriptions on standard output, taking `ev_type` and `dtype` as masks; nothing when
/// `list` is null. Counters that disagree with their vectors are reported in the listing.
ZRT4_EXPORT void print_zrt4_chan_descr(std::vector<chan_descr_2010*>* list);

/// Writes the descriptions out, each property once (its first record).
/// `mode`: DUMP_TXT_FILE, full tab-separated text, or DUMP_TXT_FILE_SHORT, one line per channel,
/// both to the file only; DUMP_XML_FILE, a document in the dialect `format` (ZRT4_FORMAT or
/// MORV_FORMAT), delivered to the file, then to `fd`, then appended to `sout`; any other mode
/// writes nothing into the file. `file_name` null or empty: no file; `fd` -1: no descriptor; `sout`
/// null: no string. With no destination at all the listing of `print_zrt4_chan_descr` is printed,
/// whatever the mode. `dims` may be null; in the element dialect it adds parameters to the
/// dimensions of the channels it names. Nothing passed in is changed or kept, except that `sout`
/// grows; without a descriptor, the document is written into the memory of an empty `sout`, so that
/// one string, cleared between dumps, costs new memory but once. Returns 0; 1 when the file cannot
/// be opened; 2 for a null list or an invalid format, or when writing to `fd` failed (then the file
/// is left open and `sout` untouched). Messages go to standard output, the reason of a failed
/// opening to standard error. In short mode each line with a data type also prints an empty line to
/// standard output.
ZRT4_EXPORT int dump_chan_desr(std::vector<chan_descr_2010*>* chdscr_list, char* file_name,
                               int mode, int format, int fd, std::string* sout,
                               std::vector<dim_params*>* dims);

/// Reads `xml` (shifted, duplicates kept) and dumps it as above, without string and parameters.
/// Returns the dump's result, or 3, with "Failed to parse CHANDESCR list" on standard output, when
/// the text cannot be read without error.
ZRT4_EXPORT int dump_chan_desr_from_xml(char* xml, char* file_name, int mode, int format, int fd);

/// Writes `*t`, or the current time, as local time (2021-12-01T13:45:07) into `isodate_str`, a
/// buffer of at least 40 bytes. Does nothing when the buffer is null.
ZRT4_EXPORT void create_isodate(char* isodate_str, time_t* t);
ZRT4_EXPORT void create_isodate(char* isodate_str);

/// Replaces `str` by the XML declaration and a line end. It declares ISO-8859-1.
ZRT4_EXPORT void set_xml_header(std::string& str);

/// Appends the line "\t<isodate>2021-12-01T13:45:07</isodate>\n" with the current local time.
ZRT4_EXPORT void add_iso_date(std::string& str);

#endif
