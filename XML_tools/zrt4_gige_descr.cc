#include "zrt4_gige_descr.hh"

#include <cstdio>
#include <memory>
#include <optional>
#include <string_view>
#include <typeinfo>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/impl/DOMAttrImpl.hpp>
#include <xercesc/dom/impl/DOMNodeListImpl.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include "limited_scanner.hh"
#include "local_text.hh"
#include "name_table.hh"

using xercesc::DOMException;
using xercesc::DOMNode;
using xercesc::DOMNodeList;
using xercesc::XercesDOMParser;
using xercesc::XMLException;
using zrt4::detail::to_local;

constexpr const char* const FeatureTags[FEATURE_TYPE_MAX] = {"Undefined",   "Integer", "Float",
                                                             "Enumeration", "Boolean", "StringReg",
                                                             "Command",     "IntReg",  "Int64"};
constexpr const char* const MoreTags[MORE_TAGS_MAX] = {"Extension", "PvRename", "ToolTip",
                                                       "Description"};
constexpr const char* const Attributes[ATTRIBUTE_MAX] = {"Name"};

ZRT4GigEFeature::ZRT4GigEFeature() : type(FEATURE_TYPE_UNDEF) {}
ZRT4GigEFeature::~ZRT4GigEFeature() = default;

namespace {

using features = std::vector<ZRT4GigEFeature*>;
using text_field = std::string ZRT4GigEFeature::*;

constexpr std::string_view never_set = "Unknown";
constexpr std::string_view awaits_text = "Waiting";

constexpr text_field all_texts[] = {&ZRT4GigEFeature::name, &ZRT4GigEFeature::extension,
                                    &ZRT4GigEFeature::tooltip, &ZRT4GigEFeature::description};

// What a text node may fill, in this order.
constexpr text_field filled_by_text[] = {&ZRT4GigEFeature::extension, &ZRT4GigEFeature::tooltip,
                                         &ZRT4GigEFeature::description};

struct tag_meaning {
  int feature;       // the type of the feature that starts, or
  text_field opens;  // the text of the latest feature that is to be filled next
};

constexpr int no_feature = -1;

constexpr zrt4::detail::named<tag_meaning> known_tags[] = {
    {FeatureTags[FEATURE_TYPE_UNDEF], {FEATURE_TYPE_UNDEF, nullptr}},
    {FeatureTags[FEATURE_TYPE_INT], {FEATURE_TYPE_INT, nullptr}},
    {FeatureTags[FEATURE_TYPE_FLOAT], {FEATURE_TYPE_FLOAT, nullptr}},
    {FeatureTags[FEATURE_TYPE_ENUMER], {FEATURE_TYPE_ENUMER, nullptr}},
    {FeatureTags[FEATURE_TYPE_BOOL], {FEATURE_TYPE_BOOL, nullptr}},
    {FeatureTags[FEATURE_TYPE_STRING], {FEATURE_TYPE_STRING, nullptr}},
    {FeatureTags[FEATURE_TYPE_COMMAND], {FEATURE_TYPE_COMMAND, nullptr}},
    {FeatureTags[FEATURE_TYPE_REGISTER], {FEATURE_TYPE_REGISTER, nullptr}},
    {FeatureTags[FEATURE_TYPE_LONG], {FEATURE_TYPE_LONG, nullptr}},
    {MoreTags[MORE_TAGS_EXTENSION], {no_feature, nullptr}},
    {MoreTags[MORE_TAGS_PVRENAME], {no_feature, &ZRT4GigEFeature::extension}},
    {MoreTags[MORE_TAGS_TOOLTIP], {no_feature, &ZRT4GigEFeature::tooltip}},
    {MoreTags[MORE_TAGS_DESCRIPTION], {no_feature, &ZRT4GigEFeature::description}},
};
constexpr zrt4::detail::name_table tags_by_name(known_tags);

constexpr std::string_view name_attribute = Attributes[ATTRIBUTE_NAME];

std::optional<std::string> known_text(const DOMException& exception) {
  constexpr XMLSize_t longest = 2047;
  XMLCh text[longest + 1] = {};
  if (!xercesc::DOMImplementation::loadDOMExceptionMsg(exception.code, text, longest)) return {};
  return to_local(text);
}

// Collecting the parts of a value costs the scanner more than all else about a feature; nearly
// every value is one text.
const XMLCh* value_of(const DOMNode& attribute) {
  if (typeid(attribute) == typeid(xercesc::DOMAttrImpl)) {
    const DOMNode* part = attribute.getFirstChild();
    if (part != nullptr && part->getNodeType() == DOMNode::TEXT_NODE &&
        part->getNextSibling() == nullptr) {
      return part->getNodeValue();
    }
  }
  return attribute.getNodeValue();
}

/// The nodes of one level, taken one by one in document order.
class level {
 public:
  explicit level(DOMNodeList& nodes) {
    // The scanner's own child lists count from the first node at each access.
    if (typeid(nodes) == typeid(xercesc::DOMNodeListImpl)) {
      sibling = nodes.item(0);
    } else {
      list = &nodes;
      length = nodes.getLength();
    }
  }

  bool at_end() const { return list != nullptr ? index == length : sibling == nullptr; }

  DOMNode* take() {
    if (list != nullptr) return list->item(index++);
    DOMNode* taken = sibling;
    sibling = sibling->getNextSibling();
    return taken;
  }

 private:
  DOMNodeList* list = nullptr;
  XMLSize_t index = 0;
  XMLSize_t length = 0;
  DOMNode* sibling = nullptr;
};

/// Turns nodes into features. Keeps its own stack of levels: a file decides how deep it is nested.
class feature_walk {
 public:
  explicit feature_walk(features& into) : out(into) {
    for (const text_field field : all_texts) unset.*field = never_set;
  }

  /// True when a DOM exception ended the walk of `nodes` itself; one further down only ends the
  /// level that it hit.
  bool run(DOMNodeList& nodes);

 private:
  void enter(DOMNodeList* nodes) {
    if (nodes == nullptr) return;
    const level entered(*nodes);
    if (!entered.at_end()) levels.push_back(entered);
  }

  void step() {
    if (levels.back().at_end()) {
      levels.pop_back();
    } else if (DOMNode* node = levels.back().take()) {
      visit(*node);
      enter(node->getChildNodes());
    }
  }

  void visit(const DOMNode& node) {
    if (node.getNodeType() == DOMNode::ELEMENT_NODE) {
      element(convert(node.getNodeName()));
      if (auto* attributes = node.getAttributes()) read_attributes(*attributes);
    } else if (node.getNodeType() == DOMNode::TEXT_NODE) {
      fill_waiting(node);
    }
  }

  template <class Walk>
  bool ends_level(Walk walk);
  void element(std::string_view tag);
  void read_attributes(const xercesc::DOMNamedNodeMap& attributes);
  void fill_waiting(const DOMNode& node);

  ZRT4GigEFeature* latest() const { return out.empty() ? nullptr : out.back(); }

  std::string_view convert(const XMLCh* units) {
    const char* converted = units != nullptr ? text.assign(units, page) : nullptr;
    return converted != nullptr ? converted : "";
  }

  features& out;
  ZRT4GigEFeature unset;
  std::vector<level> levels;
  zrt4::detail::local_text text;
  zrt4::detail::code_page page;
};

// True when a DOM exception ended the walk, and with it the level that it was in.
template <class Walk>
bool feature_walk::ends_level(Walk walk) {
  try {
    walk();
    return false;
  } catch (const DOMException& exception) {
    if (const auto known = known_text(exception)) std::printf("Message is:  %s\n", known->c_str());
    if (!levels.empty()) levels.pop_back();
    return true;
  }
}

bool feature_walk::run(DOMNodeList& nodes) {
  bool ended = ends_level([&] { enter(&nodes); });
  while (!levels.empty()) {
    ended = ends_level([&] {
      while (!levels.empty()) step();
    });
  }
  return ended;
}

void feature_walk::element(std::string_view tag) {
  const tag_meaning* meaning = tags_by_name.find(tag);
  if (meaning == nullptr) return;
  if (meaning->feature != no_feature) {
    auto created = std::make_unique<ZRT4GigEFeature>(unset);
    created->type = meaning->feature;
    out.push_back(created.get());
    (void)created.release();
  } else if (meaning->opens != nullptr && latest() != nullptr) {
    latest()->*meaning->opens = awaits_text;
  }
}

void feature_walk::read_attributes(const xercesc::DOMNamedNodeMap& attributes) {
  ZRT4GigEFeature* feature = latest();
  if (feature == nullptr) return;
  const XMLSize_t count = attributes.getLength();
  for (XMLSize_t i = 0; i < count; ++i) {
    const DOMNode* attribute = attributes.item(i);
    if (attribute == nullptr || convert(attribute->getNodeName()) != name_attribute) {
      continue;
    }
    if (feature->name == never_set) {
      feature->name = convert(value_of(*attribute));
    } else if (feature->extension == awaits_text) {
      feature->extension = convert(value_of(*attribute));
    }
  }
}

void feature_walk::fill_waiting(const DOMNode& node) {
  ZRT4GigEFeature* feature = latest();
  if (feature == nullptr) return;
  for (const text_field field : filled_by_text) {
    if (feature->*field != awaits_text) continue;
    feature->*field = convert(node.getNodeValue());
    return;
  }
}

/// One use of the XML library, which counts them.
class library_use {
 public:
  library_use() { xercesc::XMLPlatformUtils::Initialize(); }
  library_use(const library_use&) = delete;
  library_use& operator=(const library_use&) = delete;
  ~library_use() { xercesc::XMLPlatformUtils::Terminate(); }
};

class feature_parser : public zrt4::detail::limited_scanner<XercesDOMParser> {
 public:
  feature_parser() {
    setValidationScheme(Val_Never);
    setDoNamespaces(false);
    setDoSchema(false);
    setValidationSchemaFullChecking(false);
    setCreateEntityReferenceNodes(false);
    // Unlike an error handler, a reporter only listens.
    getScanner()->setErrorReporter(this);
  }

  void error(const unsigned int /*code*/, const XMLCh* const /*domain*/,
             const XMLErrorReporter::ErrTypes /*type*/, const XMLCh* const text,
             const XMLCh* const /*systemId*/, const XMLCh* const /*publicId*/,
             const XMLFileLoc /*line*/, const XMLFileLoc /*column*/) override {
    if (getDocument() == nullptr) no_document_reason = to_local(text);
  }

  const std::string& why_no_document() const { return no_document_reason; }

 private:
  std::string no_document_reason;
};

void print_parsing_error(const std::string& message) {
  std::printf("An error occurred during parsing  Message: %s\n", message.c_str());
}

// False, and a line on standard output, when there is no document. Exceptions end in here: their
// texts belong to the XML library and must be gone before this use of it ends.
bool parse(std::optional<feature_parser>& parser, const char* file_name) {
  try {
    parser.emplace().parse(file_name);
    // A file that cannot be read is reported rather than thrown.
    if (parser->getDocument() != nullptr) return true;
    print_parsing_error(parser->why_no_document());
  } catch (const xercesc::OutOfMemoryException&) {
    std::puts("OutOfMemoryException");
  } catch (const XMLException& exception) {
    print_parsing_error(to_local(exception.getMessage()));
  } catch (const DOMException& exception) {
    std::printf("\nDOM Error during parsing: '%s' DOMException code is: %d\n", file_name,
                exception.code);
    if (const auto known = known_text(exception)) std::printf("Message is: %s", known->c_str());
  } catch (...) {
    std::printf("An error occurred during parsing\n ");
  }
  return false;
}

void remove_markers(ZRT4GigEFeature& feature) {
  for (const text_field field : all_texts) {
    std::string& text = feature.*field;
    if (text == never_set || text == awaits_text) text.clear();
  }
}

}  // namespace

bool dump_nodes(DOMNodeList* nodes, std::vector<ZRT4GigEFeature*>* out) {
  return nodes != nullptr && out != nullptr && feature_walk(*out).run(*nodes);
}

bool zrt4_fill_gige_descr(char* file_name, std::vector<ZRT4GigEFeature*>* out) {
  if (file_name == nullptr || out == nullptr) return true;
  std::optional<library_use> library;
  try {
    library.emplace();
  } catch (const XMLException& exception) {
    std::printf("Error during Xerces-c Initialization.  Exception message: %s\n",
                to_local(exception.getMessage()).c_str());
    return true;
  }
  std::optional<feature_parser> parser;
  if (!parse(parser, file_name)) return true;
  out->clear();
  dump_nodes(parser->getDocument()->getChildNodes(), out);
  parser.reset();
  library.reset();
  for (ZRT4GigEFeature* feature : *out) remove_markers(*feature);
  return false;
}

void zrt4_dump_gige_descr(std::vector<ZRT4GigEFeature*>* out) {
  if (out == nullptr) return;
  int position = -1;
  for (const ZRT4GigEFeature* feature : *out) {
    ++position;
    if (feature == nullptr || feature->name.empty()) continue;
    std::printf("[%d] Name:'%s'", position, feature->name.c_str());
    if (!feature->extension.empty()) std::printf(" Extension:'%s'", feature->extension.c_str());
    std::printf(" type:%d ToolTip:'%s' Description:'%s'\n", feature->type, feature->tooltip.c_str(),
                feature->description.c_str());
  }
}

void zrt4_clean_gige_descr(std::vector<ZRT4GigEFeature*>* out) {
  if (out == nullptr) return;
  for (ZRT4GigEFeature* feature : *out) delete feature;
  out->clear();
}
