#include "platform/schema/component/Wildcards.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_set>

namespace Varnel_Tolv_XML_Creation {

namespace {

using Uris = std::vector<std::string>;

/// Those of a list that are (not) among the others as well.
Uris kept(const Uris& uris, const Uris& others, bool blnAmong) {
  const std::unordered_set<std::string_view> known(others.begin(), others.end());
  Uris kept;
  std::copy_if(uris.begin(), uris.end(), std::back_inserter(kept),
               [&](const std::string& strUri) { return known.contains(strUri) == blnAmong; });
  return kept;
}

Uris together(const Uris& first, const Uris& second) {
  Uris all = kept(second, first, false);
  all.insert(all.begin(), first.begin(), first.end());
  return all;
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
  if (strNamespaces == "##other") {
    wildcard.uris = {"", strTarget};
    return wildcard;
  }
  wildcard.blnOthers = false;
  for (std::string_view strToken : source.tokens("namespace")) {
    if (strToken == "##local") strToken = {};
    if (strToken == "##targetNamespace") strToken = strTarget;
    wildcard.uris.emplace_back(strToken);
  }
  return wildcard;
}

Wildcard intersectionOf(const Wildcard& first, const Wildcard& second) {
  Wildcard both = first;
  if (first.blnOthers == second.blnOthers) {
    both.uris =
        first.blnOthers ? together(second.uris, first.uris) : kept(first.uris, second.uris, true);
  } else {
    both.blnOthers = false;
    both.uris = first.blnOthers ? kept(second.uris, first.uris, false)
                                : kept(first.uris, second.uris, false);
  }
  return both;
}

Wildcard unionOf(Wildcard first, Wildcard second) {
  // All but what neither admits.
  first.blnOthers = !first.blnOthers;
  second.blnOthers = !second.blnOthers;
  Wildcard either = intersectionOf(first, second);
  either.blnOthers = !either.blnOthers;
  return either;
}

}  // namespace Varnel_Tolv_XML_Creation
