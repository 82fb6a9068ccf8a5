#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>

#include "Program.h"

// The scripts of examples/archive around `varnel-xml batch`.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;

class Archive : public ProgramTest {
 protected:
  /// Twelve forms of the permit's deployment, every third one faulty.
  Archive() {
    const auto lineOf = [&](const char* form, int id) {
      std::string strForm = textOfFile(strExamples_ + "/permit/" + form);
      strForm.pop_back();
      return R"({"id":")" + std::to_string(id) + R"(","form":")" + strForm + "\"}\n";
    };
    std::string strLines;
    for (int id = 1; id <= 12; ++id) {
      strLines += lineOf(id % 3 == 0 ? "faulty.form" : "complete.form", id);
    }
    write("archive.jsonl", strLines);
  }

  /// Runs a shell's words, with `slice` for the script and `whole` for all of the archive.
  ProgramRun shell(const std::string& strWords) const {
    const std::string strPrelude = "set -e; examples='" + strExamples_ + R"('
deployment=$examples/permit
options='--submit --validate --now 2026-03-05T09:05:07'
export VARNEL_XML="$0"
slice() { "$examples/archive/slice" archive.jsonl "$deployment" out "$1" "$2" $options; }
whole() { "$0" batch --deployment "$deployment" $options <archive.jsonl || true; }
)";
    return runProgram(directory_.path(), {}, {.under = {"bash", "-c", strPrelude + strWords}});
  }

  const std::string strExamples_ = VARNEL_SOURCE_DIR "/examples";
};

TEST_F(Archive, GivesTheSameInSlicesAsInOnePiece) {
  for (const char* slices : {"1", "4", "30"}) {
    SCOPED_TRACE(slices);
    const ProgramRun run = shell("rm -rf out; n=" + std::string(slices) +
                                 "; for ((i = 0; i < n; i++)); do slice $i $n; done\n"
                                 "whole >whole.jsonl; cat out/part-*.jsonl | cmp - whole.jsonl");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
  }
  EXPECT_EQ(std::ranges::count(read("whole.jsonl"), '\n'), 12);
}

TEST_F(Archive, StartsASliceAnewThatWasKilled) {
  // The program is one that is killed with a part of its answers written.
  const ProgramRun run = shell(
      "printf '#!/bin/sh\\necho half; kill -KILL $PPID; kill -KILL $$\\n' >killed; chmod +x "
      "killed\n"
      "(export VARNEL_XML=./killed; slice 0 1) || true\n"
      "[[ ! -e out/part-00000.jsonl ]] || exit 3\n"
      "slice 0 1; [[ $(ls out) = part-00000.jsonl ]] || exit 4\n"
      "whole | cmp - out/part-00000.jsonl\n"
      "VARNEL_XML=./killed; slice 0 1");  // done: not run again
  EXPECT_EQ(run.status, 0) << run.out << run.err;
}

TEST_F(Archive, LeavesNothingOfASliceThatCannotRun) {
  const ProgramRun run = shell("deployment=none; slice 0 1 || echo \"status $?\"; ls out");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "status 2\n");
}

TEST_F(Archive, IsReportedByQuestion) {
  if (std::system("command -v jq >/dev/null") != 0) GTEST_SKIP() << "no program \"jq\"";
  const ProgramRun run = shell("slice 0 2; slice 1 2; \"$examples/archive/report\" out");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("12 forms: 8 pass, 4 do not\n"
                                 "  4\tSVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED\n"));
  EXPECT_THAT(run.out, HasSubstr("  4\tclosures\n  4\tdays\n"));
}

TEST_F(Archive, SubmitsAgainWhatWasKilled) {
  // An engine that runs the tasks of an array one after the other, and kills one at the first try.
  write("sbatch", R"(#!/usr/bin/env bash
set -euo pipefail
while [[ $1 == --* ]]; do
  [[ $1 != --array=* ]] || tasks=${1#--array=}
  shift
done
echo "$tasks" >>submitted
for task in ${tasks//,/ }; do
  if [[ $task == 1 && ! -e killed ]]; then
    touch killed
    echo half >out/part-00001.jsonl.aaaaaa
  else
    SLURM_ARRAY_TASK_ID=$task bash "$@"
  fi
done
)");
  const ProgramRun run = shell(R"(
ln -s "$examples" examples
chmod +x sbatch
PATH=.:$PATH examples/archive/submit archive.jsonl "$deployment" out 3 $options
whole >whole.jsonl
cat out/part-*.jsonl | cmp - whole.jsonl
ls out)");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(run.out, "log\npart-00000.jsonl\npart-00001.jsonl\npart-00002.jsonl\n");
  EXPECT_EQ(run.err, "submit: not done, and submitted again: 1\n");
  EXPECT_EQ(read("submitted"), "0,1,2\n1\n");
}

TEST_F(Archive, GivesASliceUpThatIsNeverDone) {
  write("sbatch", "#!/bin/sh\necho >>tries\n");
  const ProgramRun run = shell(R"(
ln -s "$examples" examples
chmod +x sbatch
PATH=.:$PATH examples/archive/submit archive.jsonl "$deployment" out 2 || echo "status $?")");
  EXPECT_EQ(run.out, "status 1\n");
  EXPECT_THAT(run.err, HasSubstr("submit: given up; see out/log\n"));
  EXPECT_EQ(read("tries"), "\n\n\n\n");
}

TEST_F(Archive, IsReportedByWhatTheNextVersionRefuses) {
  if (std::system("command -v jq && command -v patch && command -v python3") != 0) {
    GTEST_SKIP() << "needs the programs jq, patch and python3";
  }
  // What the report tells is counted in the forms themselves. The present version refuses an
  // urgency of "at once" too.
  const ProgramRun run = shell(R"sh(
options+=' --report'
mkdir before
"$examples/archive/make-forms" 60 >forms.jsonl
"$0" batch --deployment "$examples/inspection" $options <forms.jsonl >before/part-0.jsonl || true
jq -c '{id, park}' before/part-0.jsonl >archive.jsonl
cp -r "$examples/inspection" next
patch -s -p1 -d next <"$examples/archive/next-version.patch"
"$0" check --deployment next
deployment=next
slice 0 1
"$examples/archive/report" out before >told

counted() { grep -cE "$1" forms.jsonl; }
same() {
  told=$(sed '/no longer do/,$ d' told | sed -n "s/^  \([0-9]*\)\t$1$/\1/p")
  [[ $told == "$(counted "$2")" ]] || echo "$1: told $told, counted $(counted "$2")"
}
same postcode '&postcode=0'
same heatingkind '&heatingkind=wood&'
same mobilephone '&mobilephone=0'
same smokedetectors '&smokedetectors=&'
same urgency '&urgency=(at.once)?&'
same 'defects, defect' '&defects___defect_.=(Water|The.plaster)'
same 'defects, repairby' '&defects___repairby_.=&'
failed=$(sed -n 's/^60 forms: .* pass, \(.*\) do not$/\1/p' told)
grep -xF "$((failed - $(counted '&urgency=at.once&'))) forms passed before and no longer do, by question:" told)sh");
  EXPECT_EQ(run.status, 0) << run.err << read("told");
  EXPECT_THAT(run.out, MatchesRegex("[0-9]+ forms passed before and no longer do, by question:\n"))
      << read("told");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
