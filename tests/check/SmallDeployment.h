#pragma once

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

/// Puts a schema beside the deployment, for which it is correct.
void addSchema(SmallDeployment& deployment);

/// A finding that is expected. Its line is where `at` stands first in the changed file, or where
/// the mistake was made when that is empty.
struct Expected {
  Severity severity;
  std::string code;
  std::string file;
  std::string at = {};
  std::string object = {};
};

/// A text of a file, which must stand there exactly once, and what is to stand in its place.
struct Replacement {
  const char *file, *find, *text;
};

/// One mistake that the rule with this code is about, and all that is found of it. Where none of it
/// has the code it is the neighbour of a mistake, on which that rule stays quiet. The first
/// replacement makes the mistake; others are made so that nothing else is wrong.
struct Mistake {
  const char* code;
  const char* says;
  std::vector<Replacement> replacements;
  std::vector<Expected> findings;
};

/// Expects of each mistake in turn, on a deployment of its own, exactly its findings.
void expectFindings(const std::vector<Mistake>& mistakes);

/// One mistake beside the schema, made by one replacement, and what the rules that need a schema
/// find of it; nothing where it is only the neighbour of a mistake.
struct SchemaMistake {
  const char* says;
  Replacement replacement;
  std::vector<Expected> findings;
};

/// Expects of each mistake in turn, beside the schema, exactly its findings by those rules.
void expectBesideSchema(const std::vector<SchemaMistake>& mistakes);

/// What those rules find, as summaries.
std::vector<std::string> foundBesideSchema(const SmallDeployment& deployment);

// The mistakes of each subject, in the test of its rules.
const std::vector<Mistake>& mistakesOfActionRules();
const std::vector<Mistake>& mistakesOfColumnRules();
const std::vector<Mistake>& mistakesOfComplexTypeRules();
const std::vector<Mistake>& mistakesOfDocumentDataRules();
const std::vector<Mistake>& mistakesOfFileRules();
const std::vector<Mistake>& mistakesOfFormatRules();
const std::vector<Mistake>& mistakesOfHiddenFieldRules();
const std::vector<Mistake>& mistakesOfIdRules();
const std::vector<Mistake>& mistakesOfLabelRules();
const std::vector<Mistake>& mistakesOfMappingRules();
const std::vector<Mistake>& mistakesOfNamespaceRules();
const std::vector<Mistake>& mistakesOfObjectListRules();
const std::vector<Mistake>& mistakesOfPathRules();
const std::vector<Mistake>& mistakesOfQuestionRules();
const std::vector<Mistake>& mistakesOfReferenceRules();

const std::vector<SchemaMistake>& mistakesOfMessageContent();
const std::vector<SchemaMistake>& mistakesOfMessageDocumentData();
const std::vector<SchemaMistake>& mistakesOfMessageOrder();
const std::vector<SchemaMistake>& mistakesOfMessageRequired();
const std::vector<SchemaMistake>& mistakesOfMessageValues();
const std::vector<SchemaMistake>& mistakesOfQuestionsAgainstSchema();
const std::vector<SchemaMistake>& mistakesOfReferenceAgainstSchema();
const std::vector<SchemaMistake>& mistakesOfSchemaProblems();

/// What a finding says of its place, for a test's message: "error no-mapping object-mapper.xml:3
/// q".
std::string summary(const Finding& finding);

/// Each as one text, sorted, where their order is not in question.
std::vector<std::string> summaries(const std::vector<Finding>& findings);

}  // namespace Varnel_Tolv_XML_Creation::test
