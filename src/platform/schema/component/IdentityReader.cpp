#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "platform/schema/component/Readers.h"
#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

using Step = IdentityPath::Step;

/// Reads the alternatives of the XPath of a selector or field. The grammar, with white space
/// between its tokens:
///
///   paths = path { "|" path }
///   path  = [ "." "//" ] step { "/" step }
///   step  = "." | [ "child" "::" ] test | ( "@" | "attribute" "::" ) test
///   test  = NCName | prefix ":" NCName | prefix ":*" | "*"
///
/// An attribute only as the last step of a field. A name without a prefix is in no namespace.
/// Raises kXmlFailure for anything else.
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

std::vector<const IdentityConstraint*> IdentityReader::constraintsOf(const SchemaElement& element) {
  using Kind = IdentityConstraint::Kind;
  NameTable& names = readers_.store.names;
  std::vector<const IdentityConstraint*> constraints;
  for (SchemaElement source = element.child(); source; source = source.next()) {
    if (!source.isOneOf({"unique", "key", "keyref"})) continue;
    IdentityConstraint& constraint = readers_.store.constraints.emplace_back();
    constraint.kind = source.is("unique") ? Kind::unique
                      : source.is("key")  ? Kind::key
                                          : Kind::keyref;
    constraint.name =
        names.intern(source.part().document->strTargetNamespace, source.token("name"));
    for (SchemaElement child = source.child(); child; child = child.next()) {
      if (child.is("selector")) constraint.selector = IdentityPathParser(child, names).parse();
      if (!child.is("field")) continue;
      constraint.fields.push_back(IdentityPathParser(child, names).parse());
      constraint.fieldTexts.emplace_back(child.attribute("xpath"));
    }
    const IdentityConstraint*& named = byName_[constraint.name];
    if (!named) named = &constraint;
    if (constraint.kind == Kind::keyref) references_.push_back({&constraint, source});
    constraints.push_back(&constraint);
  }
  return constraints;
}

void IdentityReader::connect() {
  for (const Reference& reference : references_) {
    const SchemaElement::Name name = reference.source.expand(reference.source.token("refer"));
    const IdentityConstraint* key =
        byName_.find(readers_.store.names.find(name.strUri, name.strLocal));
    const bool blnKey = key && key->kind != IdentityConstraint::Kind::keyref &&
                        key->fields.size() == reference.keyref->fields.size();
    if (!blnKey) refuse(reference.source, "A keyref refers to no key: '" + name.text() + "'.");
    reference.keyref->refer = key;
  }
}

}  // namespace Varnel_Tolv_XML_Creation
