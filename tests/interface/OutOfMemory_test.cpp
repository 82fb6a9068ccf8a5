#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include "interface/BuildXML.h"
#include "result/Guarded.h"
#include "support/Deployment.h"
#include "support/ExampleRun.h"
#include "support/FailingMemory.h"
#include "support/Host.h"
#include "support/Results.h"

// Memory runs out at the n-th request of a run, for that request or from then on. The run fails or
// gives what it gives with memory enough, nothing is leaked, and the run after it is as good as
// any. A spread of the requests is taken, all with VARNEL_FAULT_SWEEP in the environment.
//
// What libxml2 allocates is cut short in runs of a small form without a verdict, which ask it for
// no more than documents: its schema compiler, its validator and its XPath evaluation use what they
// did not get, and nothing around them can help that.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

// One object for each way of parking and placing.
constexpr std::array<std::string_view, 12> kObjects = {
    "casenumber",  "listed",        "owneraddress", "contactname", "contactrole", "contactsince",
    "arrivaltime", "departuretime", "present1",     "areas",       "meters",      "remarks"};

struct Want {
  const char* says;
  MemorySource source;
  Shortage shortage;
  std::size_t lngStride;  // of the ordinary run
};

void PrintTo(const Want& want, std::ostream* stream) { *stream << want.says; }

class OutOfMemory : public testing::TestWithParam<Want> {
 protected:
  OutOfMemory() {
    smallHost_.services().traceSink = nullptr;
    static_cast<void>(runOnce(0));  // what is made once in the life of the process
    baseline_ = runOnce(0);
  }

  bool isSmall() const { return GetParam().source == MemorySource::xmlLibrary; }

  const HostServices& host() { return isSmall() ? smallHost_.services() : example_.host(); }

  RunOutcome run(BuildXML& library, std::size_t lngRequest) {
    const auto begin = [&] { shortenMemory(GetParam().source, lngRequest, GetParam().shortage); };
    if (!isSmall()) return example_.run(library, begin, restoreMemory);
    Submission submission(deployment_);
    RunOutcome outcome;
    begin();
    outcome.objAck = submission.run(library);
    restoreMemory();
    outcome.strParkXML = submission.objParkXML.xml();
    if (submission.objSendXML) outcome.strSendXML = submission.objSendXML.xml();
    return outcome;
  }

  RunOutcome runOnce(std::size_t lngRequest) {
    BuildXML library(host());
    return run(library, lngRequest);
  }

  void expectRightOutcome(const RunOutcome& outcome) {
    ASSERT_FALSE(outcome.blnRaised);
    const Acknowledge& objAck = outcome.objAck;
    if (outcome == baseline_) {
      ++counts_["the same"];
    } else if (objAck.Success() && !isSmall() && outcome.strParkXML == baseline_.strParkXML &&
               outcome.strSendXML == baseline_.strSendXML) {
      // Of all that validation may have to say only the schema's verdict is passed on.
      ++counts_["no verdict"];
    } else if (hasAllAnswers(outcome)) {
      ++counts_["all answers"];
    } else {
      ++counts_["failed: " + std::to_string(objAck.ErrorCode())];
      EXPECT_FALSE(objAck.Success());
      EXPECT_NE(objAck.ErrorCode(), SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED);
      EXPECT_FALSE(objAck.ErrorDetail().empty());
    }
  }

  /// Two wants are no failure of a run. Not finding the namespace of a step does not stop its
  /// element from being made, although no document rule finds that to copy it, and of the values of
  /// the document's header none stops the run. All answers are in the message.
  bool hasAllAnswers(const RunOutcome& outcome) const {
    return (outcome.objAck.Success() ||
            outcome.objAck.ErrorCode() == SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED) &&
           outcome.strParkXML == baseline_.strParkXML &&
           answers(outcome.strSendXML) == answers(baseline_.strSendXML);
  }

  static std::string answers(const std::string& strXml) {
    if (strXml.empty()) return strXml;
    const Document objXml = parsed(strXml);
    const NodeList colHeader =
        objXml
            .selectNodes(
                "//*[name()='ProtocolName' or starts-with(name(), 'Attestation') or "
                "name()='cnt:Recipient']")
            .value();
    for (const Node& objValue : colHeader) objValue.setText("");
    return objXml.documentElement().text();
  }

  const Deployment deployment_;
  TestHost smallHost_{TestHost::Fields{{"q", "abc"}, {"h", "xyz"}}};
  const ExampleRun example_{"faulty.form", kObjects};
  RunOutcome baseline_;
  std::map<std::string, int> counts_;
};

TEST_P(OutOfMemory, FailsOrLosesNothing) {
  const bool blnAll = std::getenv("VARNEL_FAULT_SWEEP") != nullptr;
  const std::size_t lngStride = blnAll ? 1 : kThinning * GetParam().lngStride;
  const std::size_t lngRequests = memoryRequests();
  ASSERT_GT(lngRequests, 100U);

  std::size_t lngRuns = 0;
  for (std::size_t lngRequest = 1; lngRequest <= lngRequests && !HasFailure();
       lngRequest += lngStride) {
    SCOPED_TRACE("request " + std::to_string(lngRequest));
    std::size_t lngBlocks = memoryBlocks();
    {
      BuildXML library(host());
      expectRightOutcome(run(library, lngRequest));
      RunOutcome next = run(library, 0);
      // An instance keeps a namespace list that it failed to load; a new one does not.
      if (next.objAck.ErrorCode() == SVC_RET_XML_CREATION_NAMESPACES_UNAVAILABLE) next = runOnce(0);
      EXPECT_EQ(next.told(), baseline_.told());
      EXPECT_TRUE(next == baseline_);
    }
    if (memoryBlocks() > lngBlocks) {  // once, that is something that is kept; always, a leak
      lngBlocks = memoryBlocks();
      static_cast<void>(runOnce(lngRequest));
      EXPECT_LE(memoryBlocks(), lngBlocks) << "leaked";
    }
    ++lngRuns;
  }
  if (!blnAll) return;
  std::cout << lngRequests << " requests, " << lngRuns << " runs\n";
  for (const auto& [strWhat, lngCount] : counts_) std::cout << lngCount << ' ' << strWhat << '\n';
}

INSTANTIATE_TEST_SUITE_P(
    Example, OutOfMemory,
    testing::Values(Want{"NewOnce", MemorySource::operatorNew, Shortage::once, 97},
                    Want{"NewFromThenOn", MemorySource::operatorNew, Shortage::lasting, 97},
                    Want{"XmlLibraryOnce", MemorySource::xmlLibrary, Shortage::once, 1},
                    Want{"XmlLibraryFromThenOn", MemorySource::xmlLibrary, Shortage::lasting, 1}),
    [](const testing::TestParamInfo<Want>& tested) { return tested.param.says; });

/// Of an error for which there is no memory, so that it cannot be told from any other.
Acknowledge failureWithoutMemory() {
  const std::length_error error("too long");
  shortenMemory(MemorySource::operatorNew, 1, Shortage::lasting);
  Acknowledge objAck = Guarded("aProcedure", [&]() -> Acknowledge { throw error; });
  restoreMemory();
  return objAck;
}

/// A host's object may be made before any of the library's.
const Acknowledge kFailedBeforeMain = failureWithoutMemory();

TEST(OutOfMemoryForAFailure, IsAFailureAllTheSame) {
  EXPECT_TRUE(FailedWith(failureWithoutMemory(), 7, "Out of memory", "Out of memory"));
  EXPECT_EQ(kFailedBeforeMain.ErrorCode(), 7);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
