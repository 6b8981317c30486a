#ifndef DESCR_EXTRACTOR_HH
#define DESCR_EXTRACTOR_HH

/// How a channel selector obtains its descriptions. What holds for the whole library stands in
/// docs/contract.md.

#include <vector>

#include "parse_chan_descr.hh"
#include "zrt4_export.hh"

class ZRT4_EXPORT descr_extractor {
 public:
  descr_extractor();
  descr_extractor(const descr_extractor&) = delete;
  descr_extractor& operator=(const descr_extractor&) = delete;
  virtual ~descr_extractor();

  /// Where sources come from: EXTR_FROM_FILE (each source is a file name; the default) or
  /// EXTR_FROM_XML (each source is a zero-terminated XML text). Returns false; true, changing
  /// nothing, for any other mode.
  bool set_mode(int new_mode);
  int get_mode();

  /// Reads every source in order and appends its descriptions to `out`, which must not be null: by
  /// `parse_descr_list_readf` or, in the mode EXTR_FROM_XML, by `parse_descr_list_read`, both with
  /// `shift` as given and without `delete_duplicated`. The element dialect therefore appends
  /// duplicates, the variable dialect merges them, also into what another source brought. A null
  /// `source` counts as one without entries, a null entry as an empty name or text.
  ///
  /// Returns false, with the number of sources read without error in `*total` (unless null), when
  /// the last source was read without error or there are no sources; otherwise true, with `*total`
  /// untouched. An error in any other source shows in that number only. What was read stays in
  /// `out` either way. The readers print their messages, and keep what they keep.
  bool get_descriptions(std::vector<char*>* source, int* total, std::vector<chan_descr_2010*>* out,
                        bool shift);

 protected:
  int mode = EXTR_FROM_FILE;

 private:
  bool in_vector(std::vector<int>* in, int ent);
};

#endif
