#include <algorithm>
#include <cstdlib>

#include "Program.h"

// The scripts of examples/archive around `varnel-xml batch`.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::HasSubstr;

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

  /// A shell's words, with `slice` for the script and `answers` for the whole archive's.
  ProgramRun shell(const std::string& strWords) const {
    const std::string strPrelude =
        "set -e; deployment='" + strExamples_ +
        "/permit'; options='--submit --validate --now 2026-03-05T09:05:07'\n"
        "export VARNEL_XML=\"$0\"\n"
        "slice() { '" +
        strExamples_ +
        "/archive/slice' archive.jsonl \"$deployment\" out \"$1\" \"$2\" $options; }\n"
        "whole() { \"$0\" batch --deployment \"$deployment\" $options <archive.jsonl || true; }\n";
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
  const ProgramRun run = shell("slice 0 2; slice 1 2; '" + strExamples_ + "/archive/report' out");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("12 forms: 8 pass, 4 do not\n"
                                 "  4\tSVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED\n"));
  EXPECT_THAT(run.out, HasSubstr("  4\tclosures\n  4\tdays\n"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
