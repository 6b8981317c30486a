#ifndef RECORD_CHECK_HH
#define RECORD_CHECK_HH

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "element_walk.hh"
#include "repeated_keys.hh"

/// A walk that compares what a document of records says with what its reader makes of it. A reader
/// knows no nesting: it gives each element to the part of its kind that began last, which is kept
/// here beside where the element stands.
class record_check : public element_walk {
 public:
  record_check(const known_elements& all, finding_list& into);

  /// What becomes clear only behind the document.
  void finish();

 private:
  using fields = std::uint64_t;  // a bit for each known element

  struct early_field {
    std::string_view name;
    file_place place;
  };

  /// The part of a kind that began last.
  struct begun_part {
    bool exists = false;
    bool awaits_type = false;  ///< an event, of which its reader ignores all before the type
    bool is_merged = false;    ///< into one before, so that its reader ignores the rest
    std::string_view name;
    file_place place;
    std::uint64_t number = 0;  ///< of its element
    std::uint64_t around = 0;  ///< and of the element around that
    fields opened = 0;
    fields taken = 0;
    fields told = 0;  ///< of which a finding tells that they are not read
    std::array<file_place, 64> where{};
    std::vector<early_field> early;  ///< before the type
  };

  struct unknown_name {
    rule what;
    std::string advice;
    std::vector<file_place> places;
    std::size_t times = 0;
  };

  void opened(walked_element& element, const xercesc::AttributeList& attributes) override;
  void seen(walked_element& element) override;
  void taken(walked_element& element, const char* text) override;
  void closed(walked_element& element) override;

  // Elements and where they stand: place_findings.cc.
  void note_unknown(const walked_element& element);
  void find_in_attributes(const walked_element& element, const xercesc::AttributeList& attributes);
  void find_in_place(const walked_element& element, const walked_element& around);
  bool find_nested(const walked_element& element);
  void find_without_holder(const walked_element& element, const walked_element& around);
  void find_outside_holder(const walked_element& element, const walked_element& around);
  void tell_early_fields(const begun_part& event);
  void note_field(const walked_element& element, begun_part& holder);
  const known_element* same_of_dimension(const known_element& element) const;
  std::string similar_name(const walked_element& element) const;
  std::string meant_in(const walked_element& element, const walked_element& around) const;
  std::string beginners_of(part which) const;
  part around(part which) const;

  begun_part& at_hand(part which) { return parts[static_cast<std::size_t>(which)]; }
  const begun_part& at_hand(part which) const { return parts[static_cast<std::size_t>(which)]; }
  fields bit_of(const known_element& element) const;
  std::size_t index_of(const known_element& element) const;
  void begin(part which, const walked_element& element);
  void end(part which);
  void end_record();
  void find_missing(const begun_part& record);
  void find_empty(const walked_element& element);
  /// Whether it was there before.
  bool add_key(const walked_element& element, std::string_view text);
  void add_key(const walked_element& element, std::int64_t number);
  repeated_keys* keys_of(const known_element& element);
  repeated_keys* keys_in_use(const known_element& element);
  void find_in_numbered_attribute(const walked_element& element);

  std::array<begun_part, number_of_parts> parts;
  std::vector<std::optional<repeated_keys>> keys;  // by known element
  std::map<std::string, unknown_name, std::less<>> unknown;
  std::string property;   // of the record at hand
  file_place last_event;  // that was made, in an event list
};

#endif
