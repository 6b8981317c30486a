// `zrt4xml convert --to csv`: lines for spreadsheets.

#include "tool_support.hh"

using test::run;
using test::run_result;

namespace {

const std::string channels = ZRT4_SOURCE_DIR "/examples/channels/channels.xml";

}  // namespace

TEST(ToolCsv, ALineForEachRecord) {
  const run_result result =
      run("convert " ZRT4_SOURCE_DIR "/examples/dictionaries/small.xml --lossy --to csv");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "index,property,absolute_threshold,relative_threshold\r\n"
            "0,GUN.COOLING/BODY/L0/TEMP.RETURN,0.05,0\r\n"
            "1,GUN.VACUUM/ION.PUMP/L0.01/PRESSURE,0,0.1\r\n"
            "2,GUN.MAGNETS/SOLENOID/L0/CURRENT.RBV,0.01,5e-04\r\n");
}

TEST(ToolCsv, NamesOfTypesStandBesideTheirNumbers) {
  const test::temporary_file file(test::channel());
  EXPECT_EQ(run("convert --to csv " + file.path()).out,
            "property,name,event_type,event_type_name,data_type,data_type_name,stream,subsystem,"
            "server_block,description,units,size,set_point,db_key,count,bits,dimensions\r\n"
            "A/B/C,A.C,1,NORMAL,41,1CHAN_2010,0,,,,,1,0,-1,0,0,0\r\n");
}

TEST(ToolCsv, ALineForEachBitOrDimension) {
  EXPECT_THAT(run("convert " + channels + " --to csv --rows bits").out,
              testing::StartsWith("property,bits.number,bits.name,bits.description\r\n"
                                  "LINAC.RF/LLRF.CONTROLLER/RF.A1/STATUS,0,RF_ON,"));
  EXPECT_THAT(
      run("convert " + channels + " --to csv --rows statistics").out,
      testing::StartsWith("property,dimensions.number,dimensions.statistics.number,"
                          "dimensions.statistics.name,dimensions.statistics.description,"
                          "dimensions.statistics.units\r\nLINAC.DIAG/BPM/3.L1/X.TRAIN,0,0,mean,"));
}

TEST(ToolCsv, RowsByTheirPath) {
  const std::string convert = "convert --lossy " + channels + " --to csv --rows ";
  EXPECT_EQ(run(convert + "dimensions.statistics").out, run(convert + "statistics").out);
}

TEST(ToolCsv, EventsAndCamerasToo) {
  EXPECT_EQ(run("convert " ZRT4_SOURCE_DIR
                "/examples/event_lists/orbit_feedback.xml --to csv --rows channels")
                .out,
            "event_type,server_blocks.name,server_blocks.channels.name\r\n"
            "1,LINAC.DAQ/BPM.SERVER.L1,LINAC.BPM/L1.03/X\r\n"
            "1,LINAC.DAQ/BPM.SERVER.L1,LINAC.BPM/L1.03/Y\r\n"
            "1,LINAC.DAQ/BPM.SERVER.L1,LINAC.BPM/L1.03/CHARGE\r\n");
  EXPECT_THAT(run("convert " ZRT4_SOURCE_DIR "/examples/cameras/minimal.xml --to csv").out,
              testing::StartsWith("name,type,type_name,control_name,tool_tip,description\r\n"));
}

TEST(ToolCsv, TellsWhatHasNoPlace) {
  const test::temporary_file untouched("as it was");
  const run_result result = run("convert " + channels + " --to csv -o " + untouched.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.err,
              testing::HasSubstr("has no place for 6 bits: --rows bits has a line for each\n"));
  EXPECT_THAT(result.err, testing::HasSubstr("has no place for 5 dimensions: --rows "));
  EXPECT_EQ(untouched.content(), "as it was");
}

TEST(ToolCsv, RowsThatThereAreNot) {
  const run_result result = run("convert " + channels + " --to csv --rows bit");
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err, "zrt4xml: " + channels +
                            ": there are no \"bit\" in it to have a line each; did you mean "
                            "'bits'?\n");
  EXPECT_THAT(run("convert " + channels + " --to csv --rows all").err,
              testing::EndsWith("; there are channels, bits, dimensions, statistics\n"));
  EXPECT_EQ(run("convert " + channels + " --to csv --rows bits.statistics").code, 2);
  EXPECT_EQ(run("convert " + channels + " --to xml --rows bits").code, 2);
}
