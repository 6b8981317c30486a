#include "limited_scanner.hh"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "camera_support.hh"
#include "pull_parser_support.hh"

namespace limits = zrt4::detail;

namespace {

std::string times(std::size_t count, const std::string& text) {
  std::string all;
  all.reserve(count * text.size());
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

/// "<before>0<after><before>1<after>..."
std::string numbered(std::size_t count, const std::string& before, const std::string& after) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += before + std::to_string(i) + after;
  return all;
}

std::string with_declarations(const std::string& declarations, const std::string& content = "") {
  return "<!DOCTYPE R [<!ELEMENT R ANY><!ELEMENT b EMPTY>" + declarations + "]><R>" + content +
         "</R>";
}

/// Names of a list, one of which is b.
std::string list_of(std::size_t names, const std::string& separator) {
  return "b" + numbered(names - 1, separator + "x", "");
}

std::string model_of(std::size_t names) {
  return with_declarations(
      "<!ELEMENT c (" + list_of(names, "|") + ")>" + numbered(names - 1, "<!ELEMENT x", " EMPTY>"),
      "<c><b/></c>");
}

std::string references(std::size_t count, const std::string& entity = "x") {
  return with_declarations("<!ENTITY e '" + entity + "'>", times(count, "&e;"));
}

/// "" for a document read without an error, otherwise the text of its first message.
template <class Variant>
std::string refusal(const std::string& document) {
  const test::output written = test::captured([&] {
    Variant variant(document);
    if (!variant.start()) test::trace(variant.parser);
  });
  const std::size_t at = written.err.find("): ");
  if (at == std::string::npos) return written.err;
  const std::size_t prefix = written.err.find("Fatal Error at (file ");
  if (prefix != 1) return written.err.substr(0, 200);
  return written.err.substr(at + 3, written.err.find('\n', at) - at - 3);
}

/// Below the limit and at it `document(count)` is read, above it is refused.
template <class Variant, class Document>
void expect_limit(Document document, std::size_t most, const char* reason) {
  EXPECT_EQ(refusal<Variant>(document(most - 1)), "");
  EXPECT_EQ(refusal<Variant>(document(most)), "");
  EXPECT_EQ(refusal<Variant>(document(most + 1)), reason);
}

}  // namespace

TEST(DeclarationLimitValues, AreThoseOfTheDocuments) {
  EXPECT_EQ(limits::different_elements, 131072U);
  EXPECT_EQ(limits::different_names, 4096U);
  EXPECT_EQ(limits::name_length, 4096U);
  EXPECT_EQ(limits::list_length, 65536U);
  EXPECT_EQ(limits::declared_length, 4194304U);
  EXPECT_EQ(limits::content_model_particles, 1024U);
  EXPECT_EQ(limits::content_model_states, 4194304U);
  EXPECT_EQ(limits::entity_references, 50000U);
  EXPECT_EQ(limits::element_limit.base, 131072U);
}

template <class Variant>
class DeclarationLimits : public testing::Test {};
#ifdef ZRT4_LEAK_CHECKED  // where documents as large as these take ten times as long
using variants = testing::Types<test::in_memory>;
#else
using variants = testing::Types<test::in_memory, test::in_file>;
#endif
TYPED_TEST_SUITE(DeclarationLimits, variants);

TYPED_TEST(DeclarationLimits, DifferentElements) {
  const auto elements = [](std::size_t count) {
    return "<R>" + numbered(count - 1, "<x", "/>") + "</R>";
  };
  expect_limit<TypeParam>(elements, limits::different_elements, "too many different elements");
}

TYPED_TEST(DeclarationLimits, DeclaredElements) {
  const auto declared = [](std::size_t count) {  // R and b are two of them
    return with_declarations(numbered(count - 2, "<!ELEMENT x", " EMPTY>"));
  };
  expect_limit<TypeParam>(declared, limits::different_elements, "too many different elements");
}

TYPED_TEST(DeclarationLimits, ElementsWithDeclaredAttributes) {
  const auto declared = [](std::size_t count) {
    return with_declarations(numbered(count - 2, "<!ATTLIST x", " a CDATA #IMPLIED>"));
  };
  EXPECT_EQ(refusal<TypeParam>(declared(limits::different_elements + 1)),
            "too many different elements");
}

TYPED_TEST(DeclarationLimits, AttributesOfATag) {
  const auto tag = [](std::size_t count) {
    return "<R><b" + numbered(count, " x", "=''") + "/></R>";
  };
  const char* const reason = "an element has too many attributes";
  expect_limit<TypeParam>(tag, limits::different_names, reason);
  // Many more are not scanned before they are counted.
  EXPECT_EQ(refusal<TypeParam>(tag(50 * limits::different_names)), reason);
}

TYPED_TEST(DeclarationLimits, AttributesOfALongTagKeepTheirValues) {
  TypeParam variant("<R><b" + numbered(2000, " x", "='v'") + "/><c x0='w' x1999='z'/></R>");
  ASSERT_FALSE(variant.start());
  std::string found;
  while (test::step(variant.parser) != "-1 - -") {
    for (std::string name : {"x0", "x1999"}) {
      char* value = nullptr;
      if (variant.parser.get_attr(name.data(), &value) == 0) found += value;
    }
    found += ' ';
  }
  EXPECT_THAT(found, testing::AllOf(testing::HasSubstr("vv"), testing::HasSubstr("wz")));
}

TYPED_TEST(DeclarationLimits, AttributesOfAnElement) {
  const auto declared = [](std::size_t count) {
    return with_declarations("<!ATTLIST b" + numbered(count, " x", " CDATA #IMPLIED") + ">");
  };
  expect_limit<TypeParam>(declared, limits::different_names, "an element has too many attributes");
}

TYPED_TEST(DeclarationLimits, Entities) {
  const auto declared = [](std::size_t count) {
    return with_declarations(numbered(count, "<!ENTITY x", " 'y'>"), "&x0;");
  };
  expect_limit<TypeParam>(declared, limits::different_names, "too many entities");
}

TYPED_TEST(DeclarationLimits, ParameterEntities) {
  const auto declared = [](std::size_t count) {
    return with_declarations(numbered(count, "<!ENTITY % x", " 'y'>"));
  };
  EXPECT_EQ(refusal<TypeParam>(declared(limits::different_names)), "");
  EXPECT_EQ(refusal<TypeParam>(declared(limits::different_names + 1)), "too many entities");
}

TYPED_TEST(DeclarationLimits, Notations) {
  const auto declared = [](std::size_t count) {
    return with_declarations(numbered(count, "<!NOTATION x", " PUBLIC 'y'>"));
  };
  EXPECT_EQ(refusal<TypeParam>(declared(limits::different_names)), "");
  EXPECT_EQ(refusal<TypeParam>(declared(limits::different_names + 1)), "too many notations");
}

TYPED_TEST(DeclarationLimits, LengthOfADeclaredName) {
  const char* const reason = "a name is too long to be declared";
  const auto name = [](std::size_t length) { return std::string(length, 'n'); };
  expect_limit<TypeParam>(
      [&](std::size_t n) { return with_declarations("<!ELEMENT " + name(n) + " ANY>"); },
      limits::name_length, reason);
  expect_limit<TypeParam>(
      [&](std::size_t n) { return with_declarations("<!ATTLIST b " + name(n) + " CDATA ''>"); },
      limits::name_length, reason);
  expect_limit<TypeParam>(
      [&](std::size_t n) { return with_declarations("<!ENTITY " + name(n) + " ''>"); },
      limits::name_length, reason);
  expect_limit<TypeParam>(
      [&](std::size_t n) { return with_declarations("<!NOTATION " + name(n) + " PUBLIC ''>"); },
      limits::name_length, reason);
}

TYPED_TEST(DeclarationLimits, OtherNamesMayBeOfAnyLength) {
  const std::string name(2 * limits::name_length, 'n');
  EXPECT_EQ(refusal<TypeParam>("<R><" + name + " " + name + "=''/></R>"), "");
}

TYPED_TEST(DeclarationLimits, ValuesToChooseFrom) {
  const auto words = [](std::size_t count) {
    return with_declarations("<!ATTLIST b x (" + list_of(count, "|") + ") 'b'>", "<b x='x0'/>");
  };
  const char* const reason = "an attribute has too many values to choose from";
  expect_limit<TypeParam>(words, limits::different_names, reason);
  const auto word = [](std::size_t length) {
    return with_declarations("<!ATTLIST b x (" + std::string(length, 'w') + ") #IMPLIED>");
  };
  expect_limit<TypeParam>(word, limits::list_length, reason);
}

TYPED_TEST(DeclarationLimits, NamesInAValue) {
  const auto list = [](std::size_t count) {
    return with_declarations("<!ATTLIST b x NMTOKENS #IMPLIED>",
                             "<b x='" + list_of(count, " ") + "'/>");
  };
  expect_limit<TypeParam>(list, limits::different_names,
                          "an attribute has too long a list of names");
}

TYPED_TEST(DeclarationLimits, ATextMayHaveAnyNumberOfWords) {
  const std::string words = list_of(2 * limits::different_names, " ");
  EXPECT_EQ(refusal<TypeParam>(
                with_declarations("<!ATTLIST b x CDATA #IMPLIED>", "<b x='" + words + "'/>")),
            "");
}

TYPED_TEST(DeclarationLimits, LengthOfAllDeclarations) {
  const auto entity = [](std::size_t length) {
    return with_declarations("<!ENTITY e '" + std::string(length, 'x') + "'>", "&e;");
  };
  constexpr std::size_t most = limits::declared_length - std::string_view("Rbe").size();
  expect_limit<TypeParam>(entity, most, "the declarations are too long");
}

TYPED_TEST(DeclarationLimits, DefaultsCountAsLongAsReferencesMakeThem) {
  const std::string entity = "<!ENTITY e '" + std::string(limits::declared_length / 4, 'x') + "'>";
  const auto value = [&](std::size_t count) {
    return with_declarations(entity + "<!ATTLIST b x CDATA '" + times(count, "&e;") + "'>");
  };
  EXPECT_EQ(refusal<TypeParam>(value(2)), "");
  EXPECT_EQ(refusal<TypeParam>(value(3)), "the declarations are too long");
}

TYPED_TEST(DeclarationLimits, LengthOfAContentModel) {
  expect_limit<TypeParam>(model_of, limits::content_model_particles,
                          "the content model of an element is too long");
}

TYPED_TEST(DeclarationLimits, RepetitionsCountInAContentModel) {
  const auto repeated = [](std::size_t count) {  // and one name
    return with_declarations("<!ELEMENT c " + std::string(count - 1, '(') + "b" +
                             times(count - 1, ")*") + ">");
  };
  expect_limit<TypeParam>(repeated, limits::content_model_particles,
                          "the content model of an element is too long");
}

TYPED_TEST(DeclarationLimits, AmbiguousContentModels) {
  const char* const reason = "the content models are too ambiguous";
  const auto model = [](const std::string& name, std::size_t places) {
    return "<!ELEMENT " + name + " ((R|b)*" + times(places - 1, ",(R|b)") + ")>";
  };
  // 2^n states for the places of each name, times the names
  EXPECT_EQ(refusal<TypeParam>(with_declarations(model("c", 16))), "");
  EXPECT_EQ(refusal<TypeParam>(with_declarations(model("c", 17))), reason);
  EXPECT_EQ(refusal<TypeParam>(with_declarations(model("c", 100))), reason);
  EXPECT_EQ(refusal<TypeParam>(with_declarations(model("c", 15) + model("d", 15))), "");
  EXPECT_EQ(refusal<TypeParam>(with_declarations(model("c", 15) + model("d", 15) + model("e", 15))),
            reason);
}

TYPED_TEST(DeclarationLimits, ChildrenOfALongContentModel) {
  const std::string name(limits::name_length, 'n');
  const auto document = [&](std::size_t children) {
    return "<!DOCTYPE R [<!ELEMENT R (" + name + numbered(255, "|" + name.substr(4), "") +
           ")*><!ELEMENT " + name + " EMPTY>" +
           numbered(255, "<!ELEMENT " + name.substr(4), " EMPTY>") + "<!ENTITY e '" +
           times(10, "<" + name.substr(4) + "254/>") + "'>]><R>" + times(children / 10, "&e;") +
           "</R>";
  };
  EXPECT_EQ(refusal<TypeParam>(document(1000)), "");
  EXPECT_EQ(refusal<TypeParam>(document(20'000)),
            "an element has too many children for its content model");
}

TYPED_TEST(DeclarationLimits, EntityReferences) {
#ifdef ZRT4_LEAK_CHECKED
  GTEST_SKIP() << "with sanitizers so many references take longer than the budget";
#endif
  EXPECT_EQ(refusal<TypeParam>(references(limits::entity_references - 1)), "");
  EXPECT_EQ(refusal<TypeParam>(references(limits::entity_references)), "");
  EXPECT_EQ(refusal<TypeParam>(references(limits::entity_references + 1)),
            "parser has encountered more than '50000' entity expansions in the document; this is "
            "the limit imposed by the application");
}

TYPED_TEST(DeclarationLimits, ALongDocumentMayReferMoreOften) {
#ifdef ZRT4_LEAK_CHECKED
  GTEST_SKIP() << "with sanitizers so many references take longer than the budget";
#endif
  const std::string part = times(limits::entity_references / 2, "&e;" + std::string(40, 't'));
  EXPECT_EQ(refusal<TypeParam>(with_declarations("<!ENTITY e 'x'>", times(4, part))), "");
}

TYPED_TEST(DeclarationLimits, PredefinedEntitiesAreNotCounted) {
  EXPECT_EQ(refusal<TypeParam>("<R>" + times(limits::entity_references + 1, "&amp;&#65;") + "</R>"),
            "");
}

TYPED_TEST(DeclarationLimits, ElementsThatReferencesMake) {
  const std::string entity = times(1 << 10, "<b/>");
  EXPECT_EQ(refusal<TypeParam>(references(128, entity)), "");
  // Each byte of the document is one element more.
  EXPECT_EQ(refusal<TypeParam>(references(140, entity)), "entities make too many elements");
}

TYPED_TEST(DeclarationLimits, RefusalIsAFatalError) {
  TypeParam variant(model_of(limits::content_model_particles + 1));
  bool failed = false;
  const test::output written = test::captured([&] { failed = variant.start(); });
  EXPECT_TRUE(failed);
  EXPECT_EQ(variant.parser.get_error_counter(), 1);
  EXPECT_THAT(written.err, testing::StartsWith("\nFatal Error at (file " + variant.system_id() +
                                               ", line 1, char "));
  EXPECT_THAT(written.err, testing::EndsWith("): the content model of an element is too long\n"
                                             "scanFirst() failed\n"));
}

TYPED_TEST(DeclarationLimits, RefusalBetweenElementsEndsTheDocument) {
  TypeParam variant(references(140, times(1 << 10, "<b/>")));
  EXPECT_FALSE(variant.start());
  std::string steps;
  test::captured([&] { steps = test::trace(variant.parser); });
  EXPECT_THAT(steps, testing::EndsWith("\n1 - -\n"));
  EXPECT_EQ(test::step(variant.parser), "-1 - -");
  EXPECT_EQ(variant.parser.get_error_counter(), 1);
}

TEST(DeclarationLimitsOfFiles, HoldForEachFileThatAParserStartsWith) {
  test::temporary_file refused(model_of(limits::content_model_particles + 1));
  test::temporary_file plain("<R/>");
  SAX_File_Parser parser;
  std::string results;
  const test::output written = test::captured([&] {
    for (test::temporary_file* file : {&refused, &refused, &plain})
      results += parser.start(file->name()) ? "refused " : "read ";
  });
  EXPECT_EQ(results, "refused refused read ");
  const std::string reason = "the content model of an element is too long";
  EXPECT_NE(written.err.find(reason), written.err.rfind(reason));
}

TEST(DeclarationLimitsOfCameraFiles, EndThemWhereTheyAre) {
  const auto features = [](const std::string& before) {
    const test::temporary_file file("<R><Float Name='f'/>" + before + "<Float Name='g'/></R>");
    std::vector<ZRT4GigEFeature*> found;
    std::string path = file.path();
    EXPECT_FALSE(zrt4_fill_gige_descr(path.data(), &found));
    const std::size_t count = found.size();
    zrt4_clean_gige_descr(&found);
    return count;
  };
  constexpr std::size_t most = limits::different_names;
  EXPECT_EQ(features("<b" + numbered(most, " x", "=''") + "/>"), 2U);
  EXPECT_EQ(features("<b" + numbered(most + 1, " x", "=''") + "/>"), 1U);
}

TEST(ScannerMemory, EachRequestHasBytesOfItsOwn) {
  xercesc::XMLPlatformUtils::Initialize();
  {
    limits::scanner_memory memory;
    constexpr std::size_t largest = 600;
    std::vector<unsigned char*> blocks;
    const auto filler = [](std::size_t size) { return static_cast<unsigned char>(size % 251); };
    for (int round = 0; round < 2; ++round) {
      for (std::size_t size = 1; size <= largest; ++size) {
        auto* block = static_cast<unsigned char*>(memory.allocate(size));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0U);
        std::fill_n(block, size, filler(size));
        blocks.push_back(block);
      }
      for (std::size_t size = 1; size <= largest; ++size) {
        unsigned char* const block = blocks[size - 1];
        EXPECT_TRUE(std::all_of(block, block + size, [&](auto byte) {
          return byte == filler(size);
        })) << size;
        memory.deallocate(block);
      }
      blocks.clear();
    }
  }
  xercesc::XMLPlatformUtils::Terminate();
}
