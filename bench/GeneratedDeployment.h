#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/host/WebRequest.h"

namespace Varnel_Tolv_XML_Creation::bench {

/// Where the message keeps the elements of the fields.
enum class Shape {
  sections,     // in sections of 25, each with a name of its own
  flat,         // all below one parent, each with a name of its own
  nested,       // each below an element of its own, which the field makes; these below one parent
  parentsById,  // in sections of 25 with one name, which the mapping finds by their ids
};
inline constexpr Shape kShapes[] = {Shape::sections, Shape::flat, Shape::nested,
                                    Shape::parentsById};

const char* nameOf(Shape shape);

/// The shape of this name. Throws std::runtime_error for any other text.
Shape shapeNamed(std::string_view strName);

/// A deployment of any size with a form that answers all of it: fields in one of the shapes, among
/// them check boxes, dates, two-value texts and addresses, and one table of 20 rows and 5 columns
/// for each 100 fields, every other one written as row texts. Where all hangs below one parent the
/// template also has an empty element there for each field, which the clean-up has to look up in a
/// reference document just as wide and to take out. The files go into a directory of their own,
/// which goes with the object.
class GeneratedDeployment {
 public:
  explicit GeneratedDeployment(int lngFields, Shape shape = Shape::sections);
  ~GeneratedDeployment();
  GeneratedDeployment(const GeneratedDeployment&) = delete;
  GeneratedDeployment& operator=(const GeneratedDeployment&) = delete;

  std::string file(const char* strName) const { return (directory_ / strName).string(); }
  const FormCollection& form() const { return form_; }
  int fields() const { return lngFields_; }
  int tables() const { return lngFields_ / 100; }

  /// How many elements of the message carry an answer when nothing was lost.
  int answers() const { return lngFields_ + tables() * kRows; }

  /// Selects those of them that are no rows of tables, and nothing that the clean-up should have
  /// taken out.
  const char* answersPath() const;

  static constexpr int kRows = 20;
  static constexpr int kColumns = 5;
  static constexpr int kFieldsPerSection = 25;

 private:
  bool isWide() const { return shape_ == Shape::flat || shape_ == Shape::nested; }
  std::string parentOf(int lngField) const;
  std::string nodeOf(int lngField) const;
  std::string bodyOfTemplate() const;
  std::string bodyOfReference() const;
  void write(const char* strName, const std::string& strText) const;
  void writeFields(std::string& strObjects, std::string& strMapper);
  void writeTables(std::string& strObjects, std::string& strMapper);

  std::filesystem::path directory_;
  int lngFields_;
  Shape shape_;
  FormCollection form_;
};

}  // namespace Varnel_Tolv_XML_Creation::bench
