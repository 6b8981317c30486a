// `check`, of camera files: what goes to another feature than it stands in, and what is not listed.

#include "check_support.hh"

using test::check;
using test::findings;

namespace {

std::string camera(const std::string& inside) {
  return "<Camera>\n" + inside + "\n</Camera>";
}

}  // namespace

TEST(ToolCheckCamera, TheExamplesAreFine) {
  const test::run_result result = test::run("check " ZRT4_SOURCE_DIR "/examples/cameras/*.xml");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "./examples/cameras/area_scan.xml: camera features, 333 features, 0 errors\n"
            "./examples/cameras/minimal.xml: camera features, 4 features, 0 errors\n"
            "checked 2 documents: nothing found\n");
}

TEST(ToolCheckCamera, AnAttributeThatIsNearlyName) {
  for (const char* const name : {"name", "NAME", "Nmae", "Nam", "Namee", "Mame"}) {
    const std::string attribute = name;
    EXPECT_EQ(findings(camera("<Integer " + attribute + "='Width'/>")),
              "F:2:" + std::to_string(20 + attribute.size()) + ": error: the attribute '" +
                  attribute +
                  "' of Integer is not read; did you mean 'Name'? [stray_attribute]\n"
                  "F:2:" +
                  std::to_string(20 + attribute.size()) +
                  ": error: Integer without Name is not listed [feature_without_name]\n");
  }
  EXPECT_EQ(findings(camera("<Integer Name='W' NameSpace='Custom' Comment='x'/>")), "");
  EXPECT_EQ(findings(camera("<Integer Name='W'><PvRename name='NET.W'/></Integer>")),
            "F:2:43: error: the attribute 'name' of PvRename is not read; did you mean 'Name'? "
            "[stray_attribute]\n"
            "F:2:43: error: the empty PvRename of Integer 'W' becomes a line break behind it "
            "[empty_element]\n");
}

TEST(ToolCheckCamera, ATextThatIsWrittenAsAttribute) {
  EXPECT_EQ(findings(camera("<Integer Name='W' ToolTip='Width'/>")),
            "F:2:36: error: the attribute 'ToolTip' of Integer 'W' is not read: it would be an "
            "element within it [stray_attribute]\n");
  EXPECT_EQ(findings(camera("<Integer Name='W'><Name>Width</Name></Integer>")),
            "F:2:25: error: no reader knows the element 'Name'; it is an attribute of the feature "
            "[misspelt_element]\n");
}

TEST(ToolCheckCamera, AnElementThatIsNearlyAFeature) {
  const struct {
    const char* written;
    const char* meant;
  } names[] = {{"integer", "Integer"},
               {"Interger", "Integer"},
               {"INTEGER", "Integer"},
               {"Flaot", "Float"},
               {"Folat", "Float"},
               {"Enumaration", "Enumeration"},
               {"Bolean", "Boolean"},
               {"Comand", "Command"},
               {"StringRge", "StringReg"},
               {"intreg", "IntReg"},
               {"int64", "Int64"},
               {"x:Integer", "Integer"},
               {"Enumeratoin", "Enumeration"}};
  for (const auto& [written, meant] : names) {
    const std::string element = written;
    EXPECT_EQ(findings(camera("<Float Name='A'/><" + element + " Name='W'/>")),
              "F:2:" + std::to_string(30 + element.size()) + ": error: " + element +
                  " 'W' is not listed; did you mean '" + meant + "'? [misspelt_element]\n");
  }
}

TEST(ToolCheckCamera, AnElementThatIsNearlyAText) {
  const struct {
    const char* written;
    const char* meant;
  } names[] = {{"Tooltip", "ToolTip"},        {"ToolTpi", "ToolTip"},   {"TollTip", "ToolTip"},
               {"Descripton", "Description"}, {"PVRename", "PvRename"}, {"PvName", "PvRename"},
               {"description", "Description"}};
  for (const auto& [written, meant] : names) {
    const std::string element = written;
    EXPECT_EQ(findings(camera("<Float Name='A'><" + element + ">x</" + element + "></Float>")),
              "F:2:" + std::to_string(19 + element.size()) +
                  ": error: no reader knows the element '" + element + "'; did you mean '" + meant +
                  "'? [misspelt_element]\n");
  }
}

TEST(ToolCheckCamera, GroupsMayHaveAnyName) {
  EXPECT_EQ(findings(camera("<Floats><Float Name='A'/></Floats><Integers Name='x'>"
                            "<Integer Name='B'/></Integers><Gruop><Command Name='C'/></Gruop>")),
            "");
}

TEST(ToolCheckCamera, AFeatureWithoutName) {
  EXPECT_EQ(findings(camera("<Integer/>\n<Float Name=''/>\n<Float Name='A'/>")),
            "F:2:11: error: Integer without Name is not listed [feature_without_name]\n"
            "F:3:17: error: Float has an empty Name: it is not listed [feature_without_name]\n");
}

TEST(ToolCheckCamera, ANameThatComesFromElsewhere) {
  EXPECT_EQ(findings(camera("<Enumeration>\n<EnumEntry Name='Off'/>\n</Enumeration>")),
            "F:2:14: error: Enumeration without a name of its own takes that of EnumEntry 'Off' "
            "(line 3) [name_of_another]\n");
}

TEST(ToolCheckCamera, ANameWithBlanks) {
  EXPECT_EQ(findings(camera("<Integer Name=' W'/><Float Name='A B'/>")),
            "F:2:21: error: the Name ' W' begins or ends with a blank [blanks_around_name]\n");
}

// As vendors write it: each entry has a tool tip of its own.
TEST(ToolCheckCamera, TheToolTipOfTheLastEntry) {
  const std::string enumeration =
      "<Enumeration Name='GainAuto'>\n"
      "<ToolTip>Controls the gain</ToolTip>\n"
      "<EnumEntry Name='Off'><ToolTip>Gain is constant</ToolTip><Value>0</Value></EnumEntry>\n"
      "<EnumEntry Name='Once'><ToolTip>Gain is set once</ToolTip><Value>1</Value></EnumEntry>\n"
      "</Enumeration>";
  EXPECT_EQ(findings(camera(enumeration)),
            "F:5:33: error: ToolTip of EnumEntry 'Once' becomes that of Enumeration 'GainAuto' "
            "(line 2), the feature that began last, instead of its own (line 3) "
            "[text_of_another]\n");
  EXPECT_EQ(test::run("show " + test::temporary_file(camera(enumeration)).path()).out,
            "[0] Name:'GainAuto' type:3 ToolTip:'Gain is set once' Description:''\n");
}

TEST(ToolCheckCamera, ATextOfAGroupBehindAFeature) {
  EXPECT_EQ(findings(camera("<Group><ToolTip>First</ToolTip><Integer Name='W'/></Group>\n"
                            "<Group><Description>Second</Description><Float Name='A'/></Group>")),
            "F:3:21: error: Description of Group becomes that of Integer 'W' (line 2), the feature "
            "that began last [text_of_another]\n");
}

// What is shown is right.
TEST(ToolCheckCamera, ATextOfAnEntryBeforeTheOwn) {
  EXPECT_EQ(findings(camera("<Enumeration Name='E'><EnumEntry Name='Off'><ToolTip>x</ToolTip>"
                            "</EnumEntry><ToolTip>own</ToolTip></Enumeration>")),
            "");
  EXPECT_EQ(findings(camera("<Enumeration Name='E'><ToolTip>same</ToolTip><EnumEntry Name='Off'>"
                            "<ToolTip>same</ToolTip></EnumEntry></Enumeration>")),
            "");
}

TEST(ToolCheckCamera, AFeatureWithinAnother) {
  EXPECT_EQ(
      findings(camera("<Enumeration Name='E'>\n<Integer Name='I'/>\n"
                      "<ToolTip>of E</ToolTip></Enumeration>")),
      "F:3:20: error: Integer 'I' stands within Enumeration 'E' (line 2): what follows belongs "
      "to the inner one [nested_record]\n"
      "F:4:10: error: ToolTip of Enumeration 'E' becomes that of Integer 'I' (line 3), the "
      "feature that began last [text_of_another]\n");
}

TEST(ToolCheckCamera, FeaturesThatShareAName) {
  EXPECT_EQ(
      findings(camera("<Integer Name='W'/>\n<Float Name='G'/>\n<Float Name='W'/>\n"
                      "<Command Name='W'/>")),
      "F:2:20: error: feature 'W' stands here 3 times: lines 2, 4 and 5 [duplicate_feature]\n");
}

TEST(ToolCheckCamera, ATextThatStandsThereTwice) {
  EXPECT_EQ(
      findings(camera("<Integer Name='W'><ToolTip>a</ToolTip>\n<ToolTip>b</ToolTip></Integer>")),
      "F:3:10: error: ToolTip of Integer 'W' stands here again and replaces the one before "
      "(line 2) [repeated_element]\n");
}

TEST(ToolCheckCamera, ACharacterDataSection) {
  EXPECT_EQ(
      findings(camera("<Integer Name='W'><ToolTip><![CDATA[Width]]></ToolTip>\n</Integer>")),
      "F:2:28: error: ToolTip of Integer 'W' is a CDATA section, which is not read: it becomes "
      "a line break behind it [section_text]\n");
  EXPECT_EQ(findings(camera("<Integer Name='W'><ToolTip><![CDATA[Width]]></ToolTip></Integer>"
                            "<Float Name='A'/>")),
            "F:2:28: error: ToolTip of Integer 'W' is a CDATA section, which is not read: it stays "
            "empty [section_text]\n");
}

TEST(ToolCheckCamera, AnInterruptedText) {
  EXPECT_EQ(findings(camera("<Integer Name='W'><ToolTip>Time <b>in us</b></ToolTip></Integer>")),
            "F:2:28: error: ToolTip of Integer 'W' is interrupted: of 'Time in us' only 'Time ' is "
            "read [interrupted_text]\n");
  EXPECT_EQ(
      findings(camera("<Integer Name='W'><ToolTip>Time <!-- c -->x</ToolTip></Integer>")),
      "F:2:28: error: ToolTip of Integer 'W' is interrupted: of 'Time x' only 'Time ' is read "
      "[interrupted_text]\n");
  EXPECT_EQ(findings(camera("<Integer Name='W'><ToolTip>1 &lt; &#181;</ToolTip></Integer>")), "");
}

TEST(ToolCheckCamera, AnEmptyText) {
  EXPECT_EQ(findings(camera("<Integer Name='W'><ToolTip/>\n</Integer>")),
            "F:2:29: error: the empty ToolTip of Integer 'W' becomes a line break behind it "
            "[empty_element]\n");
  EXPECT_EQ(findings(camera("<Integer Name='W'><ToolTip/><Value>5</Value></Integer>")),
            "F:2:29: error: the empty ToolTip of Integer 'W' takes the next text, '5' of Value "
            "[text_of_another]\n");
  EXPECT_EQ(
      findings(camera("<Enumeration Name='W'><PvRename/><EnumEntry Name='A'/></Enumeration>")),
      "F:2:34: error: the empty PvRename of Enumeration 'W' takes the Name of EnumEntry 'A' "
      "[text_of_another]\n");
  // Nothing follows that it could take.
  EXPECT_EQ(findings(camera("<Integer Name='W'><ToolTip/></Integer><Float Name='A'/>")), "");
}

TEST(ToolCheckCamera, TextsThatTheReaderUsesItself) {
  EXPECT_EQ(
      findings(camera("<Integer Name='Unknown'/><Float Name='A'/>")),
      "F:2:26: error: Integer has the name 'Unknown', with which the reader marks one that is "
      "missing: it is not kept [reserved_text]\n");
  EXPECT_EQ(
      findings(camera("<Integer Name='W'><ToolTip>Unknown</ToolTip></Integer>")),
      "F:2:28: error: ToolTip of Integer 'W' is 'Unknown', with which the reader marks a text "
      "that is missing: it is not kept [reserved_text]\n");
}

TEST(ToolCheckCamera, ATextDirectlyWithinAFeature) {
  EXPECT_EQ(findings(camera("<Integer Name='W'>Width of the image</Integer>")),
            "F:2:19: error: the text 'Width of the image' directly within Integer 'W' is not read "
            "[stray_text]\n");
}

TEST(ToolCheckCamera, AControlNameWithBlanksOrWhatNobodySees) {
  EXPECT_EQ(findings(camera("<Integer Name='W'><PvRename>W.SP </PvRename></Integer>")),
            "F:2:29: error: PvRename of Integer 'W': 'W.SP ' begins or ends with a blank "
            "[blanks_around_name]\n");
  EXPECT_EQ(findings(camera("<Integer Name='W'><PvRename Name=' W.SP'/></Integer>")),
            "F:2:43: error: PvRename of Integer 'W': ' W.SP' begins or ends with a blank "
            "[blanks_around_name]\n");
  EXPECT_EQ(findings(camera("<Integer Name='W\xc2\xa0'/>")),
            "F:2:21: error: the Name 'W\xc2\xa0' holds U+00A0, which nobody sees "
            "[unseen_character]\n");
}

TEST(ToolCheckCamera, ARecordOfAnotherKind) {
  EXPECT_EQ(findings(camera("<CHANNEL><PROP>A</PROP></CHANNEL><Integer Name='W'/>")),
            "F:2:10: error: CHANNEL is a record of another kind of document: nothing of it is read "
            "[misplaced_element]\n");
  EXPECT_EQ(findings(camera("<CHANNEL><Integer Name='W'/></CHANNEL>")), "");
}

TEST(ToolCheckCamera, ATextBesideFeatures) {
  EXPECT_EQ(
      findings("<C>\n<Integer Name='W'/>\n =======\n<Group>\n<Integer Name='H'/> x\n</Group>\n"
               "</C>"),
      "F:3:2: error: the text '=======' directly within C is not read [stray_text]\n"
      "F:5:1: error: the text 'x' directly within Group is not read [stray_text]\n");
  EXPECT_EQ(findings("<C>\n<Integer Name='W'/>\n<![CDATA[x]]>\n</C>"),
            "F:3:10: error: the text 'x' directly within C is not read [stray_text]\n");
  // What others read in their elements.
  EXPECT_EQ(findings(camera("<Integer Name='W'><pValue>Reg</pValue></Integer><Unit>mm</Unit>")),
            "");
}

// As vendors write it: categories say what the camera offers, all else is the means to it.
TEST(ToolCheckCamera, FeaturesThatAreOfferedAndNotListed) {
  EXPECT_EQ(
      findings(camera("<Category Name='Root'><pFeature>Gain</pFeature>\n"
                      "<pFeature>Sensor</pFeature><pFeature>Width</pFeature></Category>\n"
                      "<Category Name='Sensor'><pFeature>Id</pFeature></Category>\n"
                      "<Converter Name='Gain'><pValue>GainReg</pValue></Converter>\n"
                      "<IntSwissKnife Name='GainReg'/>\n"
                      "<String Name='Id'/>\n"
                      "<Integer Name='Width'/>")),
      "F:5:24: error: Converter 'Gain' is offered in Category 'Root' (line 2) but not listed: "
      "the reader knows no 'Converter' [unlisted_feature]\n"
      "F:7:20: error: String 'Id' is offered in Category 'Sensor' (line 4) but not listed: the "
      "reader knows no 'String' [unlisted_feature]\n");
}

TEST(ToolCheckCamera, NamedElementsAmongFeatures) {
  EXPECT_EQ(
      findings(camera("<Integer Name='W'/>\n<String Name='Id'><ToolTip>x</ToolTip></String>")),
      "F:3:19: error: String 'Id' is not listed: the reader knows no 'String' "
      "[unlisted_feature]\n"
      "F:3:28: error: ToolTip of String 'Id' becomes that of Integer 'W' (line 2), the feature "
      "that began last [text_of_another]\n");
}

TEST(ToolCheckCamera, HundredsAreSummedUp) {
  std::string inside;
  for (int i = 0; i < 300; ++i) inside += "<Integer/>\n";
  const test::run_result result = check(camera(inside + "<Float Name='A'/>"));
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 102);
  EXPECT_THAT(result.out, testing::HasSubstr(
                              "F:102:11: error: 200 more of this kind from here on (a feature has "
                              "no name, and is not listed) [feature_without_name]\n"));
  const test::run_result few = check(camera(inside), "--most 1");
  EXPECT_EQ(std::count(few.out.begin(), few.out.end(), '\n'), 3);
}
