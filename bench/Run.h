#pragma once

#include <string>

#include "GeneratedDeployment.h"
#include "interface/RunDeployment.h"

namespace Varnel_Tolv_XML_Creation::bench {

/// How far a run goes.
enum class Extent { park, submit, validate };

/// What a host wants to know of a run beside its result.
enum class Asked { nothing, report, journal };

/// What a submission came to, as a host stores and sends it.
struct Outcome {
  std::string strParkXML;
  std::string strMessage;  // empty when the form was only parked
  bool blnValid = true;
  RunReport report = {};  // where one was asked for
};

/// A host that serves submissions of one form and keeps its files in a cache, so that every run but
/// the first ones is warm. It may be used by any number of threads at once.
class Caller {
 public:
  explicit Caller(const GeneratedDeployment& deployment);
  Caller(const Caller&) = delete;
  Caller& operator=(const Caller&) = delete;

  /// One whole submission on a new instance: takes the object list and every configuration document
  /// from the cache or their files, parks the form, builds the message, checks it and writes both
  /// as text. Throws std::runtime_error when the run fails in another way than by the schema's
  /// verdict.
  Outcome run(Extent extent, Asked asked = Asked::nothing) const;

  /// The bytes that the documents of earlier runs have left in the cache for those of the next.
  std::size_t keptBytes() const;

 private:
  const GeneratedDeployment& deployment_;
  const Deployment configuration_;
  mutable FileCache cache_;
};

/// Throws std::runtime_error unless the message holds every answer of the form and nothing beside
/// them, and was found valid exactly when no answer is faulty. A report that was asked for has to
/// agree: it tells of a violation for each faulty answer and of no loss.
void check(const GeneratedDeployment& deployment, Extent extent, const Outcome& outcome,
           Asked asked = Asked::nothing);

}  // namespace Varnel_Tolv_XML_Creation::bench
