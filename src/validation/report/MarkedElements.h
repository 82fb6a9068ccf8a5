#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/dom/Document.h"

namespace Varnel_Tolv_XML_Creation {

/// The question, row and column that an element of the message comes from.
struct Marks {
  std::string strQuestionId;
  std::string strRowIndex;
  std::string strColumnId;
};

/// Where an element of the message stands, and whose it is.
struct MarkedElement {
  Node objElement;
  std::string strPath;       // a position in every step, the prefixes of the message
  std::string strPlainPath;  // the names as written, without positions
  Marks marks;               // its own or those of the nearest element around it that has any
  Marks outerMarks;          // those of the nearest element around it
};

/// Some elements of a message by their numbers in document order, the root being 0. Positions are
/// those among the siblings with the same qualified name. Cost: a look at each node of the message,
/// and at the siblings before each element and before those around it, at each but once.
std::unordered_map<std::size_t, MarkedElement> markedElements(const Document& objMessage,
                                                              std::vector<std::size_t> wanted);

}  // namespace Varnel_Tolv_XML_Creation
