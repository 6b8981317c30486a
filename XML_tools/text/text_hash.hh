#ifndef TEXT_HASH_HH
#define TEXT_HASH_HH

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace zrt4::detail {

/// The hash of texts that arrive from outside, under a key that no sender knows: texts can be made
/// to collide under a known hash, and a table of them takes the square of their number. Each step
/// folds the product of 16 bytes, mixed with the key. It is short, so that lookups that wait for
/// memory overlap; one that takes three times the instructions made them three times as long.
class text_hash {
 public:
  /// Takes the random bytes that the kernel gave the program at its start as the key.
  text_hash();
  text_hash(std::uint64_t low, std::uint64_t high) : key{low, high} {}

  std::uint64_t operator()(std::string_view text) const {
    const char* next = text.data();
    std::size_t left = text.size();
    std::uint64_t hash = key[0] ^ left;
    for (; left > 16; left -= 16, next += 16)
      hash = folded(word<std::uint64_t>(next) ^ key[1], word<std::uint64_t>(next + 8) ^ hash);
    // The rest in two words, which overlap in the middle.
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    if (left >= 8) {
      first = word<std::uint64_t>(next);
      last = word<std::uint64_t>(next + left - 8);
    } else if (left >= 4) {
      first = word<std::uint32_t>(next);
      last = word<std::uint32_t>(next + left - 4);
    } else if (left > 0) {
      first = word<std::uint8_t>(next);
      last = word<std::uint8_t>(next + left / 2) | word<std::uint8_t>(next + left - 1) << 8U;
    }
    return folded(folded(first ^ key[1], last ^ hash), odd);
  }

 private:
  static constexpr std::uint64_t odd = 0x9e3779b97f4a7c15U;  // for the lower bits of short texts

  template <class Word>
  static std::uint64_t word(const char* bytes) {
    Word value{};
    std::memcpy(&value, bytes, sizeof value);
    return value;
  }

  /// The halves of the product, by exclusive or.
  static std::uint64_t folded(std::uint64_t a, std::uint64_t b) {
#ifdef __SIZEOF_INT128__
    __extension__ using product = unsigned __int128;
    const product all = product{a} * b;
    return static_cast<std::uint64_t>(all) ^ static_cast<std::uint64_t>(all >> 64U);
#else
    const std::uint64_t a_low = a & UINT32_MAX, a_high = a >> 32U;
    const std::uint64_t b_low = b & UINT32_MAX, b_high = b >> 32U;
    const std::uint64_t low = a_low * b_low;
    const std::uint64_t mid = a_high * b_low + (low >> 32U);
    const std::uint64_t other = a_low * b_high + (mid & UINT32_MAX);
    const std::uint64_t high = a_high * b_high + (mid >> 32U) + (other >> 32U);
    return (other << 32U | (low & UINT32_MAX)) ^ high;
#endif
  }

  std::uint64_t key[2] = {};
};

}  // namespace zrt4::detail

#endif
