// Properties that all have one hash in the standard library, as a sender could choose them: the
// tool takes as long for them as for any others.

#include <sys/resource.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <random>
#include <string_view>

#include "tool_support.hh"

namespace {

/// What the standard library's hash does with eight bytes of text, and the way back (on 64 bits).
struct hash_step {
  static constexpr std::uint64_t factor = 0xc6a4a7935bd1e995U;

  static std::uint64_t inverse() {
    std::uint64_t number = factor;
    for (int i = 0; i < 6; ++i) number *= 2 - factor * number;
    return number;
  }
  static std::uint64_t mixed(std::uint64_t word) {
    word *= factor;
    return (word ^ word >> 47U) * factor;
  }
  static std::uint64_t unmixed(std::uint64_t word) {
    word *= inverse();
    return (word ^ word >> 47U) * inverse();
  }
  static std::uint64_t next(std::uint64_t hash, std::uint64_t word) {
    return (hash ^ mixed(word)) * factor;
  }
  /// The word that leads from `hash` to `wanted`.
  static std::uint64_t word_between(std::uint64_t hash, std::uint64_t wanted) {
    return unmixed(wanted * inverse() ^ hash);
  }
};

constexpr std::size_t word_size = sizeof(std::uint64_t);
#ifdef ZRT4_LEAK_CHECKED
constexpr std::size_t stages = 12;
#else
constexpr std::size_t stages = 15;
#endif
constexpr int texts = 1 << stages;

std::uint64_t word_of(const char* text) {
  std::uint64_t word = 0;
  std::memcpy(&word, text, word_size);
  return word;
}

bool is_name_text(std::string_view text) {
  for (const char c : text) {
    if (c < '!' || c > '~' || c == '<' || c == '&') return false;
  }
  return true;
}

/// Two texts that lead from one hash to another, for each stage: any way through all of them ends
/// at the same hash.
class colliding_texts {
 public:
  colliding_texts() {
    std::uint64_t hash = 0xc70f6907U ^ stages * 2 * word_size * hash_step::factor;
    for (auto& pair : pairs) {
      pair[0] = "LINAC.A/BPM.POS/";
      const std::uint64_t end =
          hash_step::next(hash_step::next(hash, word_of("LINAC.A/")), word_of("BPM.POS/"));
      do {
        pair[1] = random_text();
        const std::uint64_t begun = hash_step::next(hash, word_of(pair[1].data()));
        const std::uint64_t word = hash_step::word_between(begun, end);
        pair[1].append(reinterpret_cast<const char*>(&word), word_size);
      } while (!is_name_text(pair[1]));
      hash = end;
    }
  }

  std::string operator()(int n) const {
    std::string text;
    for (std::size_t stage = 0; stage < stages; ++stage) text += pairs[stage][n >> stage & 1];
    return text;
  }

 private:
  std::string random_text() {
    std::string text(word_size, ' ');
    for (char& c : text)
      c = static_cast<char>(std::uniform_int_distribution<int>('A', 'Z')(random));
    return text;
  }

  std::mt19937_64 random{1};
  std::array<std::array<std::string, 2>, stages> pairs;
};

template <class Text>
std::string channels(Text text) {
  std::string document = "<CHANDESCRIPTIONS>";
  for (int n = 0; n < texts; ++n) {
    document += "<CHANNEL><EVTYPE>1</EVTYPE><PROP>" + text(n) + "</PROP><NAME>n</NAME></CHANNEL>";
  }
  return document + "</CHANDESCRIPTIONS>";
}

/// Processor seconds.
double time_of(const std::string& arguments) {
  const auto used = [] {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec) * 1e-6;
  };
  const double before = used();
  EXPECT_EQ(test::run(arguments).code, 0) << arguments;
  return used() - before;
}

}  // namespace

TEST(ToolCollisions, CostNoMoreThanOtherProperties) {
  const colliding_texts colliding;
  if (sizeof(std::size_t) == word_size) {
    const std::hash<std::string> hash;
    ASSERT_EQ(hash(colliding(0)), hash(colliding(texts - 1)));
    ASSERT_EQ(hash(colliding(0)), hash(colliding(texts / 3)));
  }
  const std::size_t length = colliding(0).size();
  const test::temporary_file hostile(channels(colliding));
  const test::temporary_file ordinary(channels([&](int n) {
    const std::string number = std::to_string(n);
    return std::string(length - number.size(), 'A') + number;
  }));
  const test::temporary_file base("<CHANDESCRIPTIONS></CHANDESCRIPTIONS>");
  const std::string merge = "merge -o /dev/null " + base.path() + " ";
  for (const std::string& before : {std::string("check "), std::string("stat "), merge}) {
    EXPECT_LT(time_of(before + hostile.path()), 3 * time_of(before + ordinary.path()) + 0.2)
        << before;
  }
}
