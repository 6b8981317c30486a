#ifndef TEXT_HASH_HH
#define TEXT_HASH_HH

#include <cstdint>
#include <string_view>

namespace zrt4::detail {

/// The hash of texts that arrive from outside: SipHash-1-3, under a key that no sender knows. Texts
/// can be made to collide under a known hash, and a table of them takes the square of their number.
class text_hash {
 public:
  /// Takes the random bytes that the kernel gave the program at its start as the key.
  text_hash();
  text_hash(std::uint64_t low, std::uint64_t high) : key{low, high} {}

  std::uint64_t operator()(std::string_view text) const;

 private:
  std::uint64_t key[2] = {};
};

}  // namespace zrt4::detail

#endif
