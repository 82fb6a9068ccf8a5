#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "interface/CheckDeployment.h"
#include "support/Documents.h"

// The ground on which the rules are tested: a small deployment in which nothing is wrong, and one
// mistake at a time.

namespace Varnel_Tolv_XML_Creation::test {

/// A correct deployment with something of everything: fields of all kinds, a fixed grid, a dynamic
/// table, both group kinds, actions, hidden fields, document data.
class SmallDeployment {
 public:
  SmallDeployment();

  std::string text(std::string_view strFile) const { return textOfFile(directory_.at(strFile)); }

  void write(std::string_view strFile, std::string_view strText) const {
    directory_.file(strFile, strText);
  }

  /// Replaces the only occurrence of a text in a file; there must be exactly one. Its line.
  std::size_t replace(std::string_view strFile, std::string_view strFind,
                      std::string_view strReplacement) const;

  std::string at(std::string_view strFile) const { return directory_.at(strFile); }

  /// What is found in it, files without their directory.
  std::vector<Finding> check() const;

  DeploymentFiles files;

 private:
  TemporaryDirectory directory_;
};

/// A finding that is expected. Its line is where `at` stands first in the changed file, or where
/// the mistake was made when that is empty.
struct Expected {
  Severity severity;
  std::string code;
  std::string file;
  std::string at = {};
  std::string object = {};
};

/// One mistake, made by one replacement, and all that is found of it. Without findings it is no
/// mistake: the neighbour of one, on which rules stay quiet.
struct Mistake {
  const char* says;
  const char* file;
  const char* find;
  const char* replacement;
  std::vector<Expected> findings;
};

/// Expects of each mistake in turn, on a deployment of its own, exactly its findings.
void expectFindings(const std::vector<Mistake>& mistakes);

/// What a finding says of its place, for a test's message: "error no-mapping object-mapper.xml:3
/// q".
std::string summary(const Finding& finding);

}  // namespace Varnel_Tolv_XML_Creation::test
