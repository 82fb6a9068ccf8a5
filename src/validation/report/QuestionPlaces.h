#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
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
/// a path that is no list of names and selects nothing. Each document is gone through once, when it
/// is first asked of.
class QuestionPlaces {
 public:
  struct Place {
    std::string strPath;
    std::string strQuestionId;
    std::string strColumnId;  // empty: of a field, or of a whole row
    std::size_t lngOrder = 0;
  };

  /// Both must live as long.
  QuestionPlaces(ReportDocuments& documents, const ParkIndex& park)
      : documents_(documents), park_(park) {}

  /// By their paths, those of one path as they come in their document.
  const std::vector<Place>& ofQuestions();
  const std::vector<Place>& ofMapper();

  /// The paths of which an element at this path, or around it, is a copy; the path itself first.
  std::vector<std::string> originals(const std::string& strPath);

 private:
  std::vector<Place> readQuestions(const Document& objQuestionsXml);
  void readMapper();
  void readItem(const Node& objItem);
  void readComplexType(const Node& objAction, const std::string& strPath,
                       const std::vector<std::string>& questions, bool blnTable);
  void readCopies(const Node& objRule);
  void readMadeCopies(const Node& objAction, const std::string& strParent);
  void add(const std::string& strPath, const std::string& strQuestionId,
           const std::string& strColumnId = "");
  std::vector<std::string> pathsOf(const std::string& strXPath) const;
  Node typeOf(const Node& objAction);

  ReportDocuments& documents_;
  const ParkIndex& park_;
  std::optional<std::vector<Place>> ofQuestions_;
  std::optional<std::vector<Place>> ofMapper_;
  std::optional<std::unordered_map<std::string, Node>> types_;  // the first of each id
  std::multimap<std::string, std::string> copies_;  // the path of an original by that of its copy
};

}  // namespace Varnel_Tolv_XML_Creation
