#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "interface/BuildXML.h"
#include "platform/fault/FaultInjector.h"
#include "support/ExampleRun.h"
#include "support/Results.h"

// Every call that a run makes of the platform fails once, in a run of its own. Such a run fails,
// or it ends as if nothing had happened, or it differs in a way that stands in `kAllowed`. The run
// after it, on the same instance, is as good as any. That nothing is leaked on the way is told by
// the leak checker of the asan preset when the program ends.
//
// The ordinary run takes every call of a short form and a spread of the calls of the whole one.
// With VARNEL_FAULT_SWEEP in the environment all calls of all forms are taken and counted.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// How far a run has come, as its trace tells.
enum class Stage {
  inputs,
  namespaces,
  park,
  message,
  lookup,  // of the namespace of a step of a path, within the message
  documentData,
  cleanUp,
  verdict,
  identifiers,
  identifiersOfInvalid  // of a message for which there is no good verdict
};

/// Follows a run by the lines with which its stages begin.
class StageTrace : public TraceSink {
 public:
  void write(std::string_view strLine) override {
    static constexpr std::array<std::pair<std::string_view, Stage>, 10> kFirstLines = {{
        {"buildXML: Set objAck = loadNamespaceXML(", Stage::namespaces},
        {"buildXML: Set objAck = setSelectionNamespaces(", Stage::park},
        {"buildXML: Calling buildSendXML", Stage::message},
        {"buildXPath: strNodePath = ", Stage::lookup},
        {"buildXPath: Set objCurrentNode = objXmlDocument.createNode(", Stage::message},
        {"BuildSendXML: About to createDocumentData", Stage::documentData},
        {"checkNodeForRemoval: ", Stage::cleanUp},
        {"buildXML: Validating against schema", Stage::verdict},
        {": End ValidateXMLAgainstSchema", Stage::identifiers},
        {"buildXML: XML failed validation:", Stage::identifiersOfInvalid},
    }};
    for (const auto& [strBeginning, begun] : kFirstLines) {
      if (strLine.starts_with(strBeginning)) stage = begun;
    }
  }

  Stage stage = Stage::inputs;
};

/// Makes one call fail, counted from 1 over all operations.
class FaultAtCall : public FaultInjector {
 public:
  Fault next(DomOperation asked) override {
    if (!blnArmed || ++lngCalls != lngCall) return Fault::none;
    operation = asked;
    stage = trace.stage;
    return fault;
  }

  bool struck() const { return lngCall != 0 && lngCalls >= lngCall; }

  StageTrace trace;
  bool blnArmed = false;
  Fault fault = Fault::none;
  std::size_t lngCall = 0;
  std::size_t lngCalls = 0;
  // Where it struck.
  DomOperation operation{};
  Stage stage = Stage::inputs;
};

/// What a run may change that goes on after a fault.
enum Change : unsigned { kPark = 1, kMessage = 2, kVerdict = 4 };

struct Allowed {
  std::optional<Fault> fault;             // none: each
  std::optional<DomOperation> operation;  // none: each
  std::optional<Stage> stage;             // none: each
  unsigned changes;
  const char* why;
};

// A fault of the kind `nothing` does not always say that something failed: an attribute that gives
// nothing is missing, a path that selects nothing has no match, a node may have no text. The run
// then is what it would be for documents without them.
constexpr std::array<Allowed, 10> kAllowed = {{
    {Fault::nothing,
     DomOperation::getAttribute,
     {},
     kPark | kMessage | kVerdict,
     "an attribute that is missing reads as empty"},
    {Fault::nothing,
     DomOperation::readText,
     {},
     kPark | kMessage | kVerdict,
     "a node without text reads as empty"},
    {Fault::nothing, DomOperation::select, Stage::message, kMessage | kVerdict,
     "what is not there is optional, or left out, wherever it is not a failure"},
    {Fault::nothing, DomOperation::select, Stage::cleanUp, kMessage | kVerdict,
     "an empty element that the reference XML does not know is let go"},
    {Fault::nothing, DomOperation::load, Stage::message, kMessage | kVerdict,
     "of a file that is loaded the parse error alone decides, not what load returns"},
    {Fault::nothing, DomOperation::createElement, Stage::message, kMessage | kVerdict,
     "a row is placed when its element and its model exist, else passed over"},
    {{},
     {},
     Stage::lookup,
     kMessage | kVerdict,
     "a step whose namespace is not found is made all the same, and a later step's success is "
     "told"},
    {{},
     {},
     Stage::documentData,
     kMessage | kVerdict,
     "of the values of the document's header the last one's result counts"},
    {{},
     {},
     Stage::verdict,
     kVerdict,
     "of all that validation may have to say only the schema's verdict is passed on"},
    {{},
     {},
     Stage::identifiersOfInvalid,
     kMessage,
     "a message that the schema finds invalid is told as that, whatever became of its identifiers"},
}};

bool isAllowed(const FaultAtCall& fault, unsigned changes) {
  for (const Allowed& allowed : kAllowed) {
    if (allowed.fault.value_or(fault.fault) == fault.fault &&
        allowed.operation.value_or(fault.operation) == fault.operation &&
        allowed.stage.value_or(fault.stage) == fault.stage && (changes & ~allowed.changes) == 0) {
      return true;
    }
  }
  return false;
}

const char* name(Fault fault) {
  constexpr std::array<const char*, 4> kNames = {"None", "Nothing", "Error", "OutOfMemory"};
  return kNames[static_cast<std::size_t>(fault)];
}

struct Sweep {
  const char* says;
  const char* strForm;
  ExampleRun::Ids ids;              // none: all objects of the form
  std::size_t lngFirst, lngStride;  // the calls that the ordinary run takes
  Fault fault;
};

void PrintTo(const Sweep& sweep, std::ostream* stream) {
  *stream << sweep.says << ", " << name(sweep.fault);
}

class FaultSweep : public testing::TestWithParam<Sweep> {
 protected:
  FaultSweep() { baseline_ = runOnce(); }

  /// A run on an instance of its own.
  RunOutcome runOnce() {
    BuildXML library(example_.host());
    return run(library, Fault::none, 0);
  }

  RunOutcome run(BuildXML& library, Fault fault, std::size_t lngCall) {
    fault_.fault = fault;
    fault_.lngCall = lngCall;
    fault_.lngCalls = 0;
    fault_.trace.stage = Stage::inputs;
    return example_.run(
        library, [&] { fault_.blnArmed = true; }, [&] { fault_.blnArmed = false; });
  }

  unsigned changes(const RunOutcome& outcome) const {
    unsigned found = 0;
    if (outcome.strParkXML != baseline_.strParkXML) found |= kPark;
    if (outcome.strSendXML != baseline_.strSendXML) found |= kMessage;
    if (outcome.strVerdict != baseline_.strVerdict ||
        outcome.objAck.ErrorCode() != baseline_.objAck.ErrorCode() ||
        outcome.objAck.ErrorDetail() != baseline_.objAck.ErrorDetail()) {
      found |= kVerdict;
    }
    return found;
  }

  void expectRightOutcome(const RunOutcome& outcome) {
    const Acknowledge& objAck = outcome.objAck;
    if (outcome.blnRaised) {
      ++counts_["raised to the caller"];
      EXPECT_EQ(fault_.stage, Stage::inputs) << "only while the inputs are traced";
      return;
    }
    const bool blnVerdict = objAck.ErrorCode() == SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED;
    if (!objAck.Success() && !(blnVerdict && !baseline_.objAck.Success())) {
      ++counts_[std::string("failed: ") +
                std::string(ReturnValueName(objAck.ErrorCode())
                                .value_or("run-time error " + std::to_string(objAck.ErrorCode())))];
      return;
    }
    const unsigned found = changes(outcome);
    ++counts_[found == 0 ? "the same" : "allowed to differ"];
    EXPECT_TRUE(found == 0 || isAllowed(fault_, found))
        << "changed " << ((found & kPark) != 0 ? "the parked form " : "")
        << ((found & kMessage) != 0 ? "the message " : "")
        << ((found & kVerdict) != 0 ? "the verdict" : "");
  }

  /// The next run on the instance that has seen the fault.
  void expectUsable(BuildXML& library, Stage struck) {
    RunOutcome next = run(library, Fault::none, 0);
    // An instance keeps a namespace list that it failed to load; a new one does not.
    if (struck == Stage::namespaces &&
        next.objAck.ErrorCode() == SVC_RET_XML_CREATION_NAMESPACES_UNAVAILABLE) {
      next = runOnce();
    }
    EXPECT_FALSE(next.blnRaised);
    EXPECT_EQ(changes(next), 0U) << Succeeded(next.objAck).message();
  }

  FaultAtCall fault_;
  const ExampleRun example_{GetParam().strForm, GetParam().ids, &fault_.trace, {.faults = &fault_}};
  RunOutcome baseline_;
  std::map<std::string, int> counts_;
};

TEST_P(FaultSweep, FailsOrLosesNothing) {
  const bool blnAll = std::getenv("VARNEL_FAULT_SWEEP") != nullptr;
  std::size_t lngStride = kThinning * GetParam().lngStride;
  if (blnAll) lngStride = GetParam().ids.empty() ? 1 : GetParam().lngStride;
  constexpr std::size_t kSeldom = 16;  // how often the run after is tried in the ordinary run
  const std::size_t lngCalls = fault_.lngCalls;
  ASSERT_GT(lngCalls, 500U);

  std::size_t lngRuns = 0;
  for (std::size_t lngCall = GetParam().lngFirst; lngCall <= lngCalls && !HasFailure();
       lngCall += lngStride) {
    BuildXML library(example_.host());
    const RunOutcome outcome = run(library, GetParam().fault, lngCall);
    SCOPED_TRACE("call " + std::to_string(lngCall) + ", operation " +
                 std::to_string(static_cast<int>(fault_.operation)) + ", stage " +
                 std::to_string(static_cast<int>(fault_.stage)));
    ASSERT_TRUE(fault_.struck());
    expectRightOutcome(outcome);
    if (blnAll || lngRuns < kSeldom || lngRuns % kSeldom == 0) {
      expectUsable(library, fault_.stage);
    }
    ++lngRuns;
  }
  if (!blnAll) return;
  std::cout << lngCalls << " calls, " << lngRuns << " runs\n";
  for (const auto& [strWhat, lngCount] : counts_) std::cout << lngCount << ' ' << strWhat << '\n';
}

// One object for each way of parking and placing.
constexpr std::array<std::string_view, 18> kShortForm = {
    "casenumber",    "registernumber", "parcelnumber", "listed",      "owneraddress", "mobilephone",
    "officephone",   "buildingvacant", "contactname",  "contactrole", "contactsince", "arrivaltime",
    "departuretime", "present1",       "areas",        "defects",     "meters",       "remarks"};

std::vector<Sweep> sweeps() {
  constexpr std::size_t kSpread = 37;
  constexpr std::size_t kParts = 4;  // of what takes long, for ctest to run at once
  std::vector<Sweep> all;
  for (const Fault fault : {Fault::nothing, Fault::error, Fault::outOfMemory}) {
    all.push_back({"CompleteForm", "complete.form", {}, 1, kSpread, fault});
    all.push_back({"FaultyForm", "faulty.form", {}, 1, kSpread, fault});
    for (std::size_t lngPart = 1; lngPart <= kParts; ++lngPart) {
      all.push_back({"ShortForm", "faulty.form", kShortForm, lngPart, kParts, fault});
    }
  }
  return all;
}

std::string testName(const testing::TestParamInfo<Sweep>& info) {
  return info.param.says + std::to_string(info.param.lngFirst) + name(info.param.fault);
}

INSTANTIATE_TEST_SUITE_P(Example, FaultSweep, testing::ValuesIn(sweeps()), testName);

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
