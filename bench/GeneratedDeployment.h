#pragma once

#include <filesystem>
#include <string>

#include "platform/WebRequest.h"

namespace Varnel_Tolv_XML_Creation::bench {

/// A deployment of any size with a form that answers all of it: fields in sections of 25, among
/// them check boxes, dates, two-value texts and addresses, and one table of 20 rows and 5 columns
/// for each 100 fields, every other one written as row texts. The files go into a directory of
/// their own, which goes with the object.
class GeneratedDeployment {
 public:
  explicit GeneratedDeployment(int lngFields);
  ~GeneratedDeployment();
  GeneratedDeployment(const GeneratedDeployment&) = delete;
  GeneratedDeployment& operator=(const GeneratedDeployment&) = delete;

  std::string file(const char* strName) const { return (directory_ / strName).string(); }
  const FormCollection& form() const { return form_; }
  int fields() const { return lngFields_; }
  int tables() const { return lngFields_ / 100; }

  /// How many elements of the message carry an answer when nothing was lost.
  int answers() const { return lngFields_ + tables() * kRows; }

  static constexpr int kRows = 20;
  static constexpr int kColumns = 5;
  static constexpr int kFieldsPerSection = 25;

 private:
  void write(const char* strName, const std::string& strText) const;
  void writeFields(std::string& strObjects, std::string& strMapper);
  void writeTables(std::string& strObjects, std::string& strMapper);

  std::filesystem::path directory_;
  int lngFields_;
  FormCollection form_;
};

}  // namespace Varnel_Tolv_XML_Creation::bench
