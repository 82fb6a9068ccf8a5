#pragma once

#include <optional>
#include <string>
#include <vector>

#include "varnel_xml_creation/platform/dom/Document.h"

/// Something in which a document is not as expected.
struct XmlDifference {
  std::string strPath;  // of the element, a position in every step: "/m:Case[1]/m:Row[3]"
  std::string strWhat;  // "@value", "#text", "namespace", "order"; empty for the whole element
  std::optional<std::string> expected;  // none: nothing there
  std::optional<std::string> actual;

  // The marks that the parked form itself bears, those of the element or around it.
  std::string strQuestion;
  std::string strRow;
  std::string strColumn;
};

/// Compares as XML: the order of attributes, how characters are escaped and the white space between
/// elements do not count, and neither do prefixes of the same namespace.
///
/// Children are compared with those of the same name and the same `id`, in their order. Where their
/// numbers differ, those alike at both ends are taken out first, so that one that came in between
/// does not make all behind it different. The work is linear in both documents but for sorting.
std::vector<XmlDifference> compareXml(const Varnel_Tolv_XML_Creation::Document& objExpected,
                                      const Varnel_Tolv_XML_Creation::Document& objActual);
