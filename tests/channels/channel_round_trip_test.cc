// Channel descriptions written and read back, compared field by field. What a dialect cannot carry
// is named where the expectation is made; everything else must come back as it was.

#include <cstring>

#include "handmade_channels.hh"
#include "random_channels.hh"
#include "support.hh"
#include "zrt4xml.hh"

namespace {

struct read_back {
  read_back(const std::string& document, bool from_file, int expected_result) {
    std::string text = document;
    const test::temporary_file file(document);
    std::string name = file.path();
    int result = -1;
    output = test::captured([&] {
      result = from_file ? parse_descr_list_readf(name.data(), list.get(), false, false)
                         : parse_descr_list_read(text.data(), list.get(), false, false);
    });
    EXPECT_EQ(result, expected_result);
  }
  zrt4::channel_list list;
  test::output output;
};

std::string written_name(const chan_descr_2010& channel) {
  return channel.daq_name[0] == '\0' ? "!!!UNDEFINED!!!" : channel.daq_name;
}

void expect_common(const chan_descr_2010& seen, const chan_descr_2010& wanted) {
  EXPECT_STREQ(seen.prop_name, wanted.prop_name);
  EXPECT_EQ(seen.daq_name, written_name(wanted));  // a missing name comes back as its stand-in
  EXPECT_EQ(seen.ev_type, wanted.ev_type);
  EXPECT_EQ(seen.set_point, wanted.set_point);
  EXPECT_STREQ(seen.subsystem, wanted.subsystem);
}

void expect_stat(const stat_descr& seen, const stat_descr& wanted) {
  EXPECT_EQ(seen.stat, wanted.stat);
  EXPECT_STREQ(seen.stat_name, wanted.stat_name);
  EXPECT_STREQ(seen.stat_desc, wanted.stat_desc);
  EXPECT_STREQ(seen.units, wanted.units);
}

void expect_element_channel(const chan_descr_2010& seen, const chan_descr_2010& wanted) {
  expect_common(seen, wanted);
  EXPECT_EQ(seen.stream, wanted.stream);
  EXPECT_EQ(seen.count, wanted.count);
  EXPECT_EQ(seen.dtype, wanted.dtype);
  EXPECT_EQ(seen.db_key, wanted.db_key);
  EXPECT_EQ(seen.max_size, wanted.max_size);
  EXPECT_STREQ(seen.prop_desc, wanted.prop_desc);
  EXPECT_STREQ(seen.units, wanted.units);
  EXPECT_STREQ(seen.sb_name, wanted.sb_name);
  EXPECT_EQ(seen.nbits, wanted.nbits);
  ASSERT_EQ(seen.bits.size(), wanted.bits.size());
  for (std::size_t i = 0; i < wanted.bits.size(); ++i) {
    EXPECT_EQ(seen.bits[i]->bit, wanted.bits[i]->bit);
    EXPECT_STREQ(seen.bits[i]->bit_name, wanted.bits[i]->bit_name);
    EXPECT_STREQ(seen.bits[i]->bit_desc, wanted.bits[i]->bit_desc);
  }
  EXPECT_EQ(seen.ndims, wanted.ndims);
  ASSERT_EQ(seen.dims.size(), wanted.dims.size());
  for (std::size_t i = 0; i < wanted.dims.size(); ++i) {
    const dim_descr& dim = *wanted.dims[i];
    EXPECT_EQ(seen.dims[i]->dim, dim.dim);
    EXPECT_STREQ(seen.dims[i]->dim_name, dim.dim_name);
    EXPECT_STREQ(seen.dims[i]->dim_desc, dim.dim_desc);
    EXPECT_STREQ(seen.dims[i]->units, dim.units);
    EXPECT_EQ(seen.dims[i]->nstats, dim.nstats);
    ASSERT_EQ(seen.dims[i]->stats.size(), dim.stats.size());
    for (std::size_t k = 0; k < dim.stats.size(); ++k) {
      expect_stat(*seen.dims[i]->stats[k], *dim.stats[k]);
    }
  }
}

const char* text_or(const char* text, const char* otherwise) {
  return *text != '\0' ? text : otherwise;
}

void expect_variable_channel(const chan_descr_2010& seen, const chan_descr_2010& wanted) {
  expect_common(seen, wanted);
  // Not carried, or written and never read.
  EXPECT_EQ(seen.stream, 0);
  EXPECT_EQ(seen.count, 0);
  EXPECT_EQ(seen.dtype, 0U);
  EXPECT_EQ(seen.db_key, -1);
  EXPECT_STREQ(seen.sb_name, "");
  // A size below 1 is not written.
  EXPECT_EQ(seen.max_size, wanted.max_size > 1 ? wanted.max_size : 1);
  // Only what kind of variable was written decides what of its sub-records is read.
  const bool is_matrix = wanted.max_size != 1;
  const bool is_bits = !is_matrix && !wanted.bits.empty();

  // A bit is read twice: without name at its start tag, and then, from its text or its end tag,
  // with its description as name, cut where a name is.
  std::vector<std::pair<int, std::string>> bits;
  if (is_bits) {
    for (const bit_descr* bit : wanted.bits) {
      bits.emplace_back(bit->bit, "");
      bits.emplace_back(bit->bit, std::string(bit->bit_desc).substr(0, 63));
    }
  }
  ASSERT_EQ(seen.bits.size(), bits.size());
  EXPECT_EQ(seen.nbits, static_cast<int>(bits.size()));
  for (std::size_t i = 0; i < bits.size(); ++i) {
    EXPECT_EQ(seen.bits[i]->bit, bits[i].first);
    EXPECT_EQ(seen.bits[i]->bit_name, bits[i].second);
    EXPECT_STREQ(seen.bits[i]->bit_desc, "");
  }

  std::string description = wanted.prop_desc;
  std::string units = wanted.units;
  if (!is_matrix) {
    // Descriptions and units of dimensions are taken for the channel's own.
    for (const dim_descr* dim : wanted.dims) {
      description = text_or(dim->dim_desc, description.c_str());
      units = text_or(dim->units, units.c_str());
    }
    EXPECT_TRUE(seen.dims.empty());
    EXPECT_EQ(seen.ndims, 0);
  } else {
    ASSERT_EQ(seen.dims.size(), wanted.dims.size());
    EXPECT_EQ(seen.ndims, static_cast<int>(wanted.dims.size()));
    for (std::size_t i = 0; i < wanted.dims.size(); ++i) {
      EXPECT_EQ(seen.dims[i]->dim, wanted.dims[i]->dim);
      EXPECT_STREQ(seen.dims[i]->dim_name, wanted.dims[i]->dim_name);
      EXPECT_STREQ(seen.dims[i]->dim_desc, wanted.dims[i]->dim_desc);
      EXPECT_STREQ(seen.dims[i]->units, wanted.dims[i]->units);
      EXPECT_TRUE(seen.dims[i]->stats.empty());  // statistics are not carried
    }
  }
  EXPECT_EQ(seen.prop_desc, description);
  EXPECT_EQ(seen.units, units);
}

void expect_round_trip(int format, bool from_file,
                       void (*expect_channel)(const chan_descr_2010&, const chan_descr_2010&)) {
  for (unsigned seed = 0; seed < 40; ++seed) {
    SCOPED_TRACE(seed);
    test::records from;
    test::random_channels(seed).fill(from, 12);
    const read_back back(test::dumped(from, format), from_file, 0);
    ASSERT_EQ(back.list.size(), from.list.size());
    for (std::size_t i = 0; i < from.list.size(); ++i) {
      SCOPED_TRACE(from.list[i]->prop_name);
      expect_channel(back.list[i], *from.list[i]);
    }
    if (testing::Test::HasFailure()) return;
  }
}

}  // namespace

TEST(RoundTrip, ElementDialectInMemory) {
  expect_round_trip(ZRT4_FORMAT, false, expect_element_channel);
}

TEST(RoundTrip, ElementDialectFromFiles) {
  expect_round_trip(ZRT4_FORMAT, true, expect_element_channel);
}

TEST(RoundTrip, VariableDialectInMemory) {
  expect_round_trip(MORV_FORMAT, false, expect_variable_channel);
}

TEST(RoundTrip, VariableDialectFromFiles) {
  expect_round_trip(MORV_FORMAT, true, expect_variable_channel);
}

TEST(RoundTrip, WritingWhatWasReadGivesTheSameElements) {
  for (unsigned seed = 100; seed < 120; ++seed) {
    test::records from;
    test::random_channels(seed).fill(from, 12);
    const std::string first = test::dumped(from, ZRT4_FORMAT);
    read_back back(first, false, 0);
    std::string second;
    dump_chan_desr(back.list.get(), nullptr, DUMP_XML_FILE, ZRT4_FORMAT, -1, &second, nullptr);
    ASSERT_EQ(second, first) << seed;
  }
}

TEST(RoundTrip, DimensionParametersAreNotRead) {
  test::records from;
  from.add_dim(from.add("P", "D"), 0, "time");
  zrt4_spect_header_2010 axis{1, 2, 3, 4, 5};
  char name[] = "D";
  dim_params entry{name, 1, &axis, nullptr};
  std::vector<dim_params*> dims{&entry};
  const read_back back(test::dumped(from, ZRT4_FORMAT, &dims), false, 0);
  ASSERT_EQ(back.list.size(), 1U);
  expect_element_channel(back.list[0], *from.list[0]);
}

TEST(RoundTrip, AChannelWithoutPropertyIsNotListed) {
  const test::kept_leak of_the_unlisted_channel;
  for (const int format : {ZRT4_FORMAT, MORV_FORMAT}) {
    test::records from;
    from.add("", "D");
    const read_back back(test::dumped(from, format), false, 0);
    EXPECT_TRUE(back.list.empty());
  }
}

TEST(RoundTrip, WhiteSpaceAloneComesBackEmpty) {
  test::records from;
  test::set(from.add("P", "D").prop_desc, "  ");
  const read_back back(test::dumped(from, ZRT4_FORMAT), false, 0);
  ASSERT_EQ(back.list.size(), 1U);
  EXPECT_STREQ(back.list[0].prop_desc, "");
}

TEST(RoundTrip, MarkupIsNotEscaped) {
  const test::kept_leak of_the_unlisted_channel;
  for (const int format : {ZRT4_FORMAT, MORV_FORMAT}) {
    test::records from;
    from.add("A & B", "D");
    const read_back back(test::dumped(from, format), false, 1);
    EXPECT_NE(back.output.err, "");
  }
}

TEST(RoundTrip, ShiftedReadingTakesWrittenMasksForNumbers) {
  test::records from;
  from.add("P", "D").ev_type = 2;
  std::string text = test::dumped(from, ZRT4_FORMAT);
  zrt4::channel_list list;
  EXPECT_EQ(parse_descr_list_read(text.data(), list.get(), true, false), 0);
  ASSERT_EQ(list.size(), 1U);
  EXPECT_EQ(list[0].ev_type, 4U);
}
