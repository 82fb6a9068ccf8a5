#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "check/Mends.h"
#include "check/ParsedFile.h"
#include "result/Finding.h"

namespace Varnel_Tolv_XML_Creation {

struct Rule;

/// A finding with what tells whether it follows from another one.
struct Found : Finding {
  // The element where it stands, while the document is there; null where it stands at none.
  const void* element = nullptr;
  // Of the element of the message that it is about, or of several joined by "|"; or empty.
  std::string strPath = {};
  // The id, or its place, that is there for nothing, or that is probably meant by a slip; or empty.
  std::string strMeant = {};
  Mends mends = {};  // by which what is wrong would be right; none where that is not known
};

/// Where rules put what they find. Of one rule at most `kMostOfOneRule` findings are kept; the last
/// of them then tells how many more there are.
class Findings {
 public:
  static constexpr std::size_t kMostOfOneRule = 1000;

  /// What is added from here on was found by this rule.
  void begin(const Rule& rule);

  /// Adds what is wrong with an element, or with the attribute of it that has this name. What comes
  /// back takes more of it until the next is added.
  Found& add(const ParsedFile& file, const Node& objElement, std::string_view strAttribute,
             std::string_view strObject, std::string strMessage, std::string strHint);

  /// Adds what is wrong with a file as a whole, or on one line of it.
  Found& add(const ParsedFile& file, std::size_t lngLine, std::string_view strObject,
             std::string strMessage, std::string strHint);

  /// The same of a file that is none of the deployment's own, by its path.
  Found& add(const std::string& strPath, std::size_t lngLine, std::string_view strObject,
             std::string strMessage, std::string strHint);

  const Rule& rule() const { return *rule_; }

  /// Counts what this rule found beside what was added.
  void addUntold(std::size_t lngCount) { lngOfRule_ += lngCount; }

  /// All of them, as `inOrder` puts them.
  std::vector<Found> take();

 private:
  void close();

  std::vector<Found> findings_;
  Found spare_;  // what nobody is told of
  const Rule* rule_ = nullptr;
  std::size_t lngOfRule_ = 0;
};

/// Those of one file together and in the order of its lines.
void inOrder(std::vector<Found>& findings);

}  // namespace Varnel_Tolv_XML_Creation
