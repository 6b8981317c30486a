// Loading channel descriptions: blobs and the master file.

#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include "support.hh"
#include "zrt4xml.hh"

using test::captured;

namespace {

const std::string document =
    "<CHANDESCRIPTIONS><CHANNEL><EVTYPE>3</EVTYPE><PROP>A</PROP></CHANNEL>"
    "<CHANNEL><PROP>A</PROP></CHANNEL></CHANDESCRIPTIONS>";

/// A blob of exactly its bytes, so that reading beyond them is noticed.
class blob {
 public:
  blob(std::uint32_t pattern, std::string_view text)
      : blob(pattern, static_cast<std::int32_t>(8 + text.size()), text) {}
  blob(std::uint32_t pattern, std::int32_t length, std::string_view text)
      : bytes(new char[8 + text.size()]) {
    std::memcpy(bytes.get(), &pattern, 4);
    std::memcpy(bytes.get() + 4, &length, 4);
    std::memcpy(bytes.get() + 8, text.data(), text.size());
  }
  zrt4_xml_chan_descr_header* get() {
    return reinterpret_cast<zrt4_xml_chan_descr_header*>(bytes.get());
  }

 private:
  std::unique_ptr<char[]> bytes;
};

class LoadBlob : public testing::Test {
 protected:
  int load(blob from) {
    int result = 0;
    printed = captured([&] { result = zrt4_load_chan_descr(from.get(), list.get()); });
    return result;
  }
  zrt4::channel_list list;
  test::output printed;
};

TEST_F(LoadBlob, BothPatternsAreRead) {
  EXPECT_EQ(load({0xCDECDEF2, document}), 0);
  EXPECT_EQ(list.size(), 2U);
  EXPECT_EQ(load({0xCDECDEF3, document}), 0);
  EXPECT_EQ(list.size(), 4U);
  EXPECT_EQ(printed.out + printed.err, "");
}

TEST_F(LoadBlob, NeitherShiftsNorMerges) {
  EXPECT_EQ(load({0xCDECDEF2, document}), 0);
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0].ev_type, 3U);
  EXPECT_STREQ(list[1].prop_name, "A");
}

TEST_F(LoadBlob, OtherPatternsAreRefused) {
  EXPECT_EQ(load({0xCDECDEF1, document}), -3);
  EXPECT_EQ(load({0xCDECDEF4, document}), -3);
  EXPECT_EQ(load({0, document}), -3);
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(printed.out + printed.err, "");
}

TEST_F(LoadBlob, LengthOfTheHeaderOrLessIsRefused) {
  EXPECT_EQ(load({0xCDECDEF2, 8, document}), -4);
  EXPECT_EQ(load({0xCDECDEF2, 0, document}), -4);
  EXPECT_EQ(load({0xCDECDEF2, -2147483647 - 1, document}), -4);
  EXPECT_TRUE(list.empty());
}

TEST_F(LoadBlob, PatternIsLookedAtBeforeLength) {
  EXPECT_EQ(load({0xCDECDEF1, 8, ""}), -3);
}

TEST_F(LoadBlob, LengthOfOneCharacterReachesTheReader) {
  EXPECT_GT(load({0xCDECDEF2, 9, "<"}), 0);
  EXPECT_NE(printed.err, "");
}

TEST_F(LoadBlob, BytesBeyondTheLengthAreIgnored) {
  EXPECT_EQ(load({0xCDECDEF2, static_cast<std::int32_t>(8 + document.size()), document + "<"}), 0);
  EXPECT_EQ(list.size(), 2U);
}

TEST_F(LoadBlob, ZeroByteEndsTheText) {
  EXPECT_EQ(load({0xCDECDEF2, document + '\0' + "<"}), 0);
  EXPECT_EQ(list.size(), 2U);
}

TEST_F(LoadBlob, NullArgumentsAreRefusedFirst) {
  EXPECT_EQ(zrt4_load_chan_descr(nullptr, list.get()), -1);
  blob wrong(1, 0, "");
  EXPECT_EQ(zrt4_load_chan_descr(wrong.get(), nullptr), -1);
}

TEST_F(LoadBlob, ReaderFailureIsPassedOn) {
  EXPECT_EQ(load({0xCDECDEF2, "<EVENTS/>"}), 1);
  EXPECT_THAT(printed.err, testing::StartsWith("WRONG root tag: 'EVENTS' must be '0x"));
}

TEST_F(LoadBlob, RecordsInTheListStay) {
  list.get()->push_back(new chan_descr_2010);
  const chan_descr_2010* before = &list[0];
  EXPECT_EQ(load({0xCDECDEF2, document}), 0);
  ASSERT_EQ(list.size(), 3U);
  EXPECT_EQ(&list[0], before);
}

TEST(LoadMasterFile, ReadsUnshiftedAndUnmerged) {
  test::temporary_file file(document);
  zrt4::channel_list list;
  EXPECT_EQ(zrt4_load_master_daq_channel_description_file(list.get(), file.name()), 0);
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0].ev_type, 3U);
}

TEST(LoadMasterFile, NullArgumentsAndEmptyNameAreRefused) {
  test::temporary_file file(document);
  zrt4::channel_list list;
  char empty[] = "";
  const auto output = captured([&] {
    EXPECT_EQ(zrt4_load_master_daq_channel_description_file(nullptr, file.name()), -1);
    EXPECT_EQ(zrt4_load_master_daq_channel_description_file(list.get(), nullptr), -1);
    EXPECT_EQ(zrt4_load_master_daq_channel_description_file(list.get(), empty), -1);
  });
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(output.out + output.err, "");
}

TEST(LoadMasterFile, MissingFileIsTheReadersFailure) {
  zrt4::channel_list list;
  char missing[] = "/tmp/zrt4_no_such_directory/master.xml";
  const auto output = captured(
      [&] { EXPECT_GT(zrt4_load_master_daq_channel_description_file(list.get(), missing), 0); });
  EXPECT_TRUE(list.empty());
  EXPECT_NE(output.err, "");
}

}  // namespace
