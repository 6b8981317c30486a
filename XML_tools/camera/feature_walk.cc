#include "feature_walk.hh"

#include <cstdio>
#include <memory>
#include <string_view>
#include <typeinfo>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/impl/DOMAttrImpl.hpp>
#include <xercesc/dom/impl/DOMNodeListImpl.hpp>

#include "diagnostics.hh"
#include "feature_fields.hh"
#include "local_text.hh"
#include "name_table.hh"

using xercesc::DOMException;
using xercesc::DOMNode;
using xercesc::DOMNodeList;

constexpr const char* const FeatureTags[FEATURE_TYPE_MAX] = {"Undefined",   "Integer", "Float",
                                                             "Enumeration", "Boolean", "StringReg",
                                                             "Command",     "IntReg",  "Int64"};
constexpr const char* const MoreTags[MORE_TAGS_MAX] = {"Extension", "PvRename", "ToolTip",
                                                       "Description"};
constexpr const char* const Attributes[ATTRIBUTE_MAX] = {"Name"};

namespace zrt4::detail {

namespace {

using features = std::vector<ZRT4GigEFeature*>;

struct tag_meaning {
  int feature;         // the type of the feature that starts, or
  feature_text opens;  // the text of the latest feature that is to be filled next
};

constexpr int no_feature = -1;

constexpr named<tag_meaning> known_tags[] = {
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
constexpr name_table tags_by_name(known_tags);

constexpr std::string_view name_attribute = Attributes[ATTRIBUTE_NAME];

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
    for (const auto& field : feature_fields) unset.*field.text = never_set;
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
  local_text text;
  code_page page;
};

// True when a DOM exception ended the walk, and with it the level that it was in.
template <class Walk>
bool feature_walk::ends_level(Walk walk) {
  try {
    walk();
    return false;
  } catch (const DOMException& exception) {
    if (const auto known = known_text(exception)) {
      tell({message_topic::not_read, message_severity::error, stdout, false},
           {"Message is:  ", *known, "\n"});
    }
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
  for (const auto& field : feature_fields) {
    if (field.text == &ZRT4GigEFeature::name || feature->*field.text != awaits_text) continue;
    feature->*field.text = convert(node.getNodeValue());
    return;
  }
}

}  // namespace

std::optional<std::string> known_text(const DOMException& exception) {
  constexpr XMLSize_t longest = 2047;
  XMLCh text[longest + 1] = {};
  if (!xercesc::DOMImplementation::loadDOMExceptionMsg(exception.code, text, longest)) return {};
  return to_local(text);
}

bool walk_features(DOMNodeList& nodes, std::vector<ZRT4GigEFeature*>& out) {
  return feature_walk(out).run(nodes);
}

}  // namespace zrt4::detail
