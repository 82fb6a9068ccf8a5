#include "platform/schema/component/IdentityPaths.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

using Step = IdentityPath::Step;

class IdentityPathParser {
 public:
  IdentityPathParser(const SchemaElement& source, NameTable& names)
      : source_(source), names_(names), strXPath_(source.attribute("xpath")), strRest_(strXPath_) {}

  std::vector<IdentityPath> parse() {
    std::vector<IdentityPath> paths;
    do {
      paths.push_back(parsePath());
    } while (take("|"));
    if (!strRest_.empty()) fail();
    return paths;
  }

 private:
  IdentityPath parsePath() {
    IdentityPath path;
    if (!take(".")) {
      parseStep(path);
    } else if (take("//")) {
      path.blnAnywhereBelow = true;
      parseStep(path);
    }
    while (take("/")) parseStep(path);
    return path;
  }

  void parseStep(IdentityPath& path) {
    if (path.attribute) fail();  // nothing is below an attribute
    if (take(".")) return;
    const bool blnAt = take("@");
    const std::string_view strName = blnAt ? std::string_view() : takeName();
    const bool blnAxis = !blnAt && take("::");
    if (blnAt || (blnAxis && strName == "attribute")) {
      if (!source_.is("field")) fail();
      path.attribute = parseTest(takeName());
    } else {
      if (blnAxis && strName != "child") fail();
      path.steps.push_back(parseTest(blnAxis ? takeName() : strName));
    }
  }

  /// The test that begins with this name, which is taken already; empty: with something else.
  Step parseTest(std::string_view strName) {
    Step step;
    if (strName.empty()) {
      if (!take("*")) fail();
      return step;
    }
    const bool blnPrefixed = strRest_.starts_with(':');
    if (blnPrefixed) strRest_.remove_prefix(1);
    if (blnPrefixed && take("*")) {
      step.test = Step::Test::anyOfNamespace;
      step.strUri = namespaceOf(strName);
      return step;
    }
    step.test = Step::Test::name;
    const std::string_view strLocal = blnPrefixed ? takeName() : strName;
    if (!isNCName(strLocal)) fail();
    step.name = names_.intern(blnPrefixed ? namespaceOf(strName) : "", strLocal);
    return step;
  }

  std::string_view namespaceOf(std::string_view strPrefix) const {
    const std::optional<std::string_view> strUri = source_.namespaceOf(strPrefix);
    if (!strUri) refuse(source_, "The prefix '" + std::string(strPrefix) + "' is not declared.");
    return *strUri;
  }

  /// Takes a token, and white space around it, if it comes next.
  bool take(std::string_view strToken) {
    skipWhiteSpace();
    if (!strRest_.starts_with(strToken)) return false;
    strRest_.remove_prefix(strToken.size());
    skipWhiteSpace();
    return true;
  }

  /// Takes the characters of a name; white space behind it may belong to the next token.
  std::string_view takeName() {
    std::size_t length = 0;
    while (length < strRest_.size() && isNameByte(strRest_[length])) ++length;
    const std::string_view strName = strRest_.substr(0, length);
    strRest_.remove_prefix(length);
    return strName;
  }

  void skipWhiteSpace() {
    strRest_.remove_prefix(std::min(strRest_.find_first_not_of(" \t\r\n"), strRest_.size()));
  }

  [[noreturn]] void fail() const {
    refuse(source_, "'" + std::string(strXPath_) + "' is no path of an identity constraint.");
  }

  const SchemaElement& source_;
  NameTable& names_;
  const std::string_view strXPath_;
  std::string_view strRest_;
};

}  // namespace

std::vector<IdentityPath> readIdentityPaths(const SchemaElement& source, NameTable& names) {
  return IdentityPathParser(source, names).parse();
}

}  // namespace Varnel_Tolv_XML_Creation
