// Differences as rows.

#include "change_rows.hh"

#include "support.hh"

namespace {

std::vector<std::string> lines_of(const std::string& before, const std::string& after) {
  zrt4::channel_list old_ones;
  zrt4::channel_list new_ones;
  EXPECT_EQ(old_ones.read_text("<CHANDESCRIPTIONS>" + before + "</CHANDESCRIPTIONS>"), 0);
  EXPECT_EQ(new_ones.read_text("<CHANDESCRIPTIONS>" + after + "</CHANDESCRIPTIONS>"), 0);
  change_list changes;
  for_each_difference(rows_of(old_ones), rows_of(new_ones), "channel",
                      [&](const difference& each) { changes.add(each); });
  std::vector<std::string> lines;
  for (const row& each : changes.rows()) {
    std::string line;
    for (const row::field& field : each.fields) {
      line.append(std::get<std::string_view>(field.value)).append("|");
    }
    lines.push_back(line);
  }
  return lines;
}

using testing::ElementsAre;

}  // namespace

TEST(ChangeRows, ARecordThatCameOrWentIsOne) {
  EXPECT_THAT(lines_of("<CHANNEL><PROP>A</PROP><UNITS>mm</UNITS></CHANNEL>",
                       "<CHANNEL><PROP>B</PROP></CHANNEL>"),
              ElementsAre("removed|A|||||", "added|B|||||"));
}

TEST(ChangeRows, EachFieldThatChangedIsOne) {
  EXPECT_THAT(lines_of("<CHANNEL><PROP>A</PROP><EVTYPE>1</EVTYPE><UNITS>mm</UNITS></CHANNEL>",
                       "<CHANNEL><PROP>A</PROP><EVTYPE>4</EVTYPE></CHANNEL>"),
              ElementsAre("changed|A||event_type|1 NORMAL|4 ENV|", "changed|A||units|mm||"));
}

TEST(ChangeRows, WhatIsInsideIsToldWithTheWayThere) {
  EXPECT_THAT(lines_of("<CHANNEL><PROP>A</PROP><BIT>3<BIT_NAME>on</BIT_NAME></BIT>"
                       "<DIM>0<STAT>1<STAT_NAME>rms</STAT_NAME></STAT></DIM></CHANNEL>",
                       "<CHANNEL><PROP>A</PROP><BIT>4<BIT_NAME>on</BIT_NAME></BIT>"
                       "<DIM>0<STAT>1<STAT_NAME>mean</STAT_NAME></STAT></DIM></CHANNEL>"),
              ElementsAre("removed|A|bit 3||on||", "added|A|bit 4|||on|",
                          "changed|A|dimension 0, statistic 1|name|rms|mean|"));
}

TEST(ChangeRows, NothingChangedIsNone) {
  EXPECT_THAT(lines_of("<CHANNEL><PROP>A</PROP></CHANNEL>", "<CHANNEL><PROP>A</PROP></CHANNEL>"),
              ElementsAre());
}
