#ifndef PARSE_CHAN_DESCR_HH
#define PARSE_CHAN_DESCR_HH

/// Channel descriptions: names, lookup, copies, release, reading in both dialects, merging,
/// loading, listing and dumping; and the XML declaration and ISO date that every writer uses.
///
/// A list is a vector of pointers to `chan_descr_2010` records that it owns; release the records
/// with `clean_chan_desr_list`. Texts of records are in the local code page and end with
/// a zero inside their array; longer ones are cut. What holds for the whole library
/// (results, null arguments, numbers, encodings, streams, threads) stands in docs/contract.md.

#include <ctime>
#include <string>
#include <vector>

#include "event_util.hh"
#include "zrt4_export.hh"

/// Description file formats: the element dialect (root "CHANDESCRIPTIONS"), the variable dialect
/// (root "DAQvariables"), and no dialect at all, which `dump_chan_desr` refuses.
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

/// The first record of `list` whose `prop_name` is exactly `prop`, or null. Neither argument may be
/// null; null entries are skipped. The record stays the list's. Takes a walk of the list.
ZRT4_EXPORT chan_descr_2010* find_chan_entry(std::vector<chan_descr_2010*>* list, const char* prop);

/// Independent copies for the caller to own; null for null. Release them with `delete`, unless they
/// are added to a channel, which then owns them. The copy of a dimension has a copy of each
/// statistic that is not null; its `nstats` counts those, and `delete` does not release them.
ZRT4_EXPORT bit_descr* zrt4_clone_bit_descr(bit_descr* in);
ZRT4_EXPORT stat_descr* zrt4_clone_stat_descr(stat_descr* in);
ZRT4_EXPORT dim_descr* zrt4_clone_dim_descr(dim_descr* in);

/// Releases every record of `list` with its sub-records, then empties it; nothing when `list` is
/// null or empty. A record that stands at several places one behind the other is released once.
/// The counters say what is owned: where `nbits`, `ndims` or `nstats` is zero beside a vector that
/// is not empty, the entries of that vector are left alone, and a line on standard output says so:
///
///     ERROR: nbits = 0, but bits.size() > 0 prop: <prop_name>
///     ERROR: ndims = 0, but dims.size() > 0 prop: <prop_name>
///     ERROR: nstats = 0, but stats.size() > 0 (<stats.size()>) prop: <prop_name>
///
/// Any other counter releases the whole vector, whatever its size.
ZRT4_EXPORT void clean_chan_desr_list(std::vector<chan_descr_2010*>* list);

/// Reads channel descriptions in either dialect from `xml`, a zero-terminated text (null: an empty
/// one), and appends them to `list`, which is never emptied. docs/channel_descriptions.md describes
/// the elements.
///
/// `shift`: event types and data types become masks. Event type n becomes 1 << n; data type n up to
/// 31 becomes 1 << n, one above 31 becomes 0x80000000 + (1 << (n - 32)) in 32 bits, so that 63
/// becomes 0. Shift counts are taken modulo 32.
///
/// `delete_duplicated`: in the element dialect a channel whose property is in the list already is
/// merged into the record there, and the rest of its elements is ignored; without it the channel is
/// appended like any other. The variable dialect always merges. Merging joins the streams by OR and
/// takes the event type and the data type where the record in the list has 0.
///
/// Returns
/// - 0 when the document was read without an error;
/// - 2 when `list` is null;
/// - 1 when the XML library cannot be set up;
/// - 1 plus the number of XML errors when the document cannot be started, when it ends or fails
///   before the start tag of its root is complete, or when it has another root;
/// - otherwise the number of XML errors and warnings, plus one for each step that reported a
///   missing attribute (below).
/// Records read before an error stay in the list. A channel that names another property is listed
/// once more: one record at two places, one behind the other, under the later name. Where channels
/// are merged and the list has that property, be it as this very channel, it is merged instead: it
/// stays listed under its earlier name, and the rest of its elements is ignored.
///
/// On standard error: XML errors; "WRONG root tag: '<root>' must be '<address> or DAQvariables'",
/// where the address is that of a name in `tags`, which differs from run to run; and "No
/// attributebit found for bitTitle prop: <prop_name>" or "No attribute: id found for dimension
/// prop: <prop_name>" for an element without its attribute, which then adds nothing.
/// On standard output: "bitTitle is not defined for bit  <number> prop:<prop_name>" for a bit
/// without a name.
/// Bits and dimensions are added, reported and counted at each step that yields the element (see
/// SAX_pull_parser.hh). A "bitTitle" with a text, or with an end tag directly behind its start tag,
/// is two steps: it makes two bits of its number, the first without a name, or counts twice.
///
/// Kept unreleased, since programs may hold on to them: a channel that the document never gave a
/// property, and the bits and dimensions that a channel had when it was merged away.
ZRT4_EXPORT int parse_descr_list_read(char* xml, std::vector<chan_descr_2010*>* list, bool shift,
                                      bool delete_duplicated);

/// The same for an XML file given by name (null: an empty name, which cannot be opened), with these
/// deliberate differences. `list` must not be null. In the element dialect nothing is merged
/// whatever `delete_duplicated` says, "DIM" keeps the current statistic, and "STAT_DESCR" without a
/// statistic is ignored instead of describing the channel. In the variable dialect "evType" is
/// never shifted, merging joins event type and data type by OR as well, a "bitTitle" without a text
/// is not reported, and the message about a missing one begins "No attribute: bit". When the XML
/// library cannot be set up, the parser is kept unreleased, and with it its use of that library.
ZRT4_EXPORT int parse_descr_list_readf(char* file, std::vector<chan_descr_2010*>* list, bool shift,
                                       bool delete_duplicated);

/// Completes `in` with what `from`, a description of the same channel, knows. `from` is never
/// changed, and every sub-record that `in` gets is a copy.
///
/// Without `force`, `in` keeps what it has: a number is taken where `in` has 0 (so a `max_size` of
/// 1 stays), `db_key` where `in` has none above 0, a text where `in` has an empty one, a bit or a
/// dimension where `in` has none of that number, and all statistics of a dimension where `in` has
/// that dimension without any. With `force`, `from` wins wherever it has a value: a number that is
/// not 0, a `db_key` above 0, a text that is not empty; and its bits, or its dimensions, replace
/// all of those of `in` when it has any.
///
/// Returns false; true, with nothing changed, when an argument is null or the two `prop_name`
/// differ. Replacing dimensions releases the old ones as `clean_chan_desr_list` does, and prints
/// its line about `nstats` on standard output.
ZRT4_EXPORT bool extend_channel_description(chan_descr_2010* in, chan_descr_2010* from, bool force);

/// Reads the descriptions of a blob and appends them to `list`, as `parse_descr_list_read` does
/// without `shift` and without `delete_duplicated`: the element dialect appends duplicates, the
/// variable dialect merges them. Of the text, `length` - 8 bytes are used, and no more than up to
/// its first zero byte. The caller guarantees that `length` bytes are there.
/// Returns the result of that reader, or, without printing anything, -1 for a null argument, -3 for
/// a `pattern` other than 0xCDECDEF2 and 0xCDECDEF3, -4 for a `length` of 8 or less.
ZRT4_EXPORT int zrt4_load_chan_descr(zrt4_xml_chan_descr_header* tab,
                                     std::vector<chan_descr_2010*>* list);

/// Reads the DAQ's master description file and appends to `list`, as `parse_descr_list_readf` does
/// without `shift` and without `delete_duplicated`. Returns the result of that reader, or -1,
/// without printing anything, for a null argument or an empty name.
ZRT4_EXPORT int zrt4_load_master_daq_channel_description_file(std::vector<chan_descr_2010*>* list,
                                                              char* file);

/// Lists the descriptions on standard output under two lines of heading, duplicates included;
/// nothing when `list` is null. `ev_type` and `dtype` are taken as masks: the names of their bits
/// follow them, lowest bit first, joined by ":" and cut at 255 characters; bit 31 of `dtype` has no
/// name, it says that the others count from 32. A counter that is zero beside a vector that is not
/// empty is reported in a line of the listing ("ERROR: nbits = 0, but bits.size() > 0"); any other
/// counter is printed as it is, above all entries of the vector.
ZRT4_EXPORT void print_zrt4_chan_descr(std::vector<chan_descr_2010*>* list);

/// Writes the descriptions out, each property once, as its first record has it. docs/writing.md
/// shows what is written and what of it reads back.
///
/// `file_name` null or empty: no file; otherwise the file is created, or emptied, whatever `mode`.
/// `fd` -1: no descriptor. `sout` null: no string. With no destination at all, every mode prints
/// the listing of `print_zrt4_chan_descr` instead, or nothing at all when the list is empty.
///
/// `mode`:
/// - DUMP_TXT_FILE, tab-separated text, and DUMP_TXT_FILE_SHORT, one line per channel, go to the
///   file only; without a file nothing is written;
/// - DUMP_XML_FILE, a document in the dialect `format` (ZRT4_FORMAT or MORV_FORMAT), goes to the
///   file, then to `fd`, then to the end of `sout`, in this order;
/// - any other mode writes nothing.
/// Texts are written as they are, in whatever code page they are; no character is escaped. Numbers
/// of `dims` have the decimal point of LC_NUMERIC.
///
/// `dims` may be null. In the element dialect it adds parameters to the dimensions of the channels
/// that it names; a channel that it names and that has no dimensions gets `num` of them. Its first
/// entry with a channel's DAQ name, a `num` other than 0, and `params` or `iparams` counts.
///
/// Nothing passed in is changed or kept, except that `sout` grows. An empty `sout` gives the
/// document its memory, unless there is a descriptor, too: one string, cleared between dumps, costs
/// new memory but once.
///
/// Returns
/// - 0, also when the file takes no more: nothing tells;
/// - 1 when the file cannot be opened: "dump_chan_desr() failed to open file: '<name>'" on standard
///   output and the reason, by `perror`, on standard error;
/// - 2 for a null list or a `format` other than the two dialects, before anything is opened:
///   "dump_chan_desr() invalid argument: '" on standard output;
/// - 2 when writing to `fd` fails: "dump_chan_desr()  write failed" on standard output. Then the
///   file has the document and is left open, which is kept, and `sout` is untouched. A write that
///   takes a part is continued.
/// In DUMP_TXT_FILE_SHORT each channel with a data type also prints an empty line on standard
/// output.
ZRT4_EXPORT int dump_chan_desr(std::vector<chan_descr_2010*>* chdscr_list, char* file_name,
                               int mode, int format, int fd, std::string* sout,
                               std::vector<dim_params*>* dims);

/// Reads `xml` as `parse_descr_list_read` does with `shift` and without `delete_duplicated`, dumps
/// it as above, without string and parameters, and releases it. Returns the dump's result; or 3,
/// with "Failed to parse CHANDESCR list" on standard output, when the text cannot be read without
/// an error. The records read until then are kept unreleased.
ZRT4_EXPORT int dump_chan_desr_from_xml(char* xml, char* file_name, int mode, int format, int fd);

/// Writes `*t`, or the current time, as local time (2021-12-01T13:45:07) into `isodate_str`, a
/// buffer of at least 40 bytes, and a zero behind it. A time that has no date, because its year
/// does not fit the calendar, gives an empty text. Does nothing when the buffer is null; `t` must
/// not be.
ZRT4_EXPORT void create_isodate(char* isodate_str, time_t* t);
ZRT4_EXPORT void create_isodate(char* isodate_str);

/// Replaces what `str` holds by the XML declaration and a line end. It always declares ISO-8859-1;
/// whether the texts that follow are in it is the caller's concern.
ZRT4_EXPORT void set_xml_header(std::string& str);

/// Appends the line "\t<isodate>2021-12-01T13:45:07</isodate>\n" with the current local time.
ZRT4_EXPORT void add_iso_date(std::string& str);

#endif
