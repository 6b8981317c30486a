#include "limited_scanner.hh"

#include <pthread.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "camera_support.hh"
#include "hostile_declarations.hh"
#include "pull_parser_support.hh"

namespace limits = zrt4::detail;
using namespace test;

namespace {

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

}  // namespace

/// Below the limit and at it `document(count)` is read, above it is refused.
template <class Variant, class Document>
void expect_limit(Document document, std::size_t most, const char* reason) {
  EXPECT_EQ(refusal<Variant>(document(most - 1)), "");
  EXPECT_EQ(refusal<Variant>(document(most)), "");
  EXPECT_EQ(refusal<Variant>(document(most + 1)), reason);
}

TEST(DocumentTypeLimitValues, AreThoseOfTheDocuments) {
  EXPECT_EQ(limits::different_names, 1024U);
  EXPECT_EQ(limits::names_of_slot, 128U);
  EXPECT_EQ(limits::identifiers, 8192U);
  EXPECT_EQ(limits::content_model_particles, 256U);
  EXPECT_EQ(limits::content_model_states, 1048576U);
  EXPECT_EQ(limits::attributes_of_element, 256U);
  EXPECT_EQ(limits::words_of_attribute, 256U);
  EXPECT_EQ(limits::parameter_entity_length, 4096U);
  EXPECT_EQ(limits::declaration_memory, 134217728U);
  EXPECT_EQ(limits::nesting_entities, 512U);
  EXPECT_EQ(limits::entity_references, 50000U);
  EXPECT_EQ(limits::added_units, 16777216U);
  EXPECT_EQ(limits::units_of_node, 128U);
}

template <class Variant>
class DocumentTypeLimits : public testing::Test {};
using both_variants = testing::Types<test::in_memory, test::in_file>;
TYPED_TEST_SUITE(DocumentTypeLimits, both_variants);

TYPED_TEST(DocumentTypeLimits, AnyNumberOfDifferentElements) {
  EXPECT_EQ(refusal<TypeParam>("<R>" + numbered(100'000, "<x", "/>") + "</R>"), "");
  EXPECT_EQ(refusal<TypeParam>("<R>" + numbered(2000, "<x", "/>") + times(1000, "<x1999/>") +
                               times(1000, "<x1500/>") + "</R>"),
            "");
}

TYPED_TEST(DocumentTypeLimits, CollidingElements) {
  const auto elements = [](std::size_t count) {
    return "<R>" + colliding(count - 1, "<", "/>") + "</R>";
  };
  constexpr std::size_t most = limits::different_names + limits::names_of_slot;
  expect_limit<TypeParam>(elements, most, "too many different elements");
}

TYPED_TEST(DocumentTypeLimits, ElementsThatCollideInATableOfOneSize) {
  const auto document = [](std::size_t slots, std::size_t count) {
    return "<R>" + numbered(limits::different_names - 1, "<a", "/>") +
           named(names_in_a_slot(slots, count), "<", "/>") + "</R>";
  };
  // The table has 1919 slots until three quarters of them are taken, then 3839.
  EXPECT_EQ(refusal<TypeParam>(document(1919, limits::names_of_slot)), "");
  EXPECT_EQ(refusal<TypeParam>(document(1919, limits::names_of_slot + 1)),
            "too many different elements");
  EXPECT_EQ(refusal<TypeParam>(document(3839, 415)), "");
  EXPECT_EQ(refusal<TypeParam>(document(3839, 416)), "too many different elements");
}

TYPED_TEST(DocumentTypeLimits, DeclaredElements) {
  const auto declared = [](std::size_t count) {  // R and b are two of them
    return with_declarations(numbered(count - 2, "<!ELEMENT x", " EMPTY>"));
  };
  expect_limit<TypeParam>(declared, limits::different_names, "too many different elements");
}

TYPED_TEST(DocumentTypeLimits, ElementsWithDeclaredAttributes) {
  const auto declared = [](std::size_t count) {
    return with_declarations(numbered(count - 2, "<!ATTLIST x", " a CDATA #IMPLIED>"));
  };
  // Warned of, as they are not declared themselves.
  EXPECT_THAT(refusal<TypeParam>(declared(limits::different_names)),
              testing::Not(testing::HasSubstr("too many")));
  EXPECT_EQ(refusal<TypeParam>(declared(limits::different_names + 1)),
            "too many different elements");
}

TYPED_TEST(DocumentTypeLimits, AnyNumberOfAttributes) {
  EXPECT_EQ(refusal<TypeParam>(one_tag(numbered(100'000, " x", "=''"))), "");
}

TYPED_TEST(DocumentTypeLimits, CollidingAttributes) {
  const auto attributes = [](std::size_t count) { return one_tag(colliding(count, " ", "=''")); };
  constexpr std::size_t most = limits::different_names + limits::names_of_slot;
  expect_limit<TypeParam>(attributes, most, "an element has too many attributes");
}

TYPED_TEST(DocumentTypeLimits, AttributesThatCollideInATableThatEarlierTagsMadeGrow) {
  const auto document = [](std::size_t before, std::size_t count) {
    return "<R><b" + numbered(before, " a", "=''") + "/><b" +
           numbered(limits::different_names, " a", "=''") +
           named(names_in_a_slot(3657, count), " ", "=''") + "/></R>";
  };
  // The table has 457 slots, and 3657 when 1828 attributes have been in it.
  EXPECT_EQ(refusal<TypeParam>(document(1, limits::names_of_slot + 1)), "");
  EXPECT_EQ(refusal<TypeParam>(document(1828, limits::names_of_slot)), "");
  EXPECT_EQ(refusal<TypeParam>(document(1828, limits::names_of_slot + 1)),
            "an element has too many attributes");
}

TYPED_TEST(DocumentTypeLimits, AttributesOfMoreAndMoreStartTags) {
  std::string document = "<R>";
  for (std::size_t count = 1; count <= 4096; count *= 2) {
    for (const char* name : {" x", " y"}) document += "<b" + numbered(count, name, "=''") + "/>";
  }
  EXPECT_EQ(refusal<TypeParam>(document + "</R>"), "");
  EXPECT_EQ(refusal<TypeParam>(document + "<b" + colliding(1153, " ", "=''") + "/></R>"),
            "an element has too many attributes");
}

TYPED_TEST(DocumentTypeLimits, AttributesOfALongTagKeepTheirValues) {
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

TYPED_TEST(DocumentTypeLimits, Entities) {
  const auto declared = [](std::size_t count) {
    return with_declarations(numbered(count, "<!ENTITY x", " 'y'>"), "&x0;");
  };
  expect_limit<TypeParam>(declared, limits::different_names, "too many entities");
}

TYPED_TEST(DocumentTypeLimits, ParameterEntities) {
  const auto declared = [](std::size_t count) {
    return with_declarations(numbered(count, "<!ENTITY % x", " 'y'>"));
  };
  EXPECT_EQ(refusal<TypeParam>(declared(limits::different_names)), "");
  EXPECT_EQ(refusal<TypeParam>(declared(limits::different_names + 1)), "too many entities");
}

TYPED_TEST(DocumentTypeLimits, Notations) {
  const auto declared = [](std::size_t count) {
    return with_declarations(numbered(count, "<!NOTATION x", " PUBLIC 'y'>"));
  };
  expect_limit<TypeParam>(declared, limits::different_names, "too many notations");
}

TYPED_TEST(DocumentTypeLimits, Identifiers) {
  const auto with = [](std::size_t ids, std::size_t references) {
    return with_declarations(
        "<!ATTLIST b i ID #IMPLIED r IDREFS #IMPLIED>",
        numbered(ids, "<b i='x", "'/>") + "<b r='x0" + times(references - 1, " x1") + "'/>");
  };
  EXPECT_EQ(refusal<TypeParam>(with(limits::identifiers - 3, 2)), "");
  EXPECT_EQ(refusal<TypeParam>(with(limits::identifiers - 2, 2)), "");
  EXPECT_EQ(refusal<TypeParam>(with(limits::identifiers - 1, 2)), "too many identifiers");
  EXPECT_EQ(refusal<TypeParam>(with(2, limits::identifiers - 2)), "");
  EXPECT_EQ(refusal<TypeParam>(with(2, limits::identifiers - 1)), "too many identifiers");
}

TYPED_TEST(DocumentTypeLimits, ErrorsAreNeitherAttributesNorIdentifiers) {
  TypeParam variant(with_declarations("<!ELEMENT c (b)*><!ATTLIST b i ID #IMPLIED>",
                                      "<c>" + times(limits::identifiers + 1, "&#65;") + "</c>"));
  test::captured([&] {
    if (!variant.start()) test::trace(variant.parser);
  });
  EXPECT_EQ(variant.parser.get_error_counter(), limits::identifiers + 1);
}

TYPED_TEST(DocumentTypeLimits, LengthOfAContentModel) {
  expect_limit<TypeParam>(choice_of, limits::content_model_particles,
                          "the content model of an element is too long");
}

TYPED_TEST(DocumentTypeLimits, RepetitionsCountInAContentModel) {
  const auto repeated = [](std::size_t times) {
    return with_declarations("<!ELEMENT c " + std::string(times, '(') + "b" + ::times(times, ")*") +
                             ">");
  };
  EXPECT_EQ(refusal<TypeParam>(repeated(limits::content_model_particles - 1)), "");
  EXPECT_EQ(refusal<TypeParam>(repeated(limits::content_model_particles)),
            "the content model of an element is too long");
}

TYPED_TEST(DocumentTypeLimits, StatesOfContentModels) {
  EXPECT_EQ(refusal<TypeParam>(ambiguous(13)), "");
  EXPECT_EQ(refusal<TypeParam>(ambiguous(14)), "");  // 32 particles, 2^14 states: one half
  EXPECT_EQ(refusal<TypeParam>(ambiguous(15)), "the content models are too ambiguous");
  EXPECT_EQ(refusal<TypeParam>(ambiguous(100)), "the content models are too ambiguous");
}

TYPED_TEST(DocumentTypeLimits, RepeatedContentIsAmbiguous) {
  const std::string too_ambiguous = "the content models are too ambiguous";
  EXPECT_EQ(refusal<TypeParam>(model("(R|b)*", "(R|b)")), too_ambiguous);
  EXPECT_EQ(refusal<TypeParam>(model("(R|b)+", "(R|b)")), too_ambiguous);
  EXPECT_EQ(refusal<TypeParam>(model("(R|b)?", "(R|b)")), "");
}

TYPED_TEST(DocumentTypeLimits, ContentOfWhichAllMayBeMissingIsNotAmbiguous) {
  EXPECT_EQ(refusal<TypeParam>(model("(R|b)*", "(R|b)?")), "");
  EXPECT_EQ(refusal<TypeParam>(model("(R|b)*", "(R?|b)")), "");
  EXPECT_EQ(refusal<TypeParam>(model("(R|b)*", "(R|b?)")), "");
  EXPECT_EQ(refusal<TypeParam>(model("(R|b)*", "(R?,b?)")), "");
  EXPECT_EQ(refusal<TypeParam>(model("(R|b)*", "(R|b)*")), "");
}

TYPED_TEST(DocumentTypeLimits, ContentOfWhichAPartMayBeMissingIsAmbiguous) {
  const std::string too_ambiguous = "the content models are too ambiguous";
  EXPECT_EQ(refusal<TypeParam>(model("(R|b)*", "((R|b),(R|b)?)")), too_ambiguous);
  EXPECT_EQ(refusal<TypeParam>(model("(R|b)*", "((R|b)?,(R|b))")), too_ambiguous);
}

// Where each R has to stand beside a b there are about 17,700 states, which is within the limit.
TYPED_TEST(DocumentTypeLimits, WhatMayStandBesideAnElementDecidesHowAmbiguousItIs) {
  const std::string too_ambiguous = "the content models are too ambiguous";
  EXPECT_EQ(refusal<TypeParam>(model("((b?,R)|b)*", "(R|b)")), too_ambiguous);
  EXPECT_EQ(refusal<TypeParam>(model("((R,b?)|b)*", "(R|b)")), too_ambiguous);
  EXPECT_EQ(refusal<TypeParam>(model("((b,R)|b)*", "(R|b)")), "");
  EXPECT_EQ(refusal<TypeParam>(model("((R,b)|b)*", "(R|b)")), "");
}

TYPED_TEST(DocumentTypeLimits, StatesAddUpOverTheElements) {
  const std::string half = "((R|b)*,R" + times(14, ",(R|b)") + ")>";
  const std::string all = "<!ELEMENT c " + half + "<!ELEMENT d " + half;
  EXPECT_EQ(refusal<TypeParam>(with_declarations(all)), "");
  EXPECT_EQ(refusal<TypeParam>(with_declarations(all + "<!ELEMENT e EMPTY>")), "");
  EXPECT_EQ(refusal<TypeParam>(with_declarations(all + "<!ELEMENT e (b)>")),
            "the content models are too ambiguous");
}

TYPED_TEST(DocumentTypeLimits, AttributesOfAnElement) {
  expect_limit<TypeParam>(attributes, limits::attributes_of_element,
                          "an element has too many attributes");
}

TYPED_TEST(DocumentTypeLimits, WordsOfAnAttribute) {
  expect_limit<TypeParam>(words, limits::words_of_attribute,
                          "an attribute has too many values to choose from");
}

TYPED_TEST(DocumentTypeLimits, LengthOfAParameterEntity) {
  expect_limit<TypeParam>(parameter_entity, limits::parameter_entity_length,
                          "a parameter entity is too long");
}

TYPED_TEST(DocumentTypeLimits, MemoryOfTheDeclarations) {
  // What a reference takes is the scanner's own matter; it differs with the word size.
  EXPECT_EQ(refusal<TypeParam>(parameter_references(500)), "");
  EXPECT_EQ(refusal<TypeParam>(parameter_references(1000)),
            "the declarations take too much memory");
}

TYPED_TEST(DocumentTypeLimits, EntitiesThatReferToOthers) {
  expect_limit<TypeParam>(nested, limits::nesting_entities, "too many entities refer to others");
}

TYPED_TEST(DocumentTypeLimits, EntityReferences) {
  EXPECT_EQ(refusal<TypeParam>(references(limits::entity_references - 1)), "");
  EXPECT_EQ(refusal<TypeParam>(references(limits::entity_references)), "");
  EXPECT_EQ(refusal<TypeParam>(references(limits::entity_references + 1)),
            "parser has encountered more than '50000' entity expansions in the document; this is "
            "the limit imposed by the application");
}

TYPED_TEST(DocumentTypeLimits, PredefinedEntitiesAreNotCounted) {
  EXPECT_EQ(refusal<TypeParam>("<R>" + times(limits::entity_references + 1, "&amp;&#65;") + "</R>"),
            "");
}

TYPED_TEST(DocumentTypeLimits, TextThatReferencesAdd) {
  const std::string entity(limits::added_units / 16, 'x');
  EXPECT_EQ(refusal<TypeParam>(references(15, entity)), "");
  EXPECT_EQ(refusal<TypeParam>(references(16, entity)), "");
  EXPECT_EQ(refusal<TypeParam>(references(17, entity)),
            "parser has encountered more than '16' entity expansions in the document; this is the "
            "limit imposed by the application");
}

TYPED_TEST(DocumentTypeLimits, AnEntityLargerThanAllThatReferencesMayAddIsReferencedOnce) {
  const std::string entity(limits::added_units + 1, 'x');
  EXPECT_EQ(refusal<TypeParam>(references(1, entity)), "");
  EXPECT_EQ(refusal<TypeParam>(references(2, entity)),
            "parser has encountered more than '1' entity expansions in the document; this is the "
            "limit imposed by the application");
}

TYPED_TEST(DocumentTypeLimits, ASecondDeclarationOfAnEntityDoesNotCount) {
  const std::string larger(limits::added_units + 1, 'x');
  EXPECT_EQ(refusal<TypeParam>(
                with_declarations("<!ENTITY e 'x'><!ENTITY e '" + larger + "'>", "&e;&e;")),
            "");
}

TYPED_TEST(DocumentTypeLimits, ElementsThatReferencesAdd) {
  const std::string entity = times(1 << 10, "<b/>");
  const std::size_t most = limits::added_units / (entity.size() + limits::units_of_node * 1024);
  EXPECT_EQ(refusal<TypeParam>(references(most, entity)), "");
  EXPECT_EQ(refusal<TypeParam>(references(most + 1, entity)),
            "parser has encountered more than '" + std::to_string(most) +
                "' entity expansions in the document; this is the limit imposed by the "
                "application");
}

TYPED_TEST(DocumentTypeLimits, TextThatDefaultsAdd) {
  constexpr std::size_t length = (1 << 14) - limits::units_of_node;
  EXPECT_EQ(refusal<TypeParam>(defaults(1022, length)), "");
  EXPECT_EQ(refusal<TypeParam>(defaults(1023, length)), "");  // and once in the declaration
  EXPECT_EQ(refusal<TypeParam>(defaults(1024, length)),
            "the defaults of attributes add too much to the document");
}

TYPED_TEST(DocumentTypeLimits, SpecifiedAttributesAreNoDefaults) {
  EXPECT_EQ(refusal<TypeParam>(
                with_declarations("<!ATTLIST b x CDATA 'd'>", times(200'000, "<b x='s'/>"))),
            "");
}

TYPED_TEST(DocumentTypeLimits, RefusalIsAFatalError) {
  TypeParam variant(choice_of(limits::content_model_particles + 1));
  bool failed = false;
  const test::output written = test::captured([&] { failed = variant.start(); });
  EXPECT_TRUE(failed);
  EXPECT_EQ(variant.parser.get_error_counter(), 1);
  EXPECT_THAT(written.err, testing::StartsWith("\nFatal Error at (file " + variant.system_id() +
                                               ", line 1, char "));
  EXPECT_THAT(written.err, testing::EndsWith("): the content model of an element is too long\n"
                                             "scanFirst() failed\n"));
}

TYPED_TEST(DocumentTypeLimits, RefusalBetweenElementsEndsTheDocument) {
  TypeParam variant(defaults(1024, 1 << 14));
  EXPECT_FALSE(variant.start());
  std::string steps;
  test::captured([&] { steps = test::trace(variant.parser); });
  EXPECT_THAT(steps, testing::EndsWith("\n1 - -\n"));
  EXPECT_EQ(test::step(variant.parser), "-1 - -");
  EXPECT_EQ(variant.parser.get_error_counter(), 1);
}

TEST(DocumentTypeLimitsOfFiles, HoldForEachFileThatAParserStartsWith) {
  test::temporary_file refused(choice_of(limits::content_model_particles + 1));
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

namespace {

#ifdef ZRT4_LEAK_CHECKED
constexpr std::size_t stack_size = 1 << 20;  // the sanitizer's frames are larger
constexpr double most_seconds = 20;
#else
constexpr std::size_t stack_size = 256 << 10;
constexpr double most_seconds = 1;
#endif

double cpu_seconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

void run(std::function<void()> code) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, stack_size);
  pthread_t thread;
  const auto call = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, call, &code), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

std::vector<std::pair<const char*, std::string>> hostile_documents() {
  return {
      {"colliding elements", "<R>" + colliding(100'000, "<", "/>") + "</R>"},
      {"an element after those it collides with",
       "<R>" + colliding(1023, "<", "/>") +
           times(20'000, "<" + colliding_name(limits::different_names - 2) + "/>") + "</R>"},
      {"colliding attributes", "<R" + colliding(100'000, " ", "=''") + "/>"},
      {"colliding attributes after as many others", "<R><b" + numbered(100'000, " x", "=''") +
                                                        "/><b" + colliding(100'000, " ", "=''") +
                                                        "/></R>"},
      {"colliding declarations", with_declarations(colliding(20'000, "<!ELEMENT ", " ANY>"))},
      {"colliding entities", with_declarations(colliding(20'000, "<!ENTITY ", " ''>"))},
      {"references to colliding entities",
       with_declarations(colliding(limits::different_names, "<!ENTITY ", " ''>"),
                         times(30'000, "&" + colliding_name(1000) + ";"))},
      {"colliding parameter entities", with_declarations(colliding(20'000, "<!ENTITY % ", " ''>"))},
      {"colliding notations", with_declarations(colliding(20'000, "<!NOTATION ", " PUBLIC 'y'>"))},
      {"colliding identifiers",
       with_declarations("<!ATTLIST b i ID #IMPLIED>", colliding(100'000, "<b i='", "'/>"))},
      {"colliding references", with_declarations("<!ATTLIST b r IDREFS #IMPLIED>",
                                                 "<b r='" + colliding(100'000, "", " ") + "'/>")},
      {"parameter entities", doubling(30)},
      {"parameter entities without an end", doubling(900)},
      {"declarations through parameter entities",
       with_declarations("<!ENTITY % p '" + times(180, "<!ATTLIST b c CDATA \"\">") + "'>" +
                         times(2000, "%p;"))},
      {"ambiguous content model", ambiguous(14)},
      {"very ambiguous content model", ambiguous(100)},
      {"nested content model", left_nested(limits::content_model_particles - 1)},
      {"deeply nested content model", left_nested(1'000'000)},
      {"parentheses", with_declarations("<!ELEMENT c " + std::string(1'000'000, '('))},
      {"entities", laughs(9)},
      {"large entity", references(1000, std::string(100'000, 'x'))},
      {"entity of elements", references(5000, times(1000, "<b/>"))},
      {"entity of attributes", references(5000, "<b " + numbered(250, " x", "=\"\"") + "/>")},
      {"nested entities", nested(limits::nesting_entities)},
      {"deeply nested entities", nested(50'000)},
      {"defaults", defaults(100'000, 4096)},
      {"many defaults", with_declarations("<!ATTLIST b" + numbered(256, " x", " CDATA ''") + ">",
                                          times(10'000, "<b/>"))},
      {"many attributes",
       with_declarations("<!ATTLIST b" + numbered(256, " x", " CDATA #IMPLIED") + ">",
                         times(50'000, "<b/>"))},
      {"many words",
       with_declarations("<!ATTLIST b x (w0" + numbered(256, "|w", "").substr(3) + ") 'w0'>",
                         times(50'000, "<b x='w255'/>"))},
  };
}

}  // namespace

TEST(HostileDeclarations, TakeLessThanASecondAndASmallStack) {
  for (auto& [name, document] : hostile_documents()) {
    SCOPED_TRACE(name);
    double taken = 0;
    test::captured([&, &text = document] {
      run([&] {
        const double before = cpu_seconds();
        test::in_memory variant(text);
        if (!variant.start()) test::trace(variant.parser);
        taken = cpu_seconds() - before;
      });
    });
    EXPECT_LT(taken, most_seconds);
  }
}

// A tree finds names in a table that does not grow.
TEST(DocumentTypeLimitsOfCameraFiles, DifferentNames) {
  const auto features = [](const std::string& before) {
    const test::temporary_file file("<R>" + before + "<Float Name='f'/></R>");
    std::vector<ZRT4GigEFeature*> found;
    std::string path = file.path();
    EXPECT_FALSE(zrt4_fill_gige_descr(path.data(), &found));
    const std::size_t count = found.size();
    zrt4_clean_gige_descr(&found);
    return count;
  };
  constexpr std::size_t most = limits::different_names;
  EXPECT_EQ(features(numbered(most - 2, "<x", "/>")), 1U);
  EXPECT_EQ(features(numbered(most - 1, "<x", "/>")), 0U);
  EXPECT_EQ(features("<b" + numbered(most, " x", "=''") + "/>"), 1U);
  EXPECT_EQ(features("<b" + numbered(most + 1, " x", "=''") + "/>"), 0U);
}

TEST(HostileDeclarations, InCameraFiles) {
  for (auto& [name, document] : hostile_documents()) {
    SCOPED_TRACE(name);
    const test::temporary_file file(document);
    double taken = 0;
    test::captured([&] {
      run([&] {
        const double before = cpu_seconds();
        std::vector<ZRT4GigEFeature*> features;
        std::string path = file.path();
        zrt4_fill_gige_descr(path.data(), &features);
        zrt4_clean_gige_descr(&features);
        taken = cpu_seconds() - before;
      });
    });
    EXPECT_LT(taken, most_seconds);
  }
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  EXPECT_LT(usage.ru_maxrss, 1 << 20) << "more than a gigabyte";
}
