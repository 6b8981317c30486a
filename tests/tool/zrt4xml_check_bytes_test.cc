// `check`, of a document's bytes: how it begins, and in which encoding it is.

#include "check_support.hh"

using test::check;
using test::findings;

namespace {

/// An event list of one server block, on line 2, which names something.
std::string naming(const std::string& start, const std::string& block) {
  return start + "<BMR>\n<EVENT><TYPE>1</TYPE><SBLOCK>" + block + "</SBLOCK></EVENT></BMR>\n";
}

std::string declaring(const std::string& encoding) {
  return "<?xml version='1.0' encoding='" + encoding + "'?>";
}

std::string in_utf16(const std::string& ascii) {
  std::string units = "\xff\xfe";
  for (const char c : ascii) units += {c, '\0'};
  return units;
}

const std::string mark = "\xef\xbb\xbf";

}  // namespace

TEST(ToolCheckBytes, WhatStandsBeforeTheDeclaration) {
  const std::string rest = naming("<?xml version='1.0'?>", "A");
  const std::string place = "F:1:1: error: ";
  const std::string advice =
      " stands before '<?xml', which has to be the very first: remove it [text_before_document]\n";
  EXPECT_EQ(findings("\n" + rest), place + "a line break" + advice);
  EXPECT_EQ(findings("  " + rest), place + "a blank" + advice);
  EXPECT_EQ(findings("hello\n" + rest), place + "'hello\\x0a'" + advice);
  EXPECT_EQ(findings("<!-- c -->" + rest), place + "'<!-- c -->'" + advice);
  EXPECT_EQ(findings(mark + "\n" + rest), place + "a line break" + advice);
}

TEST(ToolCheckBytes, WhatStandsBeforeTheFirstElement) {
  EXPECT_EQ(findings(naming("Subject: events\n", "A")),
            "F:1:1: error: 'Subject: events\\x0a' stands before the first element: remove it "
            "[text_before_document]\n");
}

TEST(ToolCheckBytes, CommentsAndInstructionsMayStandThere) {
  EXPECT_EQ(findings(naming("<?xml version='1.0'?>\n<!-- <?xml ?> text -->\n<?mine x?>\n", "A")),
            "");
  EXPECT_EQ(findings(naming("\n<!-- <?xml version='1.0'?> -->\n", "A")), "");
  EXPECT_EQ(findings(naming(mark, "A")), "");
}

TEST(ToolCheckBytes, OtherSubcommandsTellItToo) {
  const test::temporary_file file("\n" + naming("<?xml version='1.0'?>", "A"));
  const test::run_result result = test::run("show " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err,
            "zrt4xml: " + file.path() +
                ":1:1: not a readable XML document: a line break stands before '<?xml', "
                "which has to be the very first: remove it\n");
}

TEST(ToolCheckBytes, OfEveryKind) {
  for (const std::string& example : test::examples()) {
    if (example.find("long_names") != example.npos) continue;
    std::ifstream in(example);
    const std::string content(std::istreambuf_iterator<char>(in), {});
    EXPECT_EQ(findings("\n" + content),
              "F:1:1: error: a line break stands before '<?xml', which has to be the very first: "
              "remove it [text_before_document]\n")
        << example;
    EXPECT_EQ(findings(content), "") << example;
  }
}

TEST(ToolCheckBytes, Utf8ReadInALatinEncoding) {
  const auto found = [](const std::string& read, const std::string& meant,
                        const std::string& encoding) {
    return "'" + read + "' is '" + meant + "' in UTF-8, but the document declares " + encoding +
           ": declare encoding=\"UTF-8\" [wrong_encoding]\n";
  };
  EXPECT_EQ(findings(naming(declaring("ISO-8859-1"), "GRÜSSE")),
            "F:2:32: error: " + found("GRÃœSSE", "GRÜSSE", "ISO-8859-1"));
  EXPECT_EQ(findings(naming(declaring("windows-1252"), "A 5 µm")),
            "F:2:34: error: " + found("Âµm", "µm", "windows-1252"));
  EXPECT_EQ(findings(naming(declaring("iso-8859-15"), "Ω")),
            "F:2:30: error: " + found("Î©", "Ω", "iso-8859-15"));
  EXPECT_EQ(findings(naming(declaring("ISO-8859-1"), "50 €")),
            "F:2:33: error: " + found("â‚¬", "€", "ISO-8859-1"));
}

TEST(ToolCheckBytes, LatinTextsAreFine) {
  for (const char* const text : {"GR\xdc\xdf"
                                 "E",
                                 "\xb5m",
                                 "\xab"
                                 "CAF\xc9\xbb",
                                 "5 \xc5\xb2", "\xc4\xd6\xdc",
                                 "\xb0"
                                 "C"}) {
    EXPECT_EQ(findings(naming(declaring("ISO-8859-1"), text)), "") << text;
  }
  EXPECT_EQ(findings(naming(declaring("windows-1252"), "\x93quoted\x94 \x96 5 \x80")), "");
}

TEST(ToolCheckBytes, ControlCharactersInALatinEncoding) {
  EXPECT_EQ(
      findings(naming(declaring("ISO-8859-1"), "5 \x80")),
      "F:2:32: error: the byte 0x80 is a control character in ISO-8859-1; in windows-1252 it is "
      "'€': declare encoding=\"windows-1252\" [wrong_encoding]\n");
}

TEST(ToolCheckBytes, EncodedTwice) {
  EXPECT_EQ(
      findings(naming("", "GRÃœSSE")),
      "F:2:32: error: 'GRÃœSSE' was encoded in UTF-8 twice: write 'GRÜSSE' [wrong_encoding]\n");
  EXPECT_EQ(findings(naming(declaring("UTF-8"), "Â°C")),
            "F:2:30: error: 'Â°C' was encoded in UTF-8 twice: write '°C' [wrong_encoding]\n");
  EXPECT_EQ(findings(naming("", "Â ÃO É» Å² Ã")), "");
}

TEST(ToolCheckBytes, BytesThatAreNoCharacters) {
  EXPECT_EQ(findings(naming("", "GR\xdcSSE")),
            "F:2:32: error: the byte 0xDC is no UTF-8 (the document declares no encoding); in "
            "ISO-8859-1 it is 'Ü': declare encoding=\"ISO-8859-1\", or write the document in UTF-8 "
            "[invalid_bytes]\n");
  EXPECT_EQ(
      findings(naming(declaring("UTF-8"), "5 \x80")),
      "F:2:32: error: the byte 0x80 is no UTF-8, which the document declares; in windows-1252 "
      "it is '€': declare encoding=\"windows-1252\", or write the document in UTF-8 "
      "[invalid_bytes]\n");
  EXPECT_EQ(findings(naming(declaring("US-ASCII"), "ä")),
            "F:2:30: error: the byte 0xC3 is no US-ASCII, which the document declares; in UTF-8 it "
            "begins 'ä': declare encoding=\"UTF-8\" [invalid_bytes]\n");
}

// The scanner, which fills its buffer first, tells the beginning of that.
TEST(ToolCheckBytes, TheyAreToldAtTheirOwnPlace) {
  std::string list = "<BMR>\n";
  for (int i = 0; i < 5'000; ++i) list += "<!-- a line like any other -->\n";
  list += "<EVENT><SBLOCK>ä𝄞\xe4</SBLOCK></EVENT>\n<EVENT><SBLOCK>\xe5</SBLOCK></EVENT></BMR>";
  const std::string out = findings(list);
  EXPECT_THAT(out, testing::StartsWith("F:5002:19: error: the byte 0xE4 is no UTF-8"));
  EXPECT_THAT(out, testing::HasSubstr("\nF:5003:16: error: the byte 0xE5 is no UTF-8"));
  EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 2);
}

TEST(ToolCheckBytes, LinesEndAsTheScannerCountsThem) {
  EXPECT_THAT(findings("<BMR>\r\n\r\r\n <X>\xe4</X></BMR>"), testing::StartsWith("F:4:5: error: "));
}

TEST(ToolCheckBytes, InvalidSequences) {
  for (const char* const bytes :
       {"\xc0\x80", "\xc1\xbf", "\xe0\x80\x80", "\xed\xa0\x80", "\xf0\x80\x80\x80",
        "\xf4\x90\x80\x80", "\xf5", "\xc3", "\xe2\x82"}) {
    EXPECT_THAT(findings(naming("", bytes)),
                testing::AllOf(testing::StartsWith("F:2:30: error: the byte "),
                               testing::EndsWith(" [invalid_bytes]\n")));
  }
  EXPECT_EQ(findings(naming("", "\xed\x9f\xbf\xf4\x8f\xbf\xbd")), "");
}

TEST(ToolCheckBytes, AMarkThatContradictsTheDeclaration) {
  EXPECT_EQ(findings(naming(mark + declaring("ISO-8859-1"), "A")),
            "F:1:1: error: the document begins with the mark of UTF-8, but declares the encoding "
            "ISO-8859-1, in which it is read: declare UTF-8, or remove the mark "
            "[encoding_conflict]\n");
  EXPECT_EQ(findings(naming(mark + declaring("utf-8"), "A")), "");
}

TEST(ToolCheckBytes, UnitsThatContradictTheDeclaration) {
  EXPECT_EQ(findings(in_utf16(naming(declaring("UTF-8"), "A"))),
            "F:1:1: error: the document is in UTF-16, but declares the encoding UTF-8: declare "
            "UTF-16, or write it in UTF-8 [encoding_conflict]\n");
  EXPECT_EQ(findings(in_utf16(naming(declaring("UTF-16"), "A"))), "");
  EXPECT_EQ(findings(in_utf16(naming("", "A"))), "");
  EXPECT_EQ(
      findings(naming(declaring("UTF-16"), "A")),
      "F:1:1: error: the document declares the encoding UTF-16, but has single bytes: declare "
      "the one that it is in, such as UTF-8 [encoding_conflict]\n");
}

TEST(ToolCheckBytes, ARootThatIsNearlyOne) {
  const auto refused = [](const std::string& place, const std::string& text) {
    return "F: not read\nF:" + place + ": error: unknown kind of document: its root element is " +
           text + " [unreadable]\n";
  };
  EXPECT_EQ(check("<?xml version='1.0'?>\n<bmr><EVENT><TYPE>1</TYPE></EVENT></bmr>").out,
            refused("2:6", "'bmr'; did you mean 'BMR'?"));
  EXPECT_EQ(check("<x:ENVINDEXDICT/>").out,
            refused("1:18", "'x:ENVINDEXDICT'; did you mean 'ENVINDEXDICT'?"));
  EXPECT_EQ(check("<EVENT><TYPE>1</TYPE></EVENT>").out,
            refused("1:8", "'EVENT', which stands in BMR"));
  EXPECT_EQ(check("<CHANNEL/>").out,
            refused("1:11", "'CHANNEL', which stands in CHANDESCRIPTIONS or ENVINDEXDICT"));
  // The first feature of a camera may be what is damaged.
  EXPECT_EQ(check("<Camera>\n<FLoat Name='G'></Float></Camera>").out,
            refused("2:19", "'Camera', and it is damaged here: expected end of tag 'FLoat'"));
}

TEST(ToolCheckBytes, ADeclarationInOtherQuotes) {
  EXPECT_EQ(check("<?xml version=\xe2\x80\x9c"
                  "1.0\xe2\x80\x9d?>\n<BMR/>")
                .out,
            "F: not read\nF:1:1: error: not a readable XML document: the declaration in its first "
            "line is none [unreadable]\n");
}

TEST(ToolCheckBytes, ABraceBeforeADocumentMakesNoJsonOfIt) {
  EXPECT_EQ(check("{ <BMR/>").out,
            "F: not read\nF:1:1: error: '{ ' stands before the first element: remove it "
            "[text_before_document]\n");
}

TEST(ToolCheckBytes, NoDocumentAtAll) {
  EXPECT_EQ(check("").out, "F: not read\nF: error: is empty [unreadable]\n");
  EXPECT_EQ(check("no document").out,
            "F: not read\n"
            "F:1:1: error: not a readable XML document: invalid document structure "
            "[unreadable]\n");
  const test::run_result foreign = check("<html/>");
  EXPECT_EQ(foreign.code, 1);
  EXPECT_EQ(foreign.err, "");
  EXPECT_THAT(foreign.out,
              testing::StartsWith("F: not read\nF:1:8: error: unknown kind of document: its "
                                  "root element is 'html'; known are BMR"));
}
