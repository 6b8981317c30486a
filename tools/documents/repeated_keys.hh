#ifndef REPEATED_KEYS_HH
#define REPEATED_KEYS_HH

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "finding_list.hh"
#include "known_elements.hh"
#include "text_hash.hh"

/// Where each key of a part of a document stands. Of a key is kept, in a few bytes, what a hash
/// tells from all others, and the place where it stands first; only of those that come again, more.
class repeated_keys {
 public:
  repeated_keys(const key_of& of, finding_list& into) : about(of), found(into) {}

  /// Whether it was there before.
  bool add(std::string_view name, file_place place);
  bool add(std::int64_t number, file_place place);

  /// Behind the part: tells which keys came again, and forgets all.
  void end_part();

 private:
  struct slot {
    std::uint64_t hash = 0;
    std::uint32_t line = 0;
    std::uint32_t column = 0;
    std::uint32_t part = 0;  ///< 0: free
    std::uint32_t times = 0;
  };
  struct repeated {
    std::string shown;
    std::vector<file_place> places;
    std::size_t times = 0;
  };

  std::uint64_t hash_of(std::string_view text) const;
  template <class Shown>
  bool add_hash(std::uint64_t hash, file_place place, Shown shown);
  slot& slot_of(std::uint64_t hash);
  void grow();

  const key_of& about;
  finding_list& found;
  zrt4::detail::text_hash keyed_hash;
  std::vector<slot> slots;
  std::size_t used = 0;    // of this part
  std::uint32_t part = 1;  // at hand
  std::vector<repeated> repeats;
  std::unordered_map<std::uint64_t, std::size_t> known_repeats;  // by hash
};

#endif
