#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Options.h"

// What the page of a form asks, in which order and words: generated from the object list, the
// questions XML and the schema, refined by page.xml. It knows no answers.

struct Choice {
  std::string strValue;
  std::string strLabel;
};

/// An input: a question, or a column of a table.
struct Input {
  std::string strId;
  std::string strKind;  // text, textarea, select, radio, check, date, time, number, email, tel
  std::string strLabel;
  bool blnLabelGiven = false;  // by page.xml: then it is the label, whatever is posted
  std::string strHelp;
  std::string strHint;          // the form of an answer, in few words
  std::string strHintLanguage;  // where that is not the page's
  std::string strWidth;         // short, medium or long
  std::string strOutput;        // a cell that nobody fills in: its fixed text
  bool blnOutput = false;
  bool blnRequired = false;
  std::string strMinLength;  // in characters
  std::string strMaxLength;
  std::string strLeast;  // of a number
  std::string strMost;
  std::vector<Choice> choices;
};

struct TableRow {
  std::string strId;
  std::string strLabel;
};

struct Question {
  Input input;
  bool blnTable = false;
  bool blnDynamic = false;     // a table whose rows come and go
  std::string strAdd;          // what the button says that adds a row; empty: what it usually says
  std::vector<TableRow> rows;  // of a fixed grid
  std::vector<Input> columns;
};

struct Section {
  std::string strId;
  std::string strTitle;
  std::string strHelp = {};
  std::vector<Question> questions = {};
};

/// A field that nobody sees. A fixed one is the host's to give: what is posted for it does not
/// count.
struct HiddenField {
  std::string strId;
  std::string strOutput;
  std::string strValue;  // "{now}": the moment at which the page was opened
  bool isFixed() const { return !strValue.empty() && strValue != "{now}"; }
};

struct PageModel {
  std::string strTitle;
  std::string strLanguage = "en";
  std::string strIntro;
  std::string strReceipt;
  std::vector<Section> sections;
  std::vector<HiddenField> hidden;

  /// The question with this id; null when it does not ask it.
  const Question* find(std::string_view strQuestion) const;
};

/// `strPageXml` need not exist. Raises CannotRun for what cannot be read.
PageModel readPageModel(const Options& options, const std::string& strPageXml);
