#pragma once

#include <string>
#include <vector>

#include "Options.h"

/// What the data dictionary tells of a question, a column of a table or a hidden field that is
/// sent.
struct DictionaryEntry {
  std::string strLabel, strQuestionId, strColumnId;
  std::string strKind;               // of the object, in words
  std::vector<std::string> limits;   // of the value at the first place that the schema declares
  std::vector<std::string> choices;  // the values allowed there, when they are listed
  std::vector<std::string> places;   // paths in the message, with what stands there
  std::vector<std::string> rules;    // when it is sent, and how
  std::string strSource;             // file and line of its entry in the object mapper
};

/// The data dictionary of a form. Texts are in one line each, and long ones are cut.
struct Dictionary {
  std::string strForm;
  bool blnSchema = false;  // whether a schema tells limits
  std::vector<DictionaryEntry> entries;
};

/// Makes it of the files of a deployment: the questions in the order of the object list, each table
/// followed by its columns, then the hidden fields. Raises CannotRun for a file that is missing or
/// cannot be read, for a schema that cannot be used, and for more than 10,000 entries.
Dictionary dictionaryOf(const Options& options);
