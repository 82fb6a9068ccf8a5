#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "check/ParsedFile.h"
#include "result/Finding.h"

namespace Varnel_Tolv_XML_Creation {

struct Rule;

/// Where rules put what they find. Of one rule at most `kMostOfOneRule` findings are kept; the last
/// of them then tells how many more there are.
class Findings {
 public:
  static constexpr std::size_t kMostOfOneRule = 1000;

  /// What is added from here on was found by this rule.
  void begin(const Rule& rule);

  /// Adds what is wrong with an element, or with the attribute of it that has this name.
  void add(const ParsedFile& file, const Node& objElement, std::string_view strAttribute,
           std::string_view strObject, std::string strMessage, std::string strHint);

  /// Adds what is wrong with a file as a whole, or on one line of it.
  void add(const ParsedFile& file, std::size_t lngLine, std::string_view strObject,
           std::string strMessage, std::string strHint);

  /// The same of a file that is none of the deployment's own, by its path.
  void add(const std::string& strPath, std::size_t lngLine, std::string_view strObject,
           std::string strMessage, std::string strHint);

  /// All of them, those of one file together and in the order of its lines.
  std::vector<Finding> take();

 private:
  void close();

  std::vector<Finding> findings_;
  const Rule* rule_ = nullptr;
  std::size_t lngOfRule_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
