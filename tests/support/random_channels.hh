#ifndef RANDOM_CHANNELS_HH
#define RANDOM_CHANNELS_HH

#include <random>
#include <string>

#include "handmade_channels.hh"

namespace test {

/// Records of channels with anything in them that comes back from XML.
class random_channels {
 public:
  explicit random_channels(unsigned seed) : random(seed) {}

  int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
  std::int32_t number() {
    const auto any = static_cast<std::int32_t>(random());
    return below(4) == 0 ? any : below(2000) - 1000;
  }

  /// Any text that comes back from XML as it was: no markup, and not white space alone.
  std::string text(std::size_t longest) {
    static const std::string characters =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 ./_-:;,'\"()[]{}%#$!?*+=@~";
    std::string made = "x";
    const std::size_t size =
        below(6) == 0 ? longest : 1 + static_cast<std::size_t>(below(static_cast<int>(longest)));
    while (made.size() < size) {
      made += characters[static_cast<std::size_t>(below(static_cast<int>(characters.size())))];
    }
    return made;
  }
  std::string text_or_none(std::size_t longest) { return below(4) == 0 ? "" : text(longest); }

  void fill(records& into, int channels) {
    for (int n = 0; n < channels; ++n) {
      auto& one = into.add("P" + std::to_string(n) + text(200), text_or_none(255));
      one.stream = number();
      one.ev_type = static_cast<std::uint32_t>(number());
      one.count = number();
      one.dtype = static_cast<std::uint32_t>(number());
      one.db_key = number();
      one.max_size = below(3) == 0 ? 1 : number();
      one.set_point = number();
      set(one.prop_desc, text_or_none(255));
      set(one.units, text_or_none(15));
      set(one.sb_name, text_or_none(255));
      set(one.subsystem, text_or_none(63));
      for (int bits = below(4); bits > 0; --bits) {
        into.add_bit(one, number(), text_or_none(63), text_or_none(79));
      }
      for (int dims = below(4); dims > 0; --dims) {
        auto& dim =
            into.add_dim(one, number(), text_or_none(63), text_or_none(79), text_or_none(15));
        for (int stats = below(3); stats > 0; --stats) {
          into.add_stat(dim, number(), text_or_none(63), text_or_none(79), text_or_none(15));
        }
      }
    }
  }

 private:
  std::mt19937 random;
};

}  // namespace test

#endif
