#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/Documents.h"
#include "support/Host.h"
#include "support/Results.h"

// Messages of tests: a root `r` that declares the prefixes m and n, and the namespace list that
// goes with it.

namespace Varnel_Tolv_XML_Creation::test {

/// The list registers the prefixes m and n, and the unprefixed names `plain`, `other` in no
/// namespace. The prefix x is not registered, but selections on a `message` know it.
inline constexpr std::string_view kNamespaceList =
    "<namespaces>"
    "<namespace id='m' name='urn:m' ref='urn:m'/>"
    "<namespace id='n' name='urn:n' ref='urn:n'/>"
    "<namespace id='plain' name='urn:plain'/>"
    "<namespace id='other' name='urn:other' ref=''/>"
    "</namespaces>";

inline Session withNamespaces(const TestHost& host) {
  Session session = host.session();
  session.objNamespaceXML = parsed(kNamespaceList);
  return session;
}

/// A message whose root `r` holds this.
inline Document message(std::string_view strContent, const DocumentSettings& settings = {}) {
  const Document objXml =
      parsed("<r xmlns:m='urn:m' xmlns:n='urn:n'>" + std::string(strContent) + "</r>", settings);
  objXml.setSelectionNamespaces("xmlns:m='urn:m' xmlns:n='urn:n' xmlns:x='urn:x' ");
  return objXml;
}

/// What the root `r` of a `message` holds, as text.
inline std::string content(const Document& objMessage) {
  constexpr std::string_view kStart = "<r xmlns:m=\"urn:m\" xmlns:n=\"urn:n\">";
  constexpr std::string_view kEnd = "</r>";
  const std::string strXml = objMessage.documentElement().xml();
  if (strXml == "<r xmlns:m=\"urn:m\" xmlns:n=\"urn:n\"/>") return "";
  if (!strXml.starts_with(kStart) || !strXml.ends_with(kEnd)) return "not a message: " + strXml;
  return strXml.substr(kStart.size(), strXml.size() - kStart.size() - kEnd.size());
}

/// A run-time error of procedure `strProcedure` whose description is the XML library's own.
inline ::testing::AssertionResult FailedWithNumber(const Acknowledge& objAck,
                                                   std::int32_t lngNumber,
                                                   std::string_view strProcedure) {
  if (objAck.UserMessage().empty()) return ::testing::AssertionFailure() << "no user message";
  return FailedWithRuntimeError(objAck, lngNumber, strProcedure, objAck.UserMessage());
}

/// The trace lines of one procedure, without its name.
inline std::vector<std::string> linesOf(const TestHost& host, std::string_view strSource) {
  const std::string strHead = std::string(strSource) + ": ";
  std::vector<std::string> lines;
  for (const std::string& strLine : host.traceLines()) {
    if (strLine.starts_with(strHead)) lines.push_back(strLine.substr(strHead.size()));
  }
  return lines;
}

}  // namespace Varnel_Tolv_XML_Creation::test
