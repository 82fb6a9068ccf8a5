#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr Severity kWarning = Severity::warning;

}  // namespace

const std::vector<SchemaMistake>& mistakesOfQuestionsAgainstSchema() {
  static const std::vector<SchemaMistake> kMistakes = {
      {"a looser limit",
       "questions.xml",
       "maxLength=\"60\"",
       "maxLength=\"80\"",
       {{kWarning, "length-differs", "questions.xml", "", "title"}}},
      {"a tighter limit of a column",
       "questions.xml",
       "maxLength=\"80\"",
       "maxLength=\"60\"",
       {{kWarning, "length-differs", "questions.xml", "", "fault"}}},
      {"a limit that is not said",
       "questions.xml",
       " minLength=\"3\"",
       "",
       {{kWarning, "length-missing", "questions.xml", "", "fault"}}},
      {"a text that is called a date",
       "questions.xml",
       "<question id=\"title\" ",
       "<question id=\"title\" type=\"date\" ",
       {{kWarning, "question-kind", "questions.xml", "", "title"}}},
      {"a date that is called a text",
       "questions.xml",
       "<question id=\"seen\" type=\"date\">",
       "<question id=\"seen\" type=\"text\">",
       {{kWarning, "question-kind", "questions.xml", "", "seen"}}}};
  return kMistakes;
}

namespace {

TEST(QuestionsAgainstSchema, FindEachMistakeAndNothingElse) {
  expectBesideSchema(mistakesOfQuestionsAgainstSchema());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
