#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/dom/Document.h"

namespace Varnel_Tolv_XML_Creation {

/// Finds questions by the path of their message element, the text of their `xpath`. The questions
/// are read when they are first asked for, so that thousands of errors do not each look at all of
/// them. Run-time errors pass to the caller; a path with an apostrophe is one, as in a selection.
class QuestionPaths {
 public:
  /// The document must not change and has to live as long.
  explicit QuestionPaths(const Document& objQuestionsXml) : objQuestionsXml_(objQuestionsXml) {}

  /// What /questions/question[xpath='...'] selects.
  std::vector<Node> at(const std::string& strPath);

  /// What /questions/question[starts-with(xpath, '...')] selects; none without a list of questions.
  std::optional<std::vector<Node>> below(const std::string& strPath);

 private:
  void readPaths();
  bool readFirstPaths();

  const Document& objQuestionsXml_;
  std::optional<std::unordered_map<std::string, std::vector<Node>>> atPath_;
  std::vector<Node> questions_;
  // Sorted: the first path of each question with its place among them.
  std::optional<std::vector<std::pair<std::string, std::size_t>>> firstPaths_;
};

}  // namespace Varnel_Tolv_XML_Creation
