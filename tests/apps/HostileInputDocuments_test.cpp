#include <gmock/gmock.h>
#include <iconv.h>

#include <array>
#include <stdexcept>

#include "HostileInput.h"

// Every document that a run reads, written by somebody who wants more than a message.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::HasSubstr;

std::string repeated(std::string_view strText, std::size_t lngTimes) {
  std::string strAll;
  strAll.reserve(strText.size() * lngTimes);
  for (std::size_t lngTime = 0; lngTime < lngTimes; ++lngTime) strAll += strText;
  return strAll;
}

/// The text in another encoding, as iconv names it.
std::string encoded(std::string strText, const char* encoding) {
  const iconv_t converter = ::iconv_open(encoding, "UTF-8");
  if (converter == iconv_t(-1)) throw std::runtime_error("iconv_open");
  std::string strEncoded(strText.size() * 8 + 8, '\0');
  char* in = strText.data();
  char* out = strEncoded.data();
  std::size_t lngIn = strText.size();
  std::size_t lngOut = strEncoded.size();
  const std::size_t lngResult = ::iconv(converter, &in, &lngIn, &out, &lngOut);
  ::iconv_close(converter);
  if (lngResult == std::size_t(-1)) throw std::runtime_error("iconv");
  strEncoded.resize(strEncoded.size() - lngOut);
  return strEncoded;
}

/// Ten entities, each of which holds ten of the one before.
std::string bomb(const std::string& strMark) {
  std::string strEntities = "<!ENTITY " + strMark + "e0 'xxxxxxxxxx'>";
  for (int lngEntity = 1; lngEntity < 10; ++lngEntity) {
    const std::string strBefore =
        (strMark.empty() ? "&e" : "&#37;e") + std::to_string(lngEntity - 1);
    strEntities += "<!ENTITY " + strMark + "e" + std::to_string(lngEntity) + " '" +
                   repeated(strBefore + ";", 10) + "'>";
  }
  return strEntities;
}

struct Infection {
  const char* says;
  std::string strDocumentType;
  std::string strContent;
};

class HostileInputDocuments : public HostileInput {
 protected:
  void expectAllRefused(const std::vector<Infection>& infections) const {
    for (const Infection& infection : infections) {
      for (const Role& role : allRoles()) {
        SCOPED_TRACE(std::string(role.option) + ": " + infection.says);
        const std::string strText = infected(role, infection.strDocumentType, infection.strContent);
        expectRefused(role, submitText(role, strText), kHostileFile);
      }
    }
  }
};

TEST_F(HostileInputDocuments, AreAcceptedWhereNothingIsWrong) {
  expectSent(submit());
  for (const Role& role : kConfigurationRoles) {
    SCOPED_TRACE(role.option);
    const struct {
      const char *says, *documentType, *content;
    } cases[] = {
        {"the honest text", "", ""},
        {"an internal entity", "<!DOCTYPE d [<!ENTITY e ' '>]>", "&e;"},
        {"an external entity that nothing uses",
         "<!DOCTYPE d [<!ENTITY e SYSTEM '%DIR/secret.txt'>]>", ""},
        {"the name of a DTD that nothing needs", "<!DOCTYPE d SYSTEM 'file://%DIR/secret.dtd'>",
         ""},
        {"the same on the network", "<!DOCTYPE d SYSTEM 'http://127.0.0.1:9/secret.dtd'>", ""},
    };
    for (const auto& c : cases) {
      SCOPED_TRACE(c.says);
      expectAccepted(role, submitText(role, infected(role, c.documentType, c.content)));
    }
  }
}

TEST_F(HostileInputDocuments, AreRefusedWithAnExternalEntity) {
  const std::string strRelative = "../" + outside_.path().filename().string() + "/secret.txt";
  const std::string strUse = "&e;";
  expectAllRefused({
      {"a file", "<!DOCTYPE d [<!ENTITY e SYSTEM '%DIR/secret.txt'>]>", strUse},
      {"a file: URL", "<!DOCTYPE d [<!ENTITY e SYSTEM 'file://%DIR/secret.txt'>]>", strUse},
      {"a relative path", "<!DOCTYPE d [<!ENTITY e SYSTEM '" + strRelative + "'>]>", strUse},
      {"a public identifier", "<!DOCTYPE d [<!ENTITY e PUBLIC 'p' '%DIR/secret.xml'>]>", strUse},
      {"the network", "<!DOCTYPE d [<!ENTITY e SYSTEM 'http://127.0.0.1:9/e'>]>", strUse},
      {"in an attribute", "<!DOCTYPE d [<!ENTITY e SYSTEM '%DIR/secret.txt'>]>", "<x a='&e;'/>"},
      {"inside another entity",
       "<!DOCTYPE d [<!ENTITY i SYSTEM '%DIR/secret.txt'><!ENTITY e '&i;'>]>", strUse},
      {"a parameter entity", "<!DOCTYPE d [<!ENTITY % p SYSTEM 'file://%DIR/secret.dtd'> %p;]>",
       strUse},
      {"a parameter entity on the network",
       "<!DOCTYPE d [<!ENTITY % p SYSTEM 'http://127.0.0.1:9/e.dtd'> %p;]>", ""},
      {"one that carries a file to the network",
       "<!DOCTYPE d [<!ENTITY % f SYSTEM '%DIR/secret.txt'><!ENTITY % p \"<!ENTITY &#37; s SYSTEM "
       "'http://127.0.0.1:9/?%f;'>\"> %p; %s;]>",
       ""},
      {"declared in a DTD", "<!DOCTYPE d SYSTEM 'file://%DIR/secret.dtd'>", strUse},
      {"declared in a DTD on the network", "<!DOCTYPE d SYSTEM 'http://127.0.0.1:9/e.dtd'>",
       strUse},
      {"declared nowhere", "", strUse},
  });
}

TEST_F(HostileInputDocuments, AreRefusedWithABomb) {
  const std::string strLong(100'000, 'x');
  expectAllRefused({
      {"a billion laughs", "<!DOCTYPE d [" + bomb("") + "]>", "&e9;"},
      {"a billion laughs in an attribute", "<!DOCTYPE d [" + bomb("") + "]>", "<x a='&e9;'/>"},
      {"a billion laughs of parameter entities", "<!DOCTYPE d [" + bomb("% ") + " %e9;]>", "&e;"},
      {"one long entity, many times", "<!DOCTYPE d [<!ENTITY e '" + strLong + "'>]>",
       repeated("&e;", 5'000)},
      {"one long entity in many attributes", "<!DOCTYPE d [<!ENTITY e '" + strLong + "'>]>",
       repeated("<x a='&e;'/>", 5'000)},
      {"entities that hold each other", "<!DOCTYPE d [<!ENTITY e '&f;'><!ENTITY f '&e;'>]>", "&e;"},
  });
}

TEST_F(HostileInputDocuments, AreRefusedBeyondTheirLimits) {
  constexpr std::size_t kMany = 100'000;
  std::string strAttributes;
  for (std::size_t lngAt = 0; lngAt < kMany; ++lngAt) {
    strAttributes += " a" + std::to_string(lngAt) + "='1'";
  }
  expectAllRefused({
      {"100,000 levels", "", repeated("<x>", kMany) + repeated("</x>", kMany)},
      {"100,000 levels that are never closed", "", repeated("<x>", kMany)},
      {"100,000 attributes", "", "<x" + strAttributes + "/>"},
  });
}

TEST_F(HostileInputDocuments, AreRefusedBeforeTheyAreReadWhenTheyAreTooLarge) {
  constexpr std::size_t kLarge = 100'000'000;
  for (const auto& [says, strStart, strEnd] :
       {std::array{"an attribute", "<x a='", "'/>"}, std::array{"a text", "<x>", "</x>"}}) {
    write(kHostileFile, strStart + std::string(kLarge, 'x') + strEnd);
    for (const Role& role : allRoles()) {
      SCOPED_TRACE(std::string(role.option) + ": " + says);
      const Outcome outcome = submitWith(role, kHostileFile);
      expectRefused(role, outcome, kHostileFile, "The input is larger than 67108864 bytes.");
      expectMemoryBelow(64, outcome.run);
    }
  }
}

TEST_F(HostileInputDocuments, MayHoldALongValueBelowTheLimit) {
  const std::string strLong(kSanitized ? 11'000'000 : 20'000'000, 'x');
  std::string strTemplate = read("template.xml");
  strTemplate.insert(strTemplate.find(" xmlns:c"), " long='" + strLong + "'");
  write(kHostileFile, strTemplate);
  const Outcome outcome = submit({"--template", kHostileFile});
  EXPECT_EQ(outcome.run.status, 0);
  EXPECT_TRUE(outcome.strSend.find(" long=\"" + strLong + "\"") != std::string::npos);
}

TEST_F(HostileInputDocuments, AreRefusedWhereTheyAreNoXml) {
  const std::string strNul(1, '\0');
  const struct {
    const char* says;
    std::string strText;
  } cases[] = {
      {"nothing", ""},
      {"white space", " \r\n"},
      {"a byte that is no UTF-8", "<x>\xFF</x>"},
      {"UTF-8 that is longer than it needs to be", "<x>\xC0\xBC\xE0\x80\xBC</x>"},
      {"half of a surrogate pair", "<x>\xED\xA0\x80</x>"},
      {"a NUL", "<x>" + strNul + "</x>"},
      {"a NUL behind the end", "<x/>" + strNul + "<y/>"},
      {"nothing but NULs", std::string(1000, '\0')},
      {"an escaped control character", "<x>&#1;</x>"},
      {"an encoding that nobody knows", "<?xml version='1.0' encoding='X-NONE'?><x/>"},
      {"two roots", "<x/><x/>"},
      {"half a mark of UTF-16", "\xFF"},
      {"UTF-16 that ends in the middle", std::string("\xFF\xFE<\0x\0/\0>", 9)},
  };
  for (const auto& c : cases) {
    for (const Role& role : allRoles()) {
      SCOPED_TRACE(std::string(role.option) + ": " + c.says);
      expectRefused(role, submitText(role, c.strText), kHostileFile);
    }
  }
}

TEST_F(HostileInputDocuments, HideNothingInAnotherEncoding) {
  const char* encodings[] = {"UTF-7", "UTF-16", "UTF-16LE", "UTF-32", "UTF-32BE", "IBM037"};
  const struct {
    const char* says;
    std::string strDocumentType, strContent;
  } cases[] = {
      {"an external entity", "<!DOCTYPE d [<!ENTITY e SYSTEM '" + secret("secret.txt") + "'>]>",
       "&e;"},
      {"a bomb", "<!DOCTYPE d [" + bomb("") + "]>", "&e9;"},
  };
  for (const char* encoding : encodings) {
    for (const auto& c : cases) {
      SCOPED_TRACE(std::string(encoding) + ": " + c.says);
      const std::string strXml = "<?xml version='1.0' encoding='" + std::string(encoding) + "'?>" +
                                 c.strDocumentType + "<d>" + c.strContent + "</d>";
      for (const char* const option : {"--object-list", "--template"}) {
        const Role& role = roleOf(option);
        expectRefused(role, submitText(role, encoded(strXml, encoding)), kHostileFile);
      }
    }
  }
}

TEST_F(HostileInputDocuments, MayBeUtf16) {
  const Role& role = roleOf("--template");
  std::string strText = read(role.file);
  strText.insert(strText.find("?>"), " encoding='UTF-16'");
  expectSent(submitText(role, encoded(strText, "UTF-16")));
}

TEST_F(HostileInputDocuments, AreNotPutTogetherFromOthers) {
  const std::string strInclude =
      "<i:include xmlns:i='http://www.w3.org/2001/XInclude' parse='text' href='file://%DIR/"
      "secret.txt'/>";
  for (const Role& role : kConfigurationRoles) {
    SCOPED_TRACE(role.option);
    // In most documents it is one more element that nobody asks for.
    const Outcome outcome = submitText(
        role, infected(role, "<?xml-stylesheet href='file://%DIR/secret.xml'?>", strInclude));
    EXPECT_LE(outcome.run.status, 1) << outcome.run.err;
  }
  const Role& schema = kSchemaRole;
  expectNoVerdict(submitText(schema, infected(schema, "", strInclude)), kHostileFile,
                  "The content is not valid.");

  const Role& message = roleOf("--template");
  const Outcome outcome = submitText(message, infected(message, "", strInclude));
  EXPECT_EQ(outcome.run.status, 1);
  EXPECT_THAT(outcome.run.out,
              HasSubstr("\"errorDetail\": \"BuildSendXML - Reference to undeclared namespace "
                        "prefix: 'i'.\""));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
