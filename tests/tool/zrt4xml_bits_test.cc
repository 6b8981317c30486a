// `show --bits`.

#include "tool_support.hh"

using test::channel;
using test::run;
using test::run_result;
using testing::HasSubstr;

namespace {

const std::string status =
    "show " ZRT4_SOURCE_DIR "/examples/channels/channels.xml --bits RF.A1.STATUS";

}  // namespace

TEST(ToolBits, DrawsTheWordAndItsBits) {
  const run_result result = run(status);
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(
      result.out,
      testing::StartsWith("RF.A1.STATUS  LINAC.RF/LLRF.CONTROLLER/RF.A1/STATUS\n"
                          "state of the RF station\n"
                          " 15 14 13 12 11 10  9  8    7  6  5  4  3  2  1  0\n"
                          "  .  .  .  .  .  .  .  .    .  .  #  #  #  #  #  #\n"
                          "                                  |  |  |  |  |  `- 0 RF_ON: klystron "
                          "delivers power\n"));
}

TEST(ToolBits, AValueTellsWhichBitsAreSet) {
  for (const std::string value : {"0x2B", "43", "0b101011"}) {
    const std::string shown = run(status + " --value " + value).out;
    EXPECT_THAT(shown, HasSubstr("0x2B = 43 = 0b101011\n"));
    EXPECT_THAT(shown, HasSubstr("  0  0  0  0  0  0  0  0    0  0  1  0  1  0  1  1\n"));
    EXPECT_THAT(shown, HasSubstr("- 3 QUENCH: quench detected in a cavity of the module  [set]\n"));
    EXPECT_THAT(shown, HasSubstr("- 4 VACUUM: vacuum interlock of the wave guide\n"));
  }
  EXPECT_THAT(run(status + " --value=-1").out, HasSubstr("0xFFFFFFFF = 4294967295 = 0b1111"));
}

TEST(ToolBits, AValueOf32BitsIsWanted) {
  for (const std::string value : {"2B", "0x", "0x100000000", "-2147483649", "'1 2'", "0b2", "''"}) {
    const run_result result = run(status + " --value=" + value);
    EXPECT_EQ(result.code, 2) << value;
    EXPECT_EQ(result.out, "") << value;
  }
}

TEST(ToolBits, TheUpperHalfIsDrawnWhereThereIsOne) {
  const test::temporary_file file(
      channel("<BIT>31<BIT_NAME>top</BIT_NAME></BIT><BIT>40<BIT_NAME>out</BIT_NAME></BIT>"
              "<BIT>31<BIT_NAME>too</BIT_NAME></BIT>"));
  const std::string shown = run("show " + file.path() + " --bits A/B/C").out;
  EXPECT_THAT(shown, HasSubstr("\n 31 30 29 28 27 26 25 24   23 22 21 20 19 18 17 16\n"
                               "  #  .  .  .  .  .  .  .    .  .  .  .  .  .  .  .\n"
                               "  `------------------------------------------------ 31 top\n\n"
                               " 15 14 13"));
  EXPECT_THAT(shown, testing::EndsWith("also: 40 out\nalso: 31 too\n"));
}

TEST(ToolBits, NoSuchChannelAndNoBits) {
  const test::temporary_file file(channel());
  const run_result none = run("show " + file.path() + " --bits NOBODY");
  EXPECT_EQ(none.code, 1);
  EXPECT_EQ(none.err, "zrt4xml: NOBODY: no channel has this DAQ name or property\n");
  const run_result bare = run("show " + file.path() + " --bits A.C");
  EXPECT_EQ(bare.code, 1);
  EXPECT_EQ(bare.err, "zrt4xml: A.C: this channel has no bits\n");
  EXPECT_EQ(run("show " ZRT4_SOURCE_DIR "/examples/dictionaries/small.xml --bits A").code, 2);
  EXPECT_EQ(run("show " + file.path() + " --value 1").code, 2);
  EXPECT_EQ(run("show /nonexistent --bits A").err,
            "zrt4xml: /nonexistent: No such file or directory\n");
  const run_result nobody = run("show " + file.path() + " --bits ''");
  EXPECT_EQ(nobody.code, 2);
  EXPECT_THAT(nobody.err, testing::StartsWith("zrt4xml: --bits: the name is empty\n"));
}
