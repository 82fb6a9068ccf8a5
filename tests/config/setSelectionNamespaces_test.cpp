#include "config/setSelectionNamespaces.h"

#include <gmock/gmock.h>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

Session sessionWith(const TestHost& host, std::string_view strList) {
  Session session = host.session();
  session.objNamespaceXML = parsed(strList);
  return session;
}

/// What the list makes of a new document, as text.
std::string declarations(std::string_view strList) {
  const TestHost host;
  const Document objXml = Document::create();
  EXPECT_TRUE(Succeeded(setSelectionNamespaces(sessionWith(host, strList), objXml)));
  EXPECT_THAT(host.traceLines(), IsEmpty());
  return objXml.selectionNamespaces();
}

TEST(setSelectionNamespaces, DeclaresEveryEntryInItsOrderWithABlankBehindEach) {
  const struct {
    const char *says, *strList, *strDeclarations;
  } cases[] = {
      {"two entries",
       "<namespaces><namespace id='p1' name='urn:a'/><namespace id='p2' name='urn:b'/>"
       "</namespaces>",
       "xmlns:p1='urn:a' xmlns:p2='urn:b' "},
      {"the order is the file's",
       "<namespaces><namespace id='z' name='urn:z'/><namespace id='a' name='urn:a'/></namespaces>",
       "xmlns:z='urn:z' xmlns:a='urn:a' "},
      {"an entry may have any name, and none of it counts but id and name",
       "<namespaces><other ref='urn:r' id='p' name='urn:a'>text</other></namespaces>",
       "xmlns:p='urn:a' "},
      {"only elements are entries",
       "<namespaces>text<!-- c --><?p i?><n id='p' name='urn:a'/></namespaces>",
       "xmlns:p='urn:a' "},
      {"every element 'namespaces' counts, wherever it is",
       "<r><namespaces><n id='p' name='urn:a'/></namespaces><x><namespaces>"
       "<n id='q' name='urn:b'/></namespaces></x><namespace id='no' name='urn:no'/></r>",
       "xmlns:p='urn:a' xmlns:q='urn:b' "},
      {"values are copied as they stand",
       "<namespaces><n id='p' name='urn:a?b=&quot;c d&quot;'/></namespaces>",
       "xmlns:p='urn:a?b=\"c d\"' "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(declarations(c.strList), c.strDeclarations);
  }
}

TEST(setSelectionNamespaces, LetsSelectionsUseThePrefixes) {
  const TestHost host;
  const Document objXml = parsed("<r xmlns='urn:m'><a xmlns='urn:n'/></r>");
  EXPECT_TRUE(Succeeded(setSelectionNamespaces(withNamespaces(host), objXml)));
  EXPECT_TRUE(objXml.selectSingleNode("/m:r/n:a"));
  EXPECT_FALSE(objXml.selectSingleNode("/m:r/m:a"));
}

TEST(setSelectionNamespaces, ReplacesWhatTheDocumentDeclared) {
  const TestHost host;
  const Document objXml = Document::create();
  objXml.setSelectionNamespaces("xmlns:old='urn:old' ");
  EXPECT_TRUE(Succeeded(setSelectionNamespaces(
      sessionWith(host, "<namespaces><n id='p' name='urn:a'/></namespaces>"), objXml)));
  EXPECT_EQ(objXml.selectionNamespaces(), "xmlns:p='urn:a' ");
}

TEST(setSelectionNamespaces, FailsWhenNoListWasEverLoaded) {
  const TestHost host;
  EXPECT_TRUE(FailedWith(setSelectionNamespaces(host.session(), Document::create()),
                         SVC_RET_XML_CREATION_NAMESPACE_XML_MISSING,
                         "The namespace xml is not available to select the namespace information.",
                         "default message"));
  EXPECT_THAT(host.traceLines(),
              ElementsAre("setSelectionNamespaces: The namespace xml is not available to select "
                          "the namespace information."));
}

TEST(setSelectionNamespaces, FailsWhenTheEntriesCannotBeSelected) {
  const TestHost host;
  FaultAt fault(DomOperation::select);
  Session session = host.session();
  session.objNamespaceXML = parsed(kNamespaceList, {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWith(setSelectionNamespaces(session, Document::create()),
                         SVC_RET_XML_CREATION_NAMESPACE_SCHEMA_LIST_MISSING,
                         "The namespace schemalist could not be selected. - XPath=//namespaces/*",
                         "default message"));
  EXPECT_TRUE(fault.struck());
  EXPECT_THAT(
      host.traceLines(),
      ElementsAre("setSelectionNamespaces: The namespace schemalist could not be selected."));
}

TEST(setSelectionNamespaces, FailsForAListWithoutEntries) {
  const TestHost host;
  Session session = host.session();
  for (const char* strList :
       {"<namespaces/>", "<namespaces>text</namespaces>", "<namespaces><!-- c --></namespaces>",
        "<namespace id='p' name='urn:a'/>", "<Namespaces><n id='p' name='urn:a'/></Namespaces>",
        "<x:namespaces xmlns:x='urn:x'><n id='p' name='urn:a'/></x:namespaces>", ""}) {
    SCOPED_TRACE(strList);
    session.objNamespaceXML = *strList == '\0' ? Document::create() : parsed(strList);
    const Document objXml = Document::create();
    objXml.setSelectionNamespaces("xmlns:old='urn:old' ");
    EXPECT_TRUE(FailedWith(setSelectionNamespaces(session, objXml),
                           SVC_RET_XML_CREATION_NAMESPACES_UNAVAILABLE,
                           "The namespace string could not be build from the namespace schemalist",
                           "default message"));
    EXPECT_EQ(objXml.selectionNamespaces(), "xmlns:old='urn:old' ");
    EXPECT_EQ(host.traceLines().back(),
              "setSelectionNamespaces: The namespace string could not be build from the namespace "
              "schemalist");
  }
  EXPECT_EQ(host.traceLines().size(), 7U);
}

TEST(setSelectionNamespaces, FailsWhenTheDocumentGivesBackAnotherText) {
  const TestHost host;
  FaultAt fault(DomOperation::getSelectionNamespaces);
  const Document objXml = Document::create({.faults = &fault});
  EXPECT_TRUE(FailedWith(
      setSelectionNamespaces(sessionWith(host, "<namespaces><n id='p' name='urn:a'/></namespaces>"),
                             objXml),
      SVC_RET_XML_CREATION_UNABLE_TO_SET_NAMESPACES,
      "The namespace information could not be set: xmlns:p='urn:a' ", "default message"));
  EXPECT_TRUE(fault.struck());
  EXPECT_THAT(host.traceLines(),
              ElementsAre("setSelectionNamespaces: The namespace information could not be set: "
                          "xmlns:p='urn:a' "));
}

TEST(setSelectionNamespaces, TellsARunTimeErrorForEntriesThatMakeNoDeclaration) {
  const struct {
    const char *says, *strEntry;
  } cases[] = {
      {"no prefix, and the entry is appended all the same", "<n name='urn:a'/>"},
      {"neither prefix nor name is still an entry", "<n/>"},
      {"an apostrophe ends the name too early", "<n id='p' name=\"urn:it's\"/>"},
      {"an apostrophe in the prefix", "<n id=\"p'\" name='urn:a'/>"},
      {"a prefix that is no name", "<n id='1' name='urn:a'/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const TestHost host;
    EXPECT_TRUE(FailedWithNumber(
        setSelectionNamespaces(
            sessionWith(host, "<namespaces>" + std::string(c.strEntry) + "</namespaces>"),
            Document::create()),
        -2147467259, "setSelectionNamespaces"));
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(setSelectionNamespaces, TellsUseOfNothingForNoDocument) {
  const TestHost host;
  EXPECT_TRUE(FailedWithRuntimeError(setSelectionNamespaces(withNamespaces(host), Document()), 91,
                                     "setSelectionNamespaces",
                                     "Object variable or With block variable not set"));
}

TEST(setSelectionNamespaces, TellsARunTimeErrorOfTheDocument) {
  const TestHost host;
  FaultAt fault(DomOperation::setSelectionNamespaces, Fault::error);
  EXPECT_TRUE(FailedWithRuntimeError(
      setSelectionNamespaces(withNamespaces(host), Document::create({.faults = &fault})),
      -2147467259, "setSelectionNamespaces", "Injected failure"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
