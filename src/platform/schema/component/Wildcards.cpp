#include "platform/schema/component/Wildcards.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace Varnel_Tolv_XML_Creation {

namespace {

using Namespaces = Wildcard::Namespaces;

bool lists(const Wildcard& wildcard, std::string_view strUri) {
  return std::find(wildcard.uris.begin(), wildcard.uris.end(), strUri) != wildcard.uris.end();
}

Wildcard allBut(std::string_view strOther) {
  Wildcard wildcard;
  wildcard.namespaces = Namespaces::other;
  wildcard.strOther = strOther;
  return wildcard;
}

/// Takes from a list what `blnAmong` the other's is (not) there.
void keep(Wildcard& list, const Wildcard& other, bool blnAmong) {
  const std::unordered_set<std::string_view> others(other.uris.begin(), other.uris.end());
  std::erase_if(list.uris,
                [&](const std::string& strUri) { return others.contains(strUri) != blnAmong; });
}

Wildcard namespacesOfBoth(const Wildcard& first, const Wildcard& second) {
  if (first.namespaces == Namespaces::any) return second;
  if (second.namespaces == Namespaces::any) return first;
  if (first.namespaces == Namespaces::other && second.namespaces == Namespaces::other) {
    // Of two different namespaces that would be more than one exception: no valid schema has that.
    return first.strOther.empty() ? second : first;
  }
  Wildcard list = first.namespaces == Namespaces::listed ? first : second;
  const Wildcard& other = first.namespaces == Namespaces::listed ? second : first;
  if (other.namespaces == Namespaces::listed) {
    keep(list, other, true);
  } else {
    std::erase_if(list.uris, [&](const std::string& strUri) {
      return strUri.empty() || strUri == other.strOther;
    });
  }
  return list;
}

Wildcard namespacesOfEither(const Wildcard& first, const Wildcard& second) {
  if (first.namespaces == Namespaces::any || second.namespaces == Namespaces::any) return {};
  if (first.namespaces == Namespaces::other && second.namespaces == Namespaces::other) {
    return first.strOther == second.strOther ? first : allBut("");
  }
  const Wildcard& list = first.namespaces == Namespaces::listed ? first : second;
  const Wildcard& other = first.namespaces == Namespaces::listed ? second : first;
  if (other.namespaces == Namespaces::listed) {
    Wildcard more = list;
    keep(more, other, false);
    more.uris.insert(more.uris.begin(), other.uris.begin(), other.uris.end());
    return more;
  }
  // No namespace at all is the other exception; to lift it alone cannot be said.
  if (!lists(list, other.strOther)) return other;
  return lists(list, "") ? Wildcard() : allBut("");
}

}  // namespace

Wildcard readWildcard(const SchemaElement& source) {
  Wildcard wildcard;
  const std::string_view strProcess = source.token("processContents");
  if (strProcess == "lax") wildcard.process = Wildcard::Process::lax;
  if (strProcess == "skip") wildcard.process = Wildcard::Process::skip;

  const std::string_view strNamespaces = source.token("namespace");
  const std::string& strTarget = source.part().document->strTargetNamespace;
  if (strNamespaces == "##any" || !source.has("namespace")) return wildcard;
  wildcard.namespaces = Namespaces::listed;
  if (strNamespaces == "##other") {
    wildcard.namespaces = Namespaces::other;
    wildcard.strOther = strTarget;
    return wildcard;
  }
  for (std::string_view strToken : source.tokens("namespace")) {
    if (strToken == "##local") strToken = {};
    if (strToken == "##targetNamespace") strToken = strTarget;
    wildcard.uris.emplace_back(strToken);
  }
  return wildcard;
}

Wildcard intersectionOf(const Wildcard& first, const Wildcard& second) {
  Wildcard both = namespacesOfBoth(first, second);
  both.process = first.process;
  return both;
}

Wildcard unionOf(const Wildcard& first, const Wildcard& second) {
  Wildcard either = namespacesOfEither(first, second);
  either.process = first.process;
  return either;
}

}  // namespace Varnel_Tolv_XML_Creation
