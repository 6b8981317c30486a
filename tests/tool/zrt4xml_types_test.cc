// `types`, and the table of docs/types.md: both say what the event-utility library says.

#include <algorithm>
#include <fstream>
#include <map>

#include "event_util.hh"
#include "tool_support.hh"

using test::prints_valid_json;
using test::run;
using test::run_result;

namespace {

using row = std::vector<std::string>;

/// The rows of the table under the heading, by their first cell, without blanks around the cells.
std::map<std::string, row> table_under(const std::string& heading) {
  std::ifstream page(ZRT4_SOURCE_DIR "/docs/types.md");
  std::map<std::string, row> rows;
  bool is_there = false;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("## ", 0) == 0) is_there = line == "## " + heading;
    if (!is_there || line.rfind("| ", 0) != 0 || std::isdigit(line[2]) == 0) continue;
    std::istringstream cells(line.substr(1));
    row found;
    for (std::string cell; std::getline(cells, cell, '|');) {
      const std::size_t first = cell.find_first_not_of(' ');
      const std::size_t last = cell.find_last_not_of(' ');
      found.push_back(first == cell.npos ? "" : cell.substr(first, last - first + 1));
    }
    EXPECT_TRUE(rows.emplace(found.front(), found).second) << line;
  }
  return rows;
}

std::string hexadecimal(unsigned number) {
  char text[sizeof "0x80000000"];
  std::snprintf(text, sizeof text, "0x%x", number);
  return text;
}

std::string first_lines(const std::string& text, int count) {
  std::size_t end = 0;
  while (count-- > 0) end = text.find('\n', end) + 1;
  return text.substr(0, end);
}

}  // namespace

TEST(ToolTypes, PrintsBothTables) {
  const run_result result = run("types");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(first_lines(result.out, 8),
            "event types\n"
            "   0 HB                  0x1         looked up by property\n"
            "   1 NORMAL              0x2         looked up by property\n"
            "   2 BOR                 0x4         looked up by property\n"
            "   3 EOR                 0x8         looked up by property\n"
            "   4 ENV                 0x10        looked up by property\n"
            "   5 UPD                 0x20        looked up by property\n"
            "   6 IMAGE               0x40        looked up by DAQ name\n");
  EXPECT_THAT(result.out,
              testing::HasSubstr("  20 LLRF_ML             0x100000    looked up by DAQ "
                                 "name, main linac\n"));
  EXPECT_THAT(result.out, testing::HasSubstr("  31 31                  0x80000000  looked up by "
                                             "property\n"
                                             "  32 EVMAX               -           only in event "
                                             "lists\n"
                                             "data types\n"
                                             "   1 UPD                 0x2\n"));
  EXPECT_THAT(result.out, testing::HasSubstr("\n  38 BPM_2010            0x80000040\n"));
  EXPECT_THAT(result.out, testing::EndsWith("\n  63 MAX_2010            -\n"));
}

TEST(ToolTypes, LooksUpByNameInAnyCaseByNumberAndByPattern) {
  EXPECT_EQ(run("types normal").out, "event type 1 NORMAL, mask 0x2, looked up by property\n");
  EXPECT_EQ(run("types 38").out, "data type 38 BPM_2010, mask 0x80000040\n");
  EXPECT_EQ(run("types 6 60").out,
            "event type 6 IMAGE, mask 0x40, looked up by DAQ name\n"
            "data type 6 BPM, mask 0x40\n"
            "data type 60 3CHAN_2010, mask 0x90000000\n");
  EXPECT_EQ(run("types 'bpm_*'").out,
            "data type 7 BPM_Z, mask 0x80\n"
            "data type 8 BPM_S, mask 0x100\n"
            "data type 38 BPM_2010, mask 0x80000040\n"
            "data type 39 BPM_Z_2010, mask 0x80000080\n"
            "data type 40 BPM_S_2010, mask 0x80000100\n");
}

TEST(ToolTypes, NoTypeIsExitCodeOne) {
  const run_result result = run("types NORMAL NORMALLY 29 54");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out,
            "event type 1 NORMAL, mask 0x2, looked up by property\n"
            "event type 29 29, mask 0x20000000, looked up by property\n");
  EXPECT_EQ(result.err,
            "zrt4xml: NORMALLY: no event type or data type has this name, number or mask\n"
            "zrt4xml: 54: no event type or data type has this name, number or mask\n");
  const run_result quiet = run("types -q 54");
  EXPECT_EQ(quiet.code, 1);
  EXPECT_EQ(quiet.out + quiet.err, "");
}

TEST(ToolTypes, AsJson) {
  const run_result result = run("types --json env");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, R"({
  "format_version": 1,
  "subcommand": "types",
  "event_types": [
    {
      "number": 4,
      "name": "ENV",
      "mask": 16,
      "looked_up_by": "property",
      "main_linac": false
    }
  ],
  "data_types": [
    {
      "number": 3,
      "name": "ENV",
      "mask": 8
    }
  ]
}
)");
  EXPECT_TRUE(prints_valid_json("types --json"));
  EXPECT_TRUE(prints_valid_json("types --json nothing"));
}

TEST(TypesPage, HasEveryEventTypeOfTheLibrary) {
  std::map<std::string, row> expected;
  for (int number = 0; number <= 1000; ++number) {
    const std::string name = event_name_itoa(number);
    if (name == "UNKNOWN") continue;
    const std::string key = std::to_string(number);
    const int structure = get_event_struct_type(number);
    const bool is_ml = structure == ZRT4_EV_STRUCT_ML;
    const bool by_name = is_ml || structure == ZRT4_EV_STRUCT_LOCAL;
    expected[key] = number < static_cast<int>(ZRT4_EV_EVMAX)
                        ? row{key, name, hexadecimal(1U << static_cast<unsigned>(number)),
                              by_name ? "DAQ name" : "property", is_ml ? "main linac" : ""}
                        : row{key, name, "", "", "only in event lists"};
  }
  EXPECT_EQ(table_under("Event types"), expected);
}

TEST(TypesPage, HasEveryDataTypeOfTheLibrary) {
  std::map<std::string, row> expected;
  for (int number = 0; number <= 1000; ++number) {
    const std::string name = block_name_itoa(number);
    if (name == "UNKNOWN") continue;
    const std::string key = std::to_string(number);
    const unsigned bit = 1U << (static_cast<unsigned>(number) & 31U);
    const unsigned mask = number < 32 ? bit : 0x80000000U + bit;
    expected[key] = row{key, name, mask != 0 ? hexadecimal(mask) : ""};
  }
  EXPECT_EQ(table_under("Data types"), expected);
}

TEST(ToolTypes, MasksAsListingsShowThem) {
  EXPECT_EQ(run("types 0x80000040").out, "data type 38 BPM_2010, mask 0x80000040\n");
  EXPECT_EQ(run("types 0X2").out,
            "event type 1 NORMAL, mask 0x2, looked up by property\n"
            "data type 1 UPD, mask 0x2\n");
  for (const std::string none : {"0x3", "0x", "0x2g", "0x100000002", "0x-2"}) {
    const run_result result = run("types " + none);
    EXPECT_EQ(result.code, 1) << none;
    EXPECT_EQ(result.err,
              "zrt4xml: " + none + ": no event type or data type has this name, number or mask\n");
  }
}
