#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "Dimensions.h"
#include "platform/host/WebRequest.h"
#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::bench {

/// A table of a form, and what its rows become.
struct GeneratedTable {
  std::string id;
  int rows;
  bool fixed;  // a fixed grid, whose rows have labels
  bool texts;  // each row one text, else a complex type
};

/// A deployment of any size with a form that answers all of it: fields in one of the shapes, among
/// them check boxes, dates, two-value texts and addresses, and one table of 20 rows and 5 columns
/// for each 100 fields, every other one written as row texts; or one table. Where all hangs below
/// one parent the template also has an empty element there for each field, which the clean-up has
/// to look up in a reference document just as wide and to take out. The form is valid but for the
/// faults that were asked for; only messages in sections have a schema. The files go into a
/// directory of their own, which goes with the object.
class GeneratedDeployment {
 public:
  explicit GeneratedDeployment(const Dimensions& dimensions);

  std::string file(const char* strName) const { return directory_.at(strName); }
  const std::filesystem::path& directory() const { return directory_.path(); }
  const FormCollection& form() const { return form_; }
  const std::vector<std::pair<std::string, std::string>>& answers() const { return answers_; }
  const Dimensions& dimensions() const { return dimensions_; }
  const std::vector<GeneratedTable>& tables() const { return tables_; }
  bool hasSchema() const { return dimensions_.shape == Shape::sections; }

  /// How many elements of the message carry an answer when nothing was lost.
  int elements() const;

  /// Selects those of them that are no rows of tables, and nothing that the clean-up should have
  /// taken out.
  const char* elementsPath() const;

  static constexpr int kRows = 20;
  static constexpr int kFieldsPerSection = 25;

  /// What kind of a field this is: its number modulo 10.
  enum FieldKind { checkBox = 2, date = 4, labelAndValue = 6, address = 8 };
  static constexpr int kFieldKinds = 10;

 private:
  struct Texts;

  bool isWide() const;
  bool isFaulty(int lngNumber, int lngOf) const;
  std::string parentOf(int lngField) const;
  std::string nodeOf(int lngField) const;
  std::string bodyOfTemplate() const;
  std::string bodyOfReference() const;
  void answer(const std::string& strName, const std::string& strValue);
  void addFields(Texts& texts);
  void addTables(Texts& texts);
  void addExtras(Texts& texts);
  void addExtraField(Texts& texts, const std::string& strId, const std::string& strType,
                     const std::string& strNode, const std::string& strAction,
                     const std::string& strValue);
  void writeFiles(const Texts& texts);

  Dimensions dimensions_;
  std::vector<GeneratedTable> tables_;
  test::TemporaryDirectory directory_;
  std::vector<std::pair<std::string, std::string>> answers_;
  FormCollection form_;
};

}  // namespace Varnel_Tolv_XML_Creation::bench
