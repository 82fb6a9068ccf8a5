#include <fstream>
#include <iostream>

#include "Libxml.h"
#include "Program.h"

// The least that a process has to do with libxml2 for one submission, once what comes out is known:
// parses the configuration FILEs, compiles the schema, parses and validates the message, parses the
// parked form in the place of the object list, and writes both to /dev/null.
//
//   libxml_process SCHEMA MESSAGE PARKED FILE...

int main(int argc, char** argv) {
  using namespace Varnel_Tolv_XML_Creation::bench;
  if (argc < 4) {
    std::cerr << "usage: libxml_process SCHEMA MESSAGE PARKED FILE...\n";
    return 2;
  }
  return exitStatusOf([&] {
    for (int lngFile = 4; lngFile < argc; ++lngFile) parsedFile(argv[lngFile]);
    const LibxmlSchema schema = compiledSchema(argv[1]);
    const LibxmlDocument message = parsedFile(argv[2]);
    expect(isValid(schema, message), "the message is not valid");
    std::ofstream("/dev/null") << serialised(message);
    std::ofstream("/dev/null") << serialised(parsedFile(argv[3]));
  });
}
