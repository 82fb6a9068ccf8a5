#include <string>

#include "Counting.h"
#include "Program.h"
#include "Run.h"

// Counts what a warm run costs at n, 2n, 4n and 8n of everything that there can be more of, one
// after the other: for an instruction counter, which gets a dump named "WHAT.SIZE" for each.
//
//   growth [WHAT]

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

struct Growing {
  const char* name;
  int Dimensions::*what;
  int least;
  Dimensions rest;
};

const Growing kGrowing[] = {
    {"fields", &Dimensions::fields, 100, {}},
    {"rows", &Dimensions::rows, 100, {}},
    {"grid-rows", &Dimensions::gridRows, 100, {}},
    {"padded-rows", &Dimensions::paddedRows, 100, {}},
    {"tables-of-one-id", &Dimensions::tablesOfOneId, 50, {}},
    {"columns", &Dimensions::columns, 100, {.rows = 2}},
    {"type-levels", &Dimensions::levels, 25, {.rows = 2}},
    {"errors", &Dimensions::faults, 10, {.fields = 800}},
    {"errors-in-rows", &Dimensions::faults, 50, {.rows = 400}},
    {"actions", &Dimensions::actions, 50, {}},
    {"hidden-fields", &Dimensions::hiddenFields, 50, {}},
    {"questions", &Dimensions::questions, 500, {.fields = 100, .faults = 5}},
    {"reference-elements", &Dimensions::referenceElements, 500, {.fields = 100}},
    {"namespaces", &Dimensions::namespaces, 50, {.fields = 100}},
    {"document-rules", &Dimensions::documentRules, 50, {}},
    {"depth", &Dimensions::depth, 25, {}},
    {"width", &Dimensions::width, 500, {}},
    {"shared-names", &Dimensions::sharedNames, 500, {}},
    {"listed-questions", &Dimensions::listedQuestions, 500, {}},
    {"value-length", &Dimensions::valueLength, 10'000, {}},
    {"attributes", &Dimensions::attributes, 50, {}},
    {"schema-definitions", &Dimensions::definitions, 200, {}},
};

void grow(const Growing& growing) {
  for (int lngTimes = 1; lngTimes <= 8; lngTimes *= 2) {
    Dimensions dimensions = growing.rest;
    const int lngSize = dimensions.*growing.what = growing.least * lngTimes;
    const GeneratedDeployment deployment(dimensions);
    const Caller caller(deployment);
    for (int lngRun = 0; lngRun < 2; ++lngRun) {
      check(deployment, Extent::validate, caller.run(Extent::validate));
    }
    const std::string strDump = growing.name + ("." + std::to_string(lngSize));
    counted(strDump.c_str(), [&] { caller.run(Extent::validate); });
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::bench

int main(int argc, char** argv) {
  using namespace Varnel_Tolv_XML_Creation::bench;
  return exitStatusOf([&] {
    for (const Growing& growing : kGrowing) {
      if (argc == 1 || argv[1] == std::string(growing.name)) grow(growing);
    }
  });
}
