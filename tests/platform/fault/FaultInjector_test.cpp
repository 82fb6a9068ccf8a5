#include "platform/fault/FaultInjector.h"

#include <functional>
#include <new>

#include "platform/dom/DomTesting.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// Fails one kind of operation.
class Failing : public FaultInjector {
 public:
  Fault next(DomOperation asked) override { return asked == operation ? fault : Fault::none; }

  DomOperation operation = DomOperation::load;
  Fault fault = Fault::none;
};

class FaultInjection : public testing::Test {
 protected:
  FaultInjection() {
    settings_.faults = &failing_;
    objDocument_ = loaded("<a x='1'><b/>t</a>", settings_);
    objDocument_.setSelectionNamespaces("xmlns:p='urn:p'");
    objRoot_ = objDocument_.documentElement();
    objB_ = objRoot_.childNodes()->item(0);
    objMade_ = objDocument_.createElement("m");
  }

  /// Each operation; True when it gave nothing.
  struct Case {
    DomOperation operation;
    bool blnHasResult;
    std::function<bool()> run;
  };
  std::vector<Case> cases() {
    using enum DomOperation;
    const auto nothing = [](const auto& result) { return !result; };
    return {
        {createDocument, true, [=, this] { return nothing(Document::create(settings_)); }},
        {load, true, [=, this] { return nothing(objDocument_.loadXML("<new/>")); }},
        {load, true, [=, this] { return nothing(objDocument_.load("/missing")); }},
        {getSelectionNamespaces, true,
         [this] { return objDocument_.selectionNamespaces().empty(); }},
        {setSelectionNamespaces, false,
         [this] {
           objDocument_.setSelectionNamespaces("");
           return false;
         }},
        {parseError, true, [this] { return objDocument_.parseError().errorCode != 0; }},
        {documentElement, true, [=, this] { return nothing(objDocument_.documentElement()); }},
        {select, true, [=, this] { return nothing(objRoot_.selectNodes("b")); }},
        {select, true, [=, this] { return nothing(objRoot_.selectSingleNode("b")); }},
        {getElementsByTagName, true,
         [=, this] { return nothing(objRoot_.getElementsByTagName("b")); }},
        {childNodes, true, [=, this] { return nothing(objRoot_.childNodes()); }},
        {createElement, true, [=, this] { return nothing(objDocument_.createElement("n")); }},
        {createNode, true,
         [=, this] { return nothing(objDocument_.createNode(NodeType::element, "n", "")); }},
        {cloneNode, true, [=, this] { return nothing(objRoot_.cloneNode(true)); }},
        {appendChild, true, [=, this] { return nothing(objRoot_.appendChild(objMade_)); }},
        {insertBefore, true, [=, this] { return nothing(objRoot_.insertBefore(objMade_, objB_)); }},
        {removeChild, true, [=, this] { return nothing(objRoot_.removeChild(objB_)); }},
        {getAttribute, true, [=, this] { return nothing(objRoot_.getAttribute("x")); }},
        {getAttribute, true, [=, this] { return nothing(objRoot_.getNamedItem("x")); }},
        {setAttribute, false,
         [this] {
           objRoot_.setAttribute("x", "2");
           return false;
         }},
        {removeAttribute, false,
         [this] {
           objRoot_.removeAttribute("x");
           return false;
         }},
        {readText, true, [this] { return objRoot_.text().empty(); }},
        {writeText, false,
         [this] {
           objRoot_.setText("u");
           return false;
         }},
        {serialise, true, [this] { return objDocument_.xml().empty(); }},
    };
  }

  void expectUnchanged() {
    failing_.fault = Fault::none;
    EXPECT_EQ(objDocument_.xml(), "<a x=\"1\"><b/>t</a>\r\n");
    EXPECT_EQ(objDocument_.selectionNamespaces(), "xmlns:p='urn:p'");
    EXPECT_EQ(objDocument_.parseError().errorCode, 0);
  }

  Failing failing_;
  DocumentSettings settings_;
  Document objDocument_;
  Node objRoot_, objB_, objMade_;
};

TEST_F(FaultInjection, GivesNothingAndChangesNothing) {
  for (const Case& c : cases()) {
    SCOPED_TRACE(static_cast<int>(c.operation));
    failing_.operation = c.operation;
    failing_.fault = Fault::nothing;
    if (c.blnHasResult) {
      EXPECT_TRUE(c.run());
    } else {
      EXPECT_EQ(descriptionOf(kXmlFailure, c.run), "Injected failure");
    }
    expectUnchanged();
  }
}

TEST_F(FaultInjection, RaisesAnErrorAndChangesNothing) {
  for (const Case& c : cases()) {
    SCOPED_TRACE(static_cast<int>(c.operation));
    failing_.operation = c.operation;
    failing_.fault = Fault::error;
    EXPECT_EQ(descriptionOf(kXmlFailure, c.run), "Injected failure");
    expectUnchanged();
  }
}

TEST_F(FaultInjection, RunsOutOfMemoryAndChangesNothing) {
  for (const Case& c : cases()) {
    SCOPED_TRACE(static_cast<int>(c.operation));
    failing_.operation = c.operation;
    failing_.fault = Fault::outOfMemory;
    EXPECT_THROW(c.run(), std::bad_alloc);
    expectUnchanged();
  }
}

TEST_F(FaultInjection, GoesOnInClones) {
  const Node objClone = objRoot_.cloneNode(true);
  failing_.operation = DomOperation::readText;
  failing_.fault = Fault::error;
  EXPECT_EQ(descriptionOf(kXmlFailure, [&] { objClone.text(); }), "Injected failure");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
