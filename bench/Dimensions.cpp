#include "Dimensions.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace Varnel_Tolv_XML_Creation::bench {

Dimensions dimensionsOf(std::string_view strKind, int lngSize, int lngFaultyPercent) {
  Dimensions dimensions;
  if (strKind == "rows") {
    dimensions.rows = lngSize;
    dimensions.faults = lngSize * dimensions.columns * lngFaultyPercent / 100;
    return dimensions;
  }
  if (strKind == "grid") {
    dimensions.gridRows = lngSize;
    dimensions.faults = lngSize * dimensions.columns * lngFaultyPercent / 100;
    return dimensions;
  }
  if (strKind == "definitions") {
    dimensions.fields = 50;
    dimensions.definitions = lngSize;
    return dimensions;
  }
  dimensions.fields = lngSize;
  dimensions.faults = 2 * lngSize * lngFaultyPercent / 100;  // a field has a cell beside it
  constexpr std::pair<std::string_view, Shape> kShapes[] = {{"sections", Shape::sections},
                                                            {"flat", Shape::flat},
                                                            {"nested", Shape::nested},
                                                            {"parents-by-id", Shape::parentsById}};
  for (const auto& [strName, shape] : kShapes) {
    dimensions.shape = shape;
    if (strKind == strName) return dimensions;
  }
  throw std::runtime_error("no such kind of form: " + std::string(strKind));
}

}  // namespace Varnel_Tolv_XML_Creation::bench
