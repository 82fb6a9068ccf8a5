#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "varnel_xml_creation/platform/dom/Document.h"
#include "varnel_xml_creation/platform/host/WebRequest.h"

/// The answer that a stored form has at one place.
struct StoredAnswer {
  std::string strQuestion;
  std::string strRow;     // empty for a question that is no table
  std::string strColumn;  // the same
  std::string strValue;
};

/// Makes the form that a page of this deployment would post from what was stored of an earlier one:
/// its answers become the submission, the object list stays the deployment's own. Where nothing
/// changed since, parking the result gives the stored form again; docs/formats.md tells what a
/// stored form does not tell. Several threads may use one.
class ParkedForm {
 public:
  /// What is to be known of the deployment. Either document may be Nothing.
  ParkedForm(const Varnel_Tolv_XML_Creation::Document& objObjectList,
             const Varnel_Tolv_XML_Creation::Document& objHiddenFields);

  /// The submission. Raises CannotRun for a document that is no stored form.
  Varnel_Tolv_XML_Creation::FormCollection submission(
      const Varnel_Tolv_XML_Creation::Document& objStored) const;

 private:
  /// A table of the object list.
  struct Table {
    std::string strId;
    bool blnGrid = false;
    std::int32_t lngRows = 0;  // of a grid: how many follow one another from 1
    std::set<std::string, std::less<>> columnsNotAsked;  // fixed or computed
  };
  struct HiddenField {
    std::string strId;
    std::string strOutput;
  };
  using Fields = std::map<std::string, std::string, std::less<>>;

  void readObject(const Varnel_Tolv_XML_Creation::Node& objItem);
  void addField(const Varnel_Tolv_XML_Creation::Node& objItem, Fields& fields) const;
  void addTable(const Varnel_Tolv_XML_Creation::Node& objItem, Fields& fields) const;
  void addHiddenFields(const Varnel_Tolv_XML_Creation::Document& objStored, Fields& fields) const;

  std::map<std::string, Table, std::less<>> tables_;  // by id
  std::set<std::string, std::less<>> checkBoxes_;     // the names of their fields
  std::vector<HiddenField> hidden_;
};

/// The answers of a stored form that are not blank and that the form parked now does not have, in
/// the order of the stored one.
std::vector<StoredAnswer> answersMissing(const Varnel_Tolv_XML_Creation::Document& objStored,
                                         const Varnel_Tolv_XML_Creation::Document& objParkedNow);
