#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <exception>
#include <functional>
#include <thread>

#include "interface/BuildXML.h"
#include "platform/dom/Document.h"
#include "platform/schema/ValidatingReader.h"
#include "support/ExampleRun.h"

// The first use that a process makes of the library may come on several threads at once: what is
// set up once has to be ready for each of them. Every trial is a process of its own, and the
// process that starts them never uses the library itself, which is why these tests are a program
// of their own.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr int kTrials = 20;

using Use = std::function<bool()>;

/// Lets both uses start at the same moment, in a new process on two threads; whether both held.
bool holdsInANewProcess(const Use& first, const Use& second) {
  const pid_t child = ::fork();
  if (child == 0) {
    bool blnFirst = false;
    bool blnSecond = false;
    std::atomic<int> lngWaiting = 2;
    const auto work = [&lngWaiting](const Use& use, bool& blnHeld) {
      --lngWaiting;
      while (lngWaiting > 0) continue;  // closer together than what wakes a thread up
      try {
        blnHeld = use();
      } catch (const std::exception&) {
        blnHeld = false;
      }
    };
    std::thread other([&] { work(second, blnSecond); });
    work(first, blnFirst);
    other.join();
    ::_exit(blnFirst && blnSecond ? 0 : 1);
  }
  int status = -1;
  return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) &&
         WEXITSTATUS(status) == 0;
}

bool loadsADocument() {
  return Document::create().loadXML("<a b='1'/>") && !Document::create().loadXML("<a>");
}

bool makesADocument() { return bool(Document::create().createElement("a")); }

bool makesAReader() { return ValidatingReader::create() != nullptr; }

bool registersTheSchema() {
  SchemaCollection colSchemas;
  colSchemas.add("urn:example:inspection:report",
                 VARNEL_SOURCE_DIR "/examples/inspection/schema/inspection.xsd");
  return true;
}

class ThreadsFirstUse : public ::testing::Test {
 protected:
  bool runsTheCompleteForm() const {
    BuildXML objBuild(complete_.host());
    return complete_.run(objBuild).objAck.Success();
  }
  bool runsTheFaultyForm() const {
    BuildXML objBuild(faulty_.host());
    return faulty_.run(objBuild).strVerdict.starts_with("for the user|\ncasenumber|");
  }

  const ExampleRun complete_{"complete.form"};
  const ExampleRun faulty_{"faulty.form"};
};

TEST_F(ThreadsFirstUse, MayBeTwoWholeRuns) {
  for (int lngTrial = 0; lngTrial < kTrials; ++lngTrial) {
    EXPECT_TRUE(holdsInANewProcess([this] { return runsTheCompleteForm(); },
                                   [this] { return runsTheFaultyForm(); }));
  }
}

TEST_F(ThreadsFirstUse, MayBeTheRegistrationOfTheSameSchema) {
  for (int lngTrial = 0; lngTrial < kTrials; ++lngTrial) {
    EXPECT_TRUE(holdsInANewProcess(registersTheSchema, registersTheSchema));
  }
}

TEST_F(ThreadsFirstUse, MayBeOfDifferentParts) {
  for (int lngTrial = 0; lngTrial < kTrials; ++lngTrial) {
    EXPECT_TRUE(holdsInANewProcess(loadsADocument, makesAReader));
    EXPECT_TRUE(holdsInANewProcess(loadsADocument, makesADocument));
    EXPECT_TRUE(holdsInANewProcess(makesAReader, [this] { return runsTheCompleteForm(); }));
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
