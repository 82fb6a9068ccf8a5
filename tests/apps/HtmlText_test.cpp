#include "HtmlText.h"

#include <gtest/gtest.h>
#include <libxml/HTMLtree.h>
#include <libxml/parser.h>

#include <memory>
#include <string_view>

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using Page = std::unique_ptr<xmlDoc, void (*)(xmlDocPtr)>;

Page pageOf(std::string_view strXml) {
  Page page(xmlReadMemory(strXml.data(), static_cast<int>(strXml.size()), "", "UTF-8", 0),
            xmlFreeDoc);
  if (page) page->type = XML_HTML_DOCUMENT_NODE;
  return page;
}

std::string writtenByLibxml2(const Page& page) {
  xmlOutputBufferPtr const buffer = xmlAllocOutputBuffer(nullptr);
  htmlDocContentDumpFormatOutput(buffer, page.get(), "UTF-8", 0);
  std::string strText(reinterpret_cast<const char*>(xmlOutputBufferGetContent(buffer)),
                      xmlOutputBufferGetSize(buffer));
  xmlOutputBufferClose(buffer);
  return strText;
}

TEST(HtmlText, IsWhatLibxml2Writes) {
  const struct {
    const char *says, *page;
  } cases[] = {
      {"text", "<p>a &lt; b &amp;&amp; c &gt; d \"e\" 'f' &#13;\n\t Ærø&#160;\xF0\x9F\x8F\xA0</p>"},
      {"attributes", "<p title='a &lt; b &amp; c &gt; d' lang='' data-x='&#10;&#9;Ærø'/>"},
      {"a value with double quotes", "<p title='\"a\"'/>"},
      {"a value with single quotes", "<p title=\"'a'\"/>"},
      {"a value with both", "<p title='\"a&apos;&lt;'/>"},
      {"elements that never end", "<p><br/><img alt='a'/><input value=''/><meta name='x'/></p>"},
      {"elements without content", "<div><p/><td/><span/><script/><textarea/><option/></div>"},
      {"elements without content at the top", "<html><head/><body/></html>"},
      {"an element of no known name", "<x-y><z/></x-y>"},
      {"a script", "<html><script>if (a &lt; b &amp;&amp; c) d(\"&gt;\");</script></html>"},
      {"a style", "<style>a &gt; b { }</style>"},
      {"attributes without a value",
       "<input disabled='disabled' checked='' readonly='x' value='y'/>"},
      {"addresses",
       "<p><a href='/forms/a-b_c.d#q-1'>x</a><form action='/parked/0'/>"
       "<img src='data:,'/><input name='a b'/></p>"},
      {"depth and siblings", "<a><b><c><d/></c>x</b>y<e/><f>z</f></a>"},
      {"a document type", "<!DOCTYPE html SYSTEM 'about:legacy-compat'><html><p>a</p></html>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Page page = pageOf(c.page);
    ASSERT_TRUE(page);
    EXPECT_EQ(htmlText(*page), writtenByLibxml2(page));
  }
}

TEST(HtmlText, LeavesToLibxml2WhatItTreatsInWaysOfItsOwn) {
  const struct {
    const char *says, *page;
  } cases[] = {
      {"a comment", "<p><!-- a --></p>"},
      {"an instruction", "<p><?a b?></p>"},
      {"a namespace", "<p xmlns='urn:a'/>"},
      {"a namespace that nobody uses", "<p xmlns:a='urn:a'/>"},
      {"an attribute of a namespace", "<p xml:lang='en'/>"},
      {"an address with a blank", "<a href='a b'/>"},
      {"an address beyond ASCII", "<a href='Ærø'/>"},
      {"an address with quotes", "<a href='&quot;'/>"},
      {"the name of an anchor", "<a name='a b'/>"},
      {"a comment in a value", "<p title='&lt;!-- a --&gt;'/>"},
      {"a brace behind an ampersand", "<p title='&amp;{a}'/>"},
      {"another document type", "<!DOCTYPE html PUBLIC 'a' 'b'><html/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Page page = pageOf(c.page);
    ASSERT_TRUE(page);
    EXPECT_EQ(htmlText(*page), std::nullopt);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
