#pragma once

#include <string_view>

namespace Varnel_Tolv_XML_Creation::bench {

/// Where the message keeps the elements of the fields.
enum class Shape {
  sections,     // in sections of 25, each with a name of its own
  flat,         // all below one parent, each with a name of its own
  nested,       // each below an element of its own, which the field makes; these below one parent
  parentsById,  // in sections of 25 with one name, which the mapping finds by their ids
};

/// How much there is of everything.
struct Dimensions {
  int fields = 0;
  Shape shape = Shape::sections;
  int rows = 0;           // of one dynamic table, each a complex type
  int gridRows = 0;       // of one fixed grid, each a text
  int paddedRows = 0;     // the same with a row id that has a leading zero
  int tablesOfOneId = 0;  // and blank rows that the form has for that id
  int columns = 5;
  int levels = 0;  // of the rows' complex type; and so many columns have their places in the last
  int faults = 0;  // answers that are too long for the schema, of fields or else of rows

  int actions = 0;       // fields that become a complex type of their own each
  int hiddenFields = 0;  // that go into the message
  int questions = 0;     // about elements that the message does not have
  int referenceElements = 0;
  int namespaces = 0;       // in the list, besides the two that are used
  int documentRules = 0;    // each copies one element
  int depth = 0;            // steps of one node path
  int width = 0;            // empty elements below one parent of the template
  int sharedNames = 0;      // names that two of them have, far apart
  int listedQuestions = 0;  // that one reference element lists, and empty elements that ask it
  int valueLength = 0;      // letters of one answer
  int attributes = 0;       // of one object and of one element of the template
  int definitions = 0;      // types that the schema has besides
};

/// `lngSize` fields of a shape ("sections", "flat", "nested", "parents-by-id"), dynamic rows
/// ("rows") or grid rows ("grid"), with faults in this share of the answers, or 50 fields below a
/// schema of so many types ("definitions"). Throws std::runtime_error for any other name.
Dimensions dimensionsOf(std::string_view strKind, int lngSize, int lngFaultyPercent = 0);

}  // namespace Varnel_Tolv_XML_Creation::bench
