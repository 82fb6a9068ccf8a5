#pragma once

#include "Parts.h"

namespace Varnel_Tolv_XML_Creation::fuzz {

/// The files of examples/inspection by their names relative to it, and what else decides a run:
/// "form" (the submitted body), "schema-url", "schema-uri", "date-order" (dmy, mdy or ymd).
const Parts& exampleParts();

/// Submits the form with these parts in place of the example's, names that the example does not
/// have being ignored, and has the message checked. Ends the program when a promise is broken: no
/// exception leaves a run; its code says the same as its success; a message that the schema refuses
/// has errors to show; the report agrees with itself and names what happened; both documents can be
/// stored, and what was stored can be opened and stored again without a change.
void runExample(const Parts& replaced);

/// Checks the deployment with these parts in place of the example's. Ends the program when a
/// finding has no code, line or message, or when the example's own files give one.
void checkExample(const Parts& replaced);

}  // namespace Varnel_Tolv_XML_Creation::fuzz
