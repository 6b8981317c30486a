// The walk over documents made by hand, and over nodes that fail.

#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/dom/impl/DOMAttrImpl.hpp>
#include <xercesc/dom/impl/DOMElementImpl.hpp>
#include <xercesc/dom/impl/DOMTextImpl.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include "camera_support.hh"
#include "zrt4xml.hh"

namespace {

using test::feature_list;
using test::shown;
using testing::ElementsAre;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMException;
using xercesc::DOMNode;
using xercesc::DOMNodeList;

using strings = std::vector<std::string>;

constexpr char not_found[] =
    "Message is:  attempt is made to reference a node in a context where "
    "it does not exist\n";

/// A node list of any nodes, which may fail at one position or when asked for its length.
class node_list : public DOMNodeList {
 public:
  node_list(std::initializer_list<DOMNode*> listed) : nodes(listed) {}

  DOMNode* item(XMLSize_t index) const override {
    if (index == fails_at) throw DOMException(code);
    return index < nodes.size() ? nodes[index] : nullptr;
  }
  XMLSize_t getLength() const override {
    if (length_fails) throw DOMException(code);
    return nodes.size();
  }

  std::vector<DOMNode*> nodes;
  XMLSize_t fails_at = static_cast<XMLSize_t>(-1);
  bool length_fails = false;
  short code = DOMException::NOT_FOUND_ERR;
};

/// An element whose children are what it is told.
class element_with_list : public xercesc::DOMElementImpl {
 public:
  element_with_list(DOMDocument* document, const XMLCh* name, node_list& list)
      : DOMElementImpl(document, name), children(&list) {}
  DOMNodeList* getChildNodes() const override {
    if (children_fail) throw DOMException(DOMException::NOT_FOUND_ERR);
    return children;
  }

  node_list* children;
  bool children_fail = false;
};

class unreadable_text : public xercesc::DOMTextImpl {
 public:
  explicit unreadable_text(DOMDocument* document) : DOMTextImpl(document, u"text") {}
  const XMLCh* getNodeValue() const override { throw DOMException(DOMException::NOT_FOUND_ERR); }
};

class unreadable_attribute : public xercesc::DOMAttrImpl {
 public:
  explicit unreadable_attribute(DOMDocument* document) : DOMAttrImpl(document, u"Name") {
    setValue(u"n");
  }
  const XMLCh* getNodeValue() const override { throw DOMException(DOMException::NOT_FOUND_ERR); }
};

class GigeWalk : public testing::Test {
 protected:
  GigeWalk() {
    xercesc::XMLPlatformUtils::Initialize();
    document = xercesc::DOMImplementation::getImplementation()->createDocument();
    root = document->createElement(u"r");
    document->appendChild(root);
  }
  ~GigeWalk() override {
    document->release();
    xercesc::XMLPlatformUtils::Terminate();
  }

  DOMElement* element(const XMLCh* tag, const XMLCh* name = nullptr) {
    DOMElement* made = document->createElement(tag);
    if (name != nullptr) made->setAttribute(u"Name", name);
    return made;
  }

  DOMElement* add(DOMElement* parent, const XMLCh* tag, const XMLCh* name = nullptr) {
    DOMElement* made = element(tag, name);
    parent->appendChild(made);
    return made;
  }

  // The walk of `nodes`, and what it prints.
  std::string walk(DOMNodeList& nodes, bool expected = false) {
    const auto printed =
        test::captured([&] { EXPECT_EQ(dump_nodes(&nodes, found.get()), expected); });
    EXPECT_EQ(printed.err, "");
    return printed.out;
  }

  DOMDocument* document = nullptr;
  DOMElement* root = nullptr;
  feature_list found;
};

}  // namespace

TEST_F(GigeWalk, NullArgumentsAreTolerated) {
  EXPECT_FALSE(dump_nodes(nullptr, found.get()));
  EXPECT_FALSE(dump_nodes(root->getChildNodes(), nullptr));
  EXPECT_FALSE(dump_nodes(nullptr, nullptr));
}

TEST_F(GigeWalk, AnEmptyListFindsNothing) {
  EXPECT_EQ(walk(*root->getChildNodes()), "");
  EXPECT_TRUE(found.empty());
}

TEST_F(GigeWalk, LeavesTheMarkers) {
  auto* feature = add(root, u"Integer", u"n");
  add(feature, u"PvRename");
  add(feature, u"ToolTip")->appendChild(document->createTextNode(u""));
  add(root, u"Float");
  EXPECT_EQ(walk(*document->getChildNodes()), "");
  EXPECT_THAT(shown(found),
              ElementsAre("1|n||Waiting|Unknown", "2|Unknown|Unknown|Unknown|Unknown"));
}

TEST_F(GigeWalk, AppendsToTheListAndContinuesItsLastRecord) {
  found.add("first").tooltip = "Waiting";
  found.add("Unknown").tooltip = "Waiting";
  root->appendChild(document->createTextNode(u"text"));
  add(root, u"Value", u"last");
  add(root, u"Integer", u"new");
  walk(*root->getChildNodes());
  EXPECT_THAT(shown(found),
              ElementsAre("0|first||Waiting|", "0|last||text|", "1|new|Unknown|Unknown|Unknown"));
}

TEST_F(GigeWalk, ANullLastRecordTakesNothing) {
  found.get()->push_back(nullptr);
  root->appendChild(document->createTextNode(u"text"));
  add(root, u"ToolTip", u"n");
  walk(*root->getChildNodes());
  EXPECT_EQ(found.size(), 1U);
}

TEST_F(GigeWalk, StartsBelowTheNodesOfAnyList) {
  auto* group = add(root, u"Group");
  add(group, u"Integer", u"a");
  add(root, u"Integer", u"b");
  walk(*group->getChildNodes());
  EXPECT_EQ(shown(found), strings{"1|a|Unknown|Unknown|Unknown"});
}

TEST_F(GigeWalk, AListOfDescendantsVisitsNestedNodesAgain) {
  auto* outer = add(root, u"Integer", u"outer");
  add(add(outer, u"Group"), u"Integer", u"inner");
  walk(*document->getElementsByTagName(u"Integer"));
  EXPECT_THAT(shown(found),
              ElementsAre("1|outer|Unknown|Unknown|Unknown", "1|inner|Unknown|Unknown|Unknown",
                          "1|inner|Unknown|Unknown|Unknown"));
}

TEST_F(GigeWalk, AListMayHoldNodesOfSeveralParentsAndNone) {
  auto* far = add(add(root, u"Group"), u"Integer", u"far");
  node_list nodes{far, nullptr, element(u"Float", u"loose"), document->createTextNode(u"t")};
  walk(nodes);
  EXPECT_THAT(shown(found),
              ElementsAre("1|far|Unknown|Unknown|Unknown", "2|loose|Unknown|Unknown|Unknown"));
}

TEST_F(GigeWalk, EveryNameAttributeInMapOrder) {
  auto* rename = add(add(root, u"Integer"), u"PvRename");
  rename->setAttributeNS(u"urn:a", u"Name", u"a");
  rename->setAttributeNS(u"urn:b", u"x:Name", u"b");
  rename->setAttributeNS(u"urn:c", u"Name", u"c");
  const auto& map = *rename->getAttributes();
  ASSERT_EQ(map.getLength(), 3U);
  ASSERT_TRUE(xercesc::XMLString::equals(map.item(0)->getNodeValue(), u"c"));
  walk(*root->getChildNodes());
  EXPECT_EQ(shown(found), strings{"1|c|a|Unknown|Unknown"});
}

TEST_F(GigeWalk, ANameOfSeveralPartsIsOneName) {
  auto* feature = add(root, u"Integer", u"one");
  feature->getAttributeNode(u"Name")->appendChild(document->createTextNode(u"two"));
  add(root, u"Float", u"");
  auto* without_parts = document->createElement(u"Int64");
  without_parts->setAttributeNode(document->createAttribute(u"Name"));
  root->appendChild(without_parts);
  walk(*root->getChildNodes());
  EXPECT_THAT(shown(found),
              ElementsAre("1|onetwo|Unknown|Unknown|Unknown", "2||Unknown|Unknown|Unknown",
                          "8||Unknown|Unknown|Unknown"));
}

TEST_F(GigeWalk, AFailingNameEndsItsLevel) {
  auto* feature = document->createElement(u"Integer");
  auto* name = new unreadable_attribute(document);
  feature->setAttributeNode(name);
  node_list nodes{feature, element(u"Float", u"lost")};
  EXPECT_EQ(walk(nodes, true), not_found);
  EXPECT_EQ(shown(found), strings{"1|Unknown|Unknown|Unknown|Unknown"});
  feature->removeAttributeNode(name);
  delete name;
}

TEST_F(GigeWalk, ATextThatIsSplitFillsItsFirstPart) {
  auto* tooltip = add(add(root, u"Integer", u"n"), u"ToolTip");
  tooltip->appendChild(document->createTextNode(u"one"));
  tooltip->appendChild(document->createTextNode(u"two"));
  walk(*root->getChildNodes());
  EXPECT_EQ(shown(found), strings{"1|n|Unknown|one|Unknown"});
}

TEST_F(GigeWalk, OtherNodeKindsGiveNothing) {
  auto* tooltip = add(add(root, u"Integer", u"n"), u"ToolTip");
  tooltip->appendChild(document->createComment(u"comment"));
  tooltip->appendChild(document->createProcessingInstruction(u"Float", u"instruction"));
  tooltip->appendChild(document->createCDATASection(u"section"));
  walk(*root->getChildNodes());
  EXPECT_EQ(shown(found), strings{"1|n|Unknown|Waiting|Unknown"});
}

TEST_F(GigeWalk, AFailingNodeEndsItsLevel) {
  node_list nodes{element(u"Integer", u"a"), element(u"Float", u"b"), element(u"Int64", u"c")};
  nodes.fails_at = 1;
  EXPECT_EQ(walk(nodes, true), not_found);
  EXPECT_EQ(shown(found), strings{"1|a|Unknown|Unknown|Unknown"});
}

TEST_F(GigeWalk, AFailingFirstNodeOrLengthEndsTheWalk) {
  node_list nodes{element(u"Integer", u"a")};
  nodes.fails_at = 0;
  EXPECT_EQ(walk(nodes, true), not_found);
  nodes.length_fails = true;
  EXPECT_EQ(walk(nodes, true), not_found);
  EXPECT_TRUE(found.empty());
}

TEST_F(GigeWalk, TheLevelsAboveAFailureGoOn) {
  node_list inner{element(u"Float", u"b"), element(u"Float", u"lost"), element(u"Float", u"lost")};
  inner.fails_at = 1;
  element_with_list parent(document, u"Integer", inner);
  parent.setAttribute(u"Name", u"a");
  node_list middle{&parent, element(u"Boolean", u"c")};
  element_with_list grandparent(document, u"Group", middle);
  node_list nodes{&grandparent, element(u"Int64", u"d")};
  EXPECT_EQ(walk(nodes), not_found);
  EXPECT_THAT(shown(found),
              ElementsAre("1|a|Unknown|Unknown|Unknown", "2|b|Unknown|Unknown|Unknown",
                          "4|c|Unknown|Unknown|Unknown", "8|d|Unknown|Unknown|Unknown"));
}

TEST_F(GigeWalk, ChildrenThatCannotBeAskedForEndTheLevelOfTheirParent) {
  node_list inner{element(u"Float", u"lost")};
  inner.length_fails = true;
  element_with_list parent(document, u"Integer", inner);
  node_list nodes{&parent, element(u"Int64", u"lost")};
  EXPECT_EQ(walk(nodes, true), not_found);
  parent.children_fail = true;
  EXPECT_EQ(walk(nodes, true), not_found);
  EXPECT_THAT(shown(found), ElementsAre("1|Unknown|Unknown|Unknown|Unknown",
                                        "1|Unknown|Unknown|Unknown|Unknown"));
}

TEST_F(GigeWalk, SeveralLevelsMayFail) {
  node_list inner{element(u"Float", u"lost")};
  inner.fails_at = 0;
  element_with_list first(document, u"Group", inner);
  element_with_list second(document, u"Group", inner);
  node_list nodes{&first, &second, element(u"Int64", u"a")};
  EXPECT_EQ(walk(nodes), std::string(not_found) + not_found);
  nodes.fails_at = 2;
  EXPECT_EQ(walk(nodes, true), std::string(not_found) + not_found + not_found);
  EXPECT_EQ(shown(found), strings{"8|a|Unknown|Unknown|Unknown"});
}

TEST_F(GigeWalk, ATextIsReadOnlyWhenAFieldWaits) {
  unreadable_text text(document);
  node_list nodes{element(u"Integer", u"a"), &text, element(u"ToolTip"), &text,
                  element(u"Float", u"lost")};
  EXPECT_EQ(walk(nodes, true), not_found);
  EXPECT_EQ(shown(found), strings{"1|a|Unknown|Waiting|Unknown"});
}

TEST_F(GigeWalk, AnUnknownExceptionCodeIsSilent) {
  node_list nodes{element(u"Integer", u"a")};
  nodes.fails_at = 0;
  XMLCh text[2048];
  nodes.code = 49;
  ASSERT_FALSE(xercesc::DOMImplementation::loadDOMExceptionMsg(nodes.code, text, 2047));
  EXPECT_EQ(walk(nodes, true), "");
}

TEST_F(GigeWalk, OtherExceptionsPass) {
  struct failing : node_list {
    using node_list::node_list;
    DOMNode* item(XMLSize_t) const override { throw 42; }
  };
  failing nodes{root};
  EXPECT_THROW(dump_nodes(&nodes, found.get()), int);
}

TEST_F(GigeWalk, WhatAReceiverThrowsPassesAndFeaturesStay) {
  struct throwing : zrt4::message_receiver {
    void receive(const zrt4::message& met) override { throw met.topic; }
  } receiver;
  node_list nodes{element(u"Integer", u"a"), element(u"Float", u"lost")};
  nodes.fails_at = 1;
  try {
    (void)dump_nodes(&nodes, found.get());
    ADD_FAILURE() << "nothing was thrown";
  } catch (const zrt4::message_topic topic) {
    EXPECT_EQ(topic, zrt4::message_topic::not_read);
  }
  EXPECT_EQ(shown(found), strings{"1|a|Unknown|Unknown|Unknown"});
}
