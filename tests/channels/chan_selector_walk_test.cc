// All lookups of a channel selector against a walk from the front, over lists in which most names
// collide.

#include <random>

#include "selections.hh"
#include "zrt4xml.hh"

using test::document;
using test::selection;
using test::selector_channel;

namespace {

class walk {
 public:
  explicit walk(const std::vector<chan_descr_2010*>& descriptions) : descr(descriptions) {}

  bool find_channel(unsigned seen, int event, const std::string& name) const {
    if (descr.empty()) return true;
    if ((seen >> (static_cast<unsigned>(event) % 32) & 1U) == 0) return false;
    for (const auto* one : descr) {
      const int structure = get_event_struct_type(event);
      if (name == (structure == 1 || structure == 3 ? one->daq_name : one->prop_name)) return true;
    }
    return false;
  }

  unsigned event_type(const std::string& name) const {
    for (const auto* one : descr) {
      for (int n = 0; n < 32; ++n) {
        if ((one->ev_type >> static_cast<unsigned>(n) & 1U) == 0) continue;
        const int structure = get_event_struct_type(n);
        if (structure != 1 && structure != 3 && name == one->prop_name) return one->ev_type;
        if (name == one->daq_name) return one->ev_type;
      }
    }
    return 0;
  }

  unsigned data_type(const std::string& name) const {
    for (const auto* one : descr) {
      if (name == one->daq_name) return one->dtype;
    }
    return 0;
  }

 private:
  const std::vector<chan_descr_2010*>& descr;
};

class generator {
 public:
  explicit generator(unsigned seed) : random(seed) {}

  unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }
  std::string name() { return below(8) == 0 ? "" : "N" + std::to_string(below(30)); }

  unsigned mask() {
    switch (below(4)) {
      case 0:
        return 0;
      case 1:
        return 1U << below(32);
      case 2:
        return 0x40U;  // local only
      default:
        return static_cast<unsigned>(random() & random());
    }
  }

  std::string elements() {
    std::vector<selector_channel> channels(below(20));
    for (selector_channel& one : channels) {
      one = {static_cast<int>(mask()), "N" + std::to_string(below(30)), name(),
             "<DTYPE>" + std::to_string(below(1000)) + "</DTYPE>"};
    }
    return document(channels);
  }

  // These merge into what was loaded before.
  std::string variables() {
    std::string text = "<DAQvariables>";
    for (unsigned n = below(20); n > 0; --n) {
      text += "<DaqFloat><evType>" + std::to_string(static_cast<int>(mask())) +
              "</evType><vindo>N" + std::to_string(below(30)) + "</vindo><daqName>" + name() +
              "</daqName></DaqFloat>";
    }
    return text + "</DAQvariables>";
  }

 private:
  std::mt19937 random;
};

void expect_same(chan_selector& selector, const std::vector<chan_descr_2010*>& descr,
                 unsigned seen) {
  const walk expected(descr);
  for (int n = -1; n < 31; ++n) {
    std::string name = n == -1 ? "" : "N" + std::to_string(n);
    for (int event = -1; event < 40; ++event) {
      ASSERT_EQ(selector.find_channel(event, name.data()), expected.find_channel(seen, event, name))
          << event << " " << name;
    }
    if (descr.empty()) continue;
    ASSERT_EQ(static_cast<unsigned>(selector.get_event_type(name.data())),
              expected.event_type(name))
        << name;
    ASSERT_EQ(static_cast<unsigned>(selector.get_data_type(name.data())), expected.data_type(name))
        << name;
  }
}

}  // namespace

TEST(ChanSelectorProperty, AnswersAsAWalkFromTheFront) {
  for (unsigned seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(seed);
    generator make(seed);
    const bool from_files = seed % 2 == 0;
    chan_selector selector;
    selector.set_shift(false);
    selector.set_mode(from_files ? EXTR_FROM_FILE : EXTR_FROM_XML);
    zrt4::channel_list owner;
    zrt4::channel_list::pointers& descr = *owner.get();
    unsigned seen = 0;
    for (int call = 0; call < 5; ++call) {
      std::string text = make.below(2) == 0 ? make.elements() : make.variables();
      const bool breaks = make.below(4) == 0;
      if (breaks) text.resize(text.rfind("</"));
      const test::temporary_file file(text);
      std::string source = from_files ? file.path() : text;
      std::vector<char*> sources{source.data()};
      const auto read = from_files ? parse_descr_list_readf : parse_descr_list_read;
      const test::kept_leak of_merged_channels;
      test::captured([&] {
        ASSERT_EQ(selector.set_descriptions(&sources, nullptr), breaks);
        read(source.data(), &descr, false, false);
        if (!breaks) {
          for (const auto* one : descr) seen |= one->ev_type;
        }
        expect_same(selector, descr, seen);
      });
      ASSERT_FALSE(testing::Test::HasFatalFailure());
    }
  }
}

TEST(ChanSelectorProperty, ThousandsOfNames) {
  std::vector<selector_channel> channels;
  for (int n = 0; n < 5000; ++n) {
    const std::string number = std::to_string(n);
    channels.push_back({n % 2 == 0 ? 1 : 6, "P" + number, "D" + number,
                        "<DTYPE>" + std::to_string(n % 31) + "</DTYPE>"});
  }
  selection selector(channels);
  for (int n = 0; n < 5000; ++n) {
    const std::string number = std::to_string(n);
    ASSERT_TRUE(selector.find(1, "P" + number));
    ASSERT_TRUE(selector.find(6, "D" + number));
    ASSERT_FALSE(selector.find(1, "D" + number));
    ASSERT_EQ(selector.event_type("D" + number), n % 2 == 0 ? 2 : 64);
    ASSERT_EQ(selector.data_type("D" + number), 1 << n % 31);
  }
  EXPECT_FALSE(selector.find(1, "P5000"));
}
