#include "host/PageTexts.h"

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Stylesheet.h"
#include "apps/host/Host.h"
#include "host/Embedded.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// The texts of the built-in stylesheet, as a translation is asked for them.
std::set<std::string> textsOfThePages() {
  prepareStylesheets(pageFile, [](const std::string&) {});
  std::set<std::string> texts;
  const Stylesheet stylesheet("", "page.xsl", [&](std::string_view strEnglish) {
    texts.emplace(strEnglish);
    return std::string(strEnglish);
  });
  return texts;
}

std::set<std::string> placesIn(const std::string& strText) {
  std::set<std::string> places;
  for (std::size_t at = 0; (at = strText.find('{', at)) != std::string::npos; ++at) {
    places.insert(strText.substr(at, strText.find('}', at) - at));
  }
  return places;
}

// libxslt asks for a stylesheet that another imports.
TEST(PageTexts, FailWithWhatTheirTranslationFailsWithWhoeverAskedForThem) {
  prepareStylesheets(pageFile, [](const std::string&) {});
  const TemporaryDirectory directory;
  const std::string strFile = directory.file(
      "page.xsl",
      "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
      "<xsl:import href='built-in:page.xsl'/></xsl:stylesheet>");
  const auto fail = [](std::string_view) -> std::string { throw std::out_of_range("no word"); };
  for (const std::string& strOwn : {std::string(), strFile}) {
    EXPECT_THROW(Stylesheet(strOwn, "page.xsl", fail), std::out_of_range) << strOwn;
    EXPECT_NO_THROW(Stylesheet(strOwn, "page.xsl", {})) << strOwn;
  }
}

TEST(PageTexts, AreAllThereInGerman) {
  const PageTexts& texts = PageTexts::of("de-AT");
  EXPECT_STREQ(texts.language(), "");
  const std::set<std::string> english = textsOfThePages();
  EXPECT_TRUE(english.contains("Check and send"));
  EXPECT_TRUE(english.contains("Sections"));  // an attribute's
  for (const std::string& strEnglish : english) {
    EXPECT_NE(texts.translated(strEnglish), "") << strEnglish;
  }
  for (const char* const strEnglish :
       {"1 row, here {here}", "{stored} rows, here {here}", "Add a row",
        "day.month.year, as 31.10.2026", "month/day/year, as 10/31/2026",
        "year-month-day, as 2026-10-31", "{least} to {most}", "at least {least}", "at most {most}",
        "at least {least} characters", "exactly 1 character", "exactly {most} characters",
        "{least} to {most} characters", "at most 1 character", "at most {most} characters",
        "A character did not arrive; where it was there is a \xEF\xBF\xBD. Please type it "
        "again."}) {
    EXPECT_NE(texts.translated(strEnglish), "") << strEnglish;
  }
}

TEST(PageTexts, HaveThePlacesOfTheEnglishOnes) {
  const auto texts = nlohmann::json::parse(pageFile("texts.de.json"));
  for (const auto& [strEnglish, strGerman] : texts.items()) {
    EXPECT_EQ(placesIn(strGerman.get<std::string>()), placesIn(strEnglish));
  }
}

TEST(PageTexts, AreEnglishInALanguageThatHasNone) {
  const struct {
    const char *tag, *text, *language;
  } cases[] = {{"en", "at least 3", ""},      {"EN-gb", "at least 3", ""},
               {"de", "mindestens 3", ""},    {"fr", "at least 3", "en"},
               {"DE-ch", "mindestens 3", ""}, {"", "at least 3", "en"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.tag);
    EXPECT_EQ(PageTexts::of(c.tag)("at least {least}", {{"least", "3"}}), c.text);
    EXPECT_STREQ(PageTexts::of(c.tag).language(), c.language);
  }
}

class PageLanguage : public HostTest {
 protected:
  void writePageIn(const char* language) const {
    std::string strPage = textOfFile(deployment() / "page.xml");
    const std::size_t at = strPage.find("<page ");
    ASSERT_NE(at, std::string::npos);
    const std::size_t lngLanguage = strPage.find(" lang=\"en\"");
    if (lngLanguage != std::string::npos) strPage.erase(lngLanguage, 10);
    strPage.insert(at + 5, std::string(" lang=\"") + language + '"');
    std::ofstream(deployment() / "page.xml") << strPage;
  }
  /// The page of a refused form, and the receipt of the mended one.
  std::pair<HttpAnswer, HttpAnswer> pages() const {
    const Host host(words());
    const std::string strPlace = parked(host, exampleForm("complete.form"));
    Form wrong = exampleForm("complete.form");
    wrong["meters___reading_1"] = "much";
    HttpAnswer refused = host.post(strPlace, filledIn(host.get(strPlace), wrong, "submit"));
    host.post(strPlace, filledIn(refused, exampleForm("complete.form"), "submit"));
    return {std::move(refused), host.get("/messages/" + strPlace.substr(8))};
  }
};

TEST_F(PageLanguage, IsThatOfAllTextsInGerman) {
  writePageIn("de");
  const auto [refused, receipt] = pages();
  EXPECT_EQ(refused.status, 422);
  for (const char* const strText :
       {"<html lang=\"de\"", ">Prüfen und senden</button>", "Es gibt 1 Fehler",
        "Gespeichert, nicht gesendet: es enthält Fehler", "aria-label=\"Abschnitte\"",
        "<span class=\"required\">(erforderlich)</span>", "Tag.Monat.Jahr, wie 31.10.2026",
        "Zeile <span class=\"row-number\">1</span>",
        "Entfernen<span class=\"hidden\"> Zeile <span class=\"row-number\">1</span> von ",
        "<span class=\"hidden\">Fehler: </span>„much“ ist keine Zahl.",
        "data-text-send=\"Speichern und weiter zum Senden\""}) {
    EXPECT_TRUE(refused.shows(strText)) << strText;
  }
  EXPECT_TRUE(receipt.shows("<html lang=\"de\""));
  EXPECT_TRUE(receipt.shows("Das Formular wurde geprüft und angenommen."));
  for (const HttpAnswer* const page : {&refused, &receipt}) {
    EXPECT_FALSE(page->shows(" lang=\"en\""));
    EXPECT_FALSE(page->shows(">Save") || page->shows("error<") || page->shows(">Receipt<"));
  }
}

TEST_F(PageLanguage, IsTheSameWithCapitalsInItsTag) {
  writePageIn("DE-CH");
  const auto [refused, receipt] = pages();
  EXPECT_TRUE(refused.shows("Es gibt 1 Fehler"));
  EXPECT_TRUE(refused.shows("<span class=\"hidden\">Fehler: </span>„much“ ist keine Zahl."));
  EXPECT_FALSE(refused.shows("is not a number") || refused.shows(" lang=\"en\""));
}

TEST_F(PageLanguage, IsToldOfEnglishTextsInAnother) {
  writePageIn("fr");
  const auto [refused, receipt] = pages();
  for (const char* const strText :
       {"<html lang=\"fr\"", "><span lang=\"en\">Check and send</span></button>",
        "<span lang=\"en\">There is 1 error</span>",
        "<span class=\"required\"><span lang=\"en\">(required)</span></span>",
        "-hint\" lang=\"en\">day.month.year, as 31.10.2026",
        "<span lang=\"en\">Row </span><span class=\"row-number\">1</span>",
        ", <span lang=\"en\">row </span><span class=\"row-number\">1</span></span></label>",
        ", <span lang=\"en\">row </span>1, Reading</a>",
        "<span lang=\"en\"><span class=\"hidden\"><span lang=\"en\">Error: "}) {
    EXPECT_TRUE(refused.shows(strText)) << strText;
  }
  EXPECT_TRUE(refused.shows("data-text-send=\"Save and go on to sending\""));
  EXPECT_TRUE(receipt.shows("<p><span lang=\"en\">The form was checked and accepted.</span></p>"));
  EXPECT_TRUE(receipt.shows("<title>Receipt: "));
}

TEST_F(PageLanguage, IsNotToldOfWhatIsEnglishAnyway) {
  const auto [refused, receipt] = pages();
  for (const HttpAnswer* const page : {&refused, &receipt}) {
    EXPECT_TRUE(page->shows("<html lang=\"en\""));
    EXPECT_FALSE(page->shows("<span lang="));
  }
  EXPECT_TRUE(refused.shows("There is 1 error"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
