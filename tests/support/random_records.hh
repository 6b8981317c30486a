#ifndef RANDOM_RECORDS_HH
#define RANDOM_RECORDS_HH

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>

#include "handmade_channels.hh"
#include "zrt4xml.hh"

namespace test {

/// Records whose texts hold everything that XML or a reader stumbles over, or, when they are
/// gentle, what every form takes.
class random_records {
 public:
  enum kind { hard, gentle };

  explicit random_records(unsigned seed, kind texts = hard)
      : random(seed), is_gentle(texts == gentle) {}

  zrt4::channel_list channels() {
    zrt4::channel_list list;
    for (unsigned i = below(8); i != 0; --i) list.get()->push_back(channel().release());
    return list;
  }

  template <class Entry>
  zrt4::basic_env_dictionary<Entry> dictionary() {
    zrt4::basic_env_dictionary<Entry> list;
    for (unsigned i = below(8); i != 0; --i) {
      auto* entry = static_cast<Entry*>(std::calloc(1, sizeof(Entry)));
      list.get()->push_back(entry);
      entry->index = number();
      test::set(entry->data.env_prop, property());
      entry->data.env_ch_abs_delta = threshold();
      entry->data.env_ch_rel_delta = threshold();
    }
    return list;
  }

  unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }

 private:
  std::int32_t number() {
    static const std::int32_t some[] = {0, 1, -1, 4, 31, 32, 40, 2147483647, -2147483647 - 1};
    return some[below(9)];
  }
  float threshold() {
    static const float some[] = {0.0F,  0.05F,       1e-7F,    1e30F,
                                 -2.5F, 16777217.0F, 3.0e-39F, 1.0F / 3.0F};
    return some[below(8)];
  }
  std::string text() {
    static const std::string parts[] = {"a",
                                        "&",
                                        "<",
                                        ">",
                                        "]]>",
                                        "]",
                                        "\t",
                                        "\n",
                                        "\r",
                                        " ",
                                        "\"",
                                        "'",
                                        "x",
                                        "word",
                                        "\xc3\xa9",
                                        "\xce\xa9",
                                        "\xf0\x9d\x84\x9e",
                                        "\x01",
                                        "\xc3"};
    std::string result;
    if (is_gentle) {
      if (below(3) != 0) result = below(2) == 0 ? "word" : parts[below(15) == 0 ? 1 : 14] + "x";
      return result;
    }
    for (unsigned i = below(6); i != 0; --i) result += parts[below(19)];
    return result;
  }

  // Now and then a text of exactly the field's size, of one more or less, or with a character that
  // its end cuts.
  template <std::size_t Size>
  void fill(char (&field)[Size]) {
    std::string held = text();
    if (below(12) == 0) {
      held.resize(Size - 3 + below(3), 'y');
      held += below(2) == 0 ? "z" : "\xce\xa9";
    }
    test::set(field, held);
  }
  std::string property() {
    return "P" + std::to_string(below(10)) + (!is_gentle && below(3) == 0 ? text() : "");
  }

  std::unique_ptr<chan_descr_2010> channel() {
    auto one = std::make_unique<chan_descr_2010>();
    test::set(one->prop_name, property());
    fill(one->daq_name);
    fill(one->prop_desc);
    fill(one->units);
    fill(one->subsystem);
    if (below(2) == 0) {
      one->stream = number();
      one->dtype = static_cast<std::uint32_t>(number());
      one->db_key = number();
      one->count = number();
      fill(one->sb_name);
    }
    one->ev_type = below(4) == 0 ? untold_event_type : static_cast<std::uint32_t>(number());
    one->set_point = number();
    if (below(2) == 0) one->max_size = number();
    for (unsigned i = below(2) == 0 ? below(5) : 0; i != 0; --i, ++one->nbits) {
      one->bits.push_back(new bit_descr);
      one->bits.back()->bit = number();
      fill(one->bits.back()->bit_name);
      if (below(2) == 0) fill(one->bits.back()->bit_desc);
    }
    for (unsigned i = below(4) == 0 ? 2 : 0; i != 0; --i, ++one->ndims) {
      one->dims.push_back(new dim_descr);
      dim_descr& dim = *one->dims.back();
      dim.dim = number();
      fill(dim.dim_name);
      fill(dim.dim_desc);
      fill(dim.units);
      for (unsigned j = below(2) == 0 ? below(4) : 0; j != 0; --j, ++dim.nstats) {
        dim.stats.push_back(new stat_descr);
        dim.stats.back()->stat = number();
        fill(dim.stats.back()->stat_name);
        fill(dim.stats.back()->stat_desc);
        fill(dim.stats.back()->units);
      }
    }
    return one;
  }

  std::mt19937 random;
  const bool is_gentle;
};

}  // namespace test

#endif
