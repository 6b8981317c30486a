#include "text_hash.hh"

#include <sys/auxv.h>

#include <cstddef>
#include <cstring>

namespace zrt4::detail {

namespace {

class sip_state {
 public:
  sip_state(std::uint64_t low, std::uint64_t high)
      : v{low ^ 0x736f6d6570736575U, high ^ 0x646f72616e646f6dU,  //
          low ^ 0x6c7967656e657261U, high ^ 0x7465646279746573U} {}

  void compress(std::uint64_t word) {
    v[3] ^= word;
    round();
    v[0] ^= word;
  }

  std::uint64_t finish() {
    v[2] ^= 0xff;
    for (int n = 0; n < 3; ++n) round();
    return v[0] ^ v[1] ^ v[2] ^ v[3];
  }

 private:
  static std::uint64_t rotated(std::uint64_t word, int bits) {
    return word << bits | word >> (64 - bits);
  }

  void round() {
    mix(0, 1, 13);
    v[0] = rotated(v[0], 32);
    mix(2, 3, 16);
    mix(0, 3, 21);
    mix(2, 1, 17);
    v[2] = rotated(v[2], 32);
  }

  void mix(int to, int from, int bits) {
    v[to] += v[from];
    v[from] = rotated(v[from], bits) ^ v[to];
  }

  std::uint64_t v[4];
};

constexpr std::size_t word_size = sizeof(std::uint64_t);

/// Little endian, as the built targets are.
std::uint64_t word_at(const char* bytes, std::size_t size) {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, size);
  return word;
}

}  // namespace

text_hash::text_hash() {
  const void* random = reinterpret_cast<const void*>(getauxval(AT_RANDOM));
  if (random != nullptr) std::memcpy(key, random, sizeof key);
}

std::uint64_t text_hash::operator()(std::string_view text) const {
  sip_state state(key[0], key[1]);
  const char* next = text.data();
  std::size_t left = text.size();
  for (; left >= word_size; left -= word_size, next += word_size)
    state.compress(word_at(next, word_size));
  state.compress(word_at(next, left) | std::uint64_t{text.size()} << 56U);
  return state.finish();
}

}  // namespace zrt4::detail
