#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dom/Document.h"
#include "validation/report/ParkIndex.h"
#include "validation/report/ReportDocuments.h"

namespace Varnel_Tolv_XML_Creation {

/// Where in the message the answers of a form go, as the questions XML and the object mapper say.
///
/// Paths are those of local names, "/report/site/street": the documents spell one element of a
/// message in different ways. A place is known by the path of its element; copies that the document
/// data makes have the place of their original as well. What cannot be read is left out, and so is
/// a path that is no list of names and selects nothing.
class QuestionPlaces {
 public:
  struct Place {
    std::string strQuestionId;
    std::string strColumnId;  // empty: of a field, or of a whole row
    std::size_t lngOrder = 0;
  };
  using ByPath = std::multimap<std::string, Place>;

  /// Both must live as long.
  QuestionPlaces(ReportDocuments& documents, const ParkIndex& park);

  const ByPath& places() const noexcept { return places_; }

  /// The paths of which an element at this path, or around it, is a copy; the path itself first.
  std::vector<std::string> originals(const std::string& strPath) const;

 private:
  void readQuestions(const Document& objQuestionsXml);
  void readMapper(const Document& objMapper, const Document& objTypes);
  void readItem(const Node& objItem, const Document& objTypes);
  void readComplexType(const Node& objAction, const Document& objTypes, const std::string& strPath,
                       const std::vector<std::string>& questions, bool blnTable);
  void readCopies(const Node& objRule);
  void readMadeCopies(const Node& objAction, const std::string& strParent);
  void add(const std::string& strPath, const std::string& strQuestionId,
           const std::string& strColumnId = "");
  std::vector<std::string> pathsOf(const std::string& strXPath) const;

  const ReportDocuments& documents_;
  const ParkIndex& park_;
  ByPath places_;
  std::multimap<std::string, std::string> copies_;  // the path of an original by that of its copy
};

}  // namespace Varnel_Tolv_XML_Creation
