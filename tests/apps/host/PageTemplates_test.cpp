#include "host/PageTemplates.h"

#include <fstream>
#include <thread>

#include "apps/host/Host.h"
#include "host/Embedded.h"

namespace fs = std::filesystem;

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// A form with a value and two lines of its summary.
ViewText viewWith(const std::string& strSaved, const std::string& strFirst,
                  const std::string& strSecond) {
  ViewText view(ViewText::Form::withPlaces);
  view.begin("form").set("title", "A title").set("state", "parked").setPlace("action", "/parked/1");
  view.setPlace("saved", strSaved);
  view.begin("problems").setPlace("count", "2");
  for (const std::string& strLine : {strFirst, strSecond}) {
    view.beginPart();
    view.begin("problem").begin("place").setPlace("anchor", "q").textPlace(strLine).end().end();
    view.endPart();
  }
  view.end().end();
  return view;
}

class PageTemplatesTest : public ::testing::Test {
 protected:
  PageTemplatesTest() {
    prepareStylesheets(pageFile, [](const std::string&) {});
    stylesheet_ = std::make_unique<Stylesheet>();
    templates_ = std::make_unique<PageTemplates>(*stylesheet_);
  }
  std::string page(const ViewText& view) {
    return templates_->page(view).value_or("there is none");
  }

  std::unique_ptr<Stylesheet> stylesheet_;
  std::unique_ptr<PageTemplates> templates_;
};

TEST_F(PageTemplatesTest, GiveEachPageItsOwnTexts) {
  const std::string strOne = page(viewWith("Monday", "First", "Second"));
  const std::string strOther = page(viewWith("Friday", "Third", ""));
  EXPECT_NE(strOne.find("Monday"), std::string::npos);
  EXPECT_NE(strOne.find("<li><a href=\"#q\">First</a></li><li><a href=\"#q\">Second</a></li>"),
            std::string::npos);
  EXPECT_NE(strOther.find("Friday"), std::string::npos);
  EXPECT_NE(strOther.find("<li><a href=\"#q\">Third</a></li><li><a href=\"#q\"></a></li>"),
            std::string::npos);
  EXPECT_EQ(strOther.find("Monday"), std::string::npos);
  EXPECT_TRUE(strOne.starts_with("<!DOCTYPE html>\n<html"));
  EXPECT_EQ(strOne.find("<!DOCTYPE", 1), std::string::npos);
  EXPECT_EQ(page(viewWith("Monday", "First", "Second")), strOne);
}

TEST_F(PageTemplatesTest, ShowTextsAsTheyAre) {
  const struct {
    const char *says, *text, *shown;
  } cases[] = {
      {"markup", "</a><b>&amp;", "&lt;/a&gt;&lt;b&gt;&amp;amp;"},
      {"quotes", "\"it's\"", "\"it's\""},
      {"what looks like a place",
       "\xEF\xB7\x90"
       "0"
       "\xEF\xB7\x91",
       "\xEF\xB7\x90"
       "0"
       "\xEF\xB7\x91"},
      {"what looks like a place for parts",
       "\xEF\xB7\x92"
       "0"
       "\xEF\xB7\x91",
       "\xEF\xB7\x92"
       "0"
       "\xEF\xB7\x91"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    for (int time = 0; time < 2; ++time) {
      const std::string strPage = page(viewWith("Monday", c.text, "Second"));
      EXPECT_NE(strPage.find(std::string("\">") + c.shown + "</a>"), std::string::npos);
    }
  }
  ViewText view(ViewText::Form::withPlaces);
  view.begin("form").setPlace("token", "\"><b x='1' \"").end();
  EXPECT_NE(page(view).find("value=\"&quot;&gt;&lt;b x='1' &quot;\""), std::string::npos);
}

/// A form without parts, whose title stands in the view itself.
ViewText viewTitled(const std::string& strTitle, const std::string& strSaved) {
  ViewText view(ViewText::Form::withPlaces);
  view.begin("form").set("title", strTitle).set("state", "parked");
  view.setPlace("action", "/parked/1").setPlace("saved", strSaved).end();
  return view;
}

/// A form with so many lines in its summary, all of one view.
ViewText viewOfParts(int lngParts, const std::string& strAnchor) {
  ViewText view(ViewText::Form::withPlaces);
  view.begin("form").set("title", "A title").set("state", "parked").setPlace("action", "/parked/1");
  view.begin("problems").setPlace("count", std::to_string(lngParts));
  for (int each = 0; each < lngParts; ++each) {
    view.beginPart();
    view.begin("problem").begin("place").set("anchor", strAnchor).textPlace("A line").end().end();
    view.endPart();
  }
  view.end().end();
  return view;
}

TEST_F(PageTemplatesTest, KeepNoMoreThanTheyMay) {
  constexpr std::size_t kMost = 100'000;
  PageTemplates templates(*stylesheet_, kMost);
  bool blnCleared = false;
  std::size_t lngBefore = 0;
  for (int each = 0; each < 60; ++each) {
    const std::string strTitle = std::to_string(each) + std::string(2000, 't');
    for (const char* const strSaved : {"Monday", "Friday"}) {
      const std::string strPage = templates.page(viewTitled(strTitle, strSaved)).value_or("");
      EXPECT_NE(strPage.find(strTitle), std::string::npos);
      EXPECT_NE(strPage.find(strSaved), std::string::npos);
    }
    const PageTemplates::Figures figures = templates.figures();
    EXPECT_EQ(figures.lngMade, static_cast<std::size_t>(each) + 1);  // the second found the first's
    EXPECT_LE(figures.lngBytes, kMost);
    EXPECT_GE(figures.lngKept, 1u);
    blnCleared = blnCleared || figures.lngKept < lngBefore;
    lngBefore = figures.lngKept;
  }
  EXPECT_TRUE(blnCleared);
}

TEST_F(PageTemplatesTest, KeepNothingThatTakesMoreThanAQuarterOfThat) {
  PageTemplates templates(*stylesheet_, 100'000);
  ASSERT_TRUE(templates.page(viewTitled("Short", "Monday")));
  const std::size_t lngBytes = templates.figures().lngBytes;
  for (std::size_t lngTime = 1; lngTime <= 2; ++lngTime) {
    const std::string strTitle(30'000, 't');
    const std::string strPage = templates.page(viewTitled(strTitle, "Friday")).value_or("");
    EXPECT_NE(strPage.find(strTitle), std::string::npos);
    const PageTemplates::Figures figures = templates.figures();
    EXPECT_EQ(figures.lngKept, 1u);
    EXPECT_EQ(figures.lngBytes, lngBytes);
    EXPECT_EQ(figures.lngMade, 1 + lngTime);
  }
}

TEST_F(PageTemplatesTest, LeaveAPageOfVeryManyPartsToTheStylesheet) {
  EXPECT_EQ(templates_->page(viewOfParts(4001, "q")), std::nullopt);
  EXPECT_EQ(templates_->figures().lngMade, 0u);
  EXPECT_TRUE(templates_->page(viewOfParts(4000, "q")));
  EXPECT_EQ(templates_->figures().lngKept, 2u);  // the page and the one view of its parts
}

TEST_F(PageTemplatesTest, KeepThatThereIsNoneOfAView) {
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(templates_->page(viewOfParts(2, "<!--")), std::nullopt);
    EXPECT_EQ(templates_->figures().lngKept, 2u);
    EXPECT_EQ(templates_->figures().lngMade, 2u);
  }
}

TEST_F(PageTemplatesTest, GiveSeveralThreadsTheirPagesAtTheSameTime) {
  PageTemplates templates(*stylesheet_, 50'000);  // so that they are cleared meanwhile
  std::vector<std::jthread> people;
  for (int person = 0; person < 4; ++person) {
    people.emplace_back([&templates, person] {
      for (int time = 0; time < 40; ++time) {
        const std::string strTitle = std::to_string(time % 11) + std::string(2000, 't');
        const std::string strSaved =
            "Person " + std::to_string(person) + " at " + std::to_string(time);
        const std::string strPage = templates.page(viewTitled(strTitle, strSaved)).value_or("");
        EXPECT_NE(strPage.find(strTitle), std::string::npos);
        EXPECT_NE(strPage.find(strSaved), std::string::npos);
      }
    });
  }
  people.clear();
  EXPECT_LE(templates.figures().lngBytes, 50'000u);
  EXPECT_GT(templates.figures().lngMade, 11u);  // what was cleared was made again
}

/// A stylesheet that may look at what people typed is given the whole view at once, and makes the
/// same of it.
class WholePages : public HostTest {
 protected:
  /// The pages of a form in several states.
  std::vector<std::string> pages(const char* store) const {
    std::vector<std::string> words{"--deployment", deployment().string(), "--store",
                                   "sqlite:" + directory_.at(store)};
    const Host host(words);
    const Form complete = exampleForm("complete.form");
    const std::string strPlace = parked(host, complete);
    const HttpAnswer opened = host.get(strPlace);
    Form odd = complete;
    odd["town"] = "a'b<c>&";
    odd["weather"] = "storm";
    odd["remarks"] = "\r\n a\t\"b\"\n";
    odd["meters_rowCount"] = "4";
    odd["basement"] = "";
    std::vector<HttpAnswer> answers{
        host.get("/forms/inspection"), opened,
        host.post(strPlace, filledIn(opened, exampleForm("faulty.form"), "submit")),
        host.post(strPlace, filledIn(opened, odd, "park"))};
    const Form sent = filledIn(host.get(strPlace), complete, "submit");
    EXPECT_EQ(host.post(strPlace, sent).status, 303);
    answers.push_back(host.get(strPlace));
    answers.push_back(host.post(strPlace, filledIn(opened, odd, "park")));
    std::vector<std::string> texts;
    for (const HttpAnswer& answer : answers) {
      std::string strText = answer.body;
      // What no two pages have in common: addresses, tokens and moments.
      for (const char* const before : {"action=\"", "name=\"_token\" value=\"", "/messages/",
                                       "class=\"when\">", "page_opened\" value=\""}) {
        for (std::size_t at = 0; (at = strText.find(before, at)) != std::string::npos;) {
          at += std::string_view(before).size();
          strText.erase(at, strText.find_first_of("\"<", at) - at);
        }
      }
      texts.push_back(strText);
    }
    return texts;
  }
};

TEST_F(WholePages, AreThoseThatArePutTogether) {
  const std::vector<std::string> together = pages("one.sqlite");
  std::string strStylesheet = textOfFile((deployment() / "page.xsl").string());
  const std::string strEnd = "</xsl:stylesheet>";
  strStylesheet.replace(strStylesheet.find(strEnd), strEnd.size(),
                        "<xsl:template match=\"never\"/>" + strEnd);
  std::ofstream(deployment() / "page.xsl") << strStylesheet;
  const std::vector<std::string> whole = pages("other.sqlite");
  ASSERT_EQ(whole.size(), together.size());
  for (std::size_t at = 0; at < whole.size(); ++at) {
    SCOPED_TRACE(at);
    EXPECT_GT(whole[at].size(), 20'000u);
    EXPECT_EQ(whole[at], together[at]);
  }
}

/// What stands in a stylesheet of a deployment may look at answers.
TEST_F(WholePages, HoldWhatPeopleTyped) {
  std::string strStylesheet = textOfFile((deployment() / "page.xsl").string());
  const std::string strEnd = "</xsl:stylesheet>";
  strStylesheet.replace(
      strStylesheet.find(strEnd), strEnd.size(),
      "<xsl:template match=\"field[input/@value = 'Secret']\"><p>It is secret</p></xsl:template>" +
          strEnd);
  std::ofstream(deployment() / "page.xsl") << strStylesheet;
  const Host host(words());
  Form form = exampleForm("draft.form");
  EXPECT_FALSE(host.get(parked(host, form)).shows("It is secret"));
  form["town"] = "Secret";
  EXPECT_TRUE(host.get(parked(host, form)).shows("It is secret"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
