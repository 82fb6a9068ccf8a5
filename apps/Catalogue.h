#pragma once

#include <map>
#include <string>
#include <string_view>

#include "varnel_xml_creation/result/RunReport.h"

/// The texts of one language for what a report tells in codes, limits and names. They stand in
/// messages/<language>.json under the name of the code, with places such as {limit} for what is
/// known of the case; docs/messages.md describes the files. What stands in a place is never read as
/// a text with places.
class Catalogue {
 public:
  /// The catalogue of a language, made once. Raises CannotRun for a language that there is none of.
  static const Catalogue& of(std::string_view strLanguage);

  /// The same, for a language tag such as "en-GB"; null for a language that there is none of.
  static const Catalogue* known(std::string_view strTag);

  /// For those who run the deployment.
  std::string text(const Varnel_Tolv_XML_Creation::SchemaViolation& violation) const;
  std::string text(const Varnel_Tolv_XML_Creation::AnswerLoss& loss) const;

  /// For the person at the form, who knows nothing of its configuration: a loss is told by what it
  /// means for the answer.
  std::string textForPerson(const Varnel_Tolv_XML_Creation::SchemaViolation& violation) const;
  std::string textForPerson(const Varnel_Tolv_XML_Creation::AnswerLoss& loss) const;

  /// The same where it is read at its place, as beside an input: without the place at its
  /// beginning.
  std::string textAtPlace(const Varnel_Tolv_XML_Creation::SchemaViolation& violation) const;
  std::string textAtPlace(const Varnel_Tolv_XML_Creation::AnswerLoss& loss) const;

  /// Why an answer was lost, without where; the code of a reason that has no text.
  std::string reason(const Varnel_Tolv_XML_Creation::AnswerLoss& loss) const;

  /// The verdict of a run.
  std::string text(const Varnel_Tolv_XML_Creation::RunReport& report) const;

 private:
  using Values = std::map<std::string, std::string, std::less<>>;
  using Catalogues = std::map<std::string_view, Catalogue>;

  static const Catalogues& all();

  explicit Catalogue(std::string_view strJson);

  bool knows(const std::string& strKey) const { return texts_.contains(strKey); }
  std::string filled(const std::string& strKey, const Values& values) const;
  std::string filledText(std::string_view strText, const Values& values) const;
  std::string filledAtPlace(const std::string& strKey, const Values& values) const;
  std::string place(const Values& values) const;
  template <class Names>
  std::string listed(const Names& names) const;
  std::string keyOf(const Varnel_Tolv_XML_Creation::SchemaViolation& violation) const;
  Values valuesOf(const Varnel_Tolv_XML_Creation::SchemaViolation& violation) const;
  std::string keyForPerson(const Varnel_Tolv_XML_Creation::AnswerLoss& loss) const;
  Values valuesOf(const Varnel_Tolv_XML_Creation::AnswerLoss& loss, bool blnWithIds) const;

  std::map<std::string, std::string, std::less<>> texts_;
};

/// A result with the texts that a catalogue has for its report: one for the report as a whole, one
/// for each violation and each loss, under the key `text`. Nothing else of it changes.
std::string withTexts(const std::string& strResult,
                      const Varnel_Tolv_XML_Creation::RunReport& report,
                      const Catalogue& catalogue);
