#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/dom/Document.h"
#include "result/RuntimeError.h"
#include "support/Documents.h"
#include "support/Host.h"

// What the tests of parking share: object lists, and a form that refuses to be read.

namespace Varnel_Tolv_XML_Creation::test {

/// An object list of these objects, with a declaration in front as a caller's list has it.
inline Document objectList(std::string_view strObjects, const DocumentSettings& settings = {}) {
  return parsedWithDeclaration("<prtobjcts>" + std::string(strObjects) + "</prtobjcts>", settings);
}

/// The object list's `xml` when these are its objects.
inline std::string objectListXml(std::string_view strObjects) {
  return "<?xml version=\"1.0\"?>\r\n<prtobjcts>" + std::string(strObjects) + "</prtobjcts>\r\n";
}

/// The first object of a list.
inline Node firstObject(const Document& objParkingXML) {
  return objParkingXML.selectSingleNode("//prtobjct");
}

/// From now until it ends, a host's request raises `kNumber`, "refused: <name>", for these fields
/// and answers all others as before.
class Refusal : public Request {
 public:
  static constexpr std::int32_t kNumber = 70;

  Refusal(TestHost& host, std::vector<std::string> colNames)
      : host_(host), before_(host.services().objectContext), colNames_(std::move(colNames)) {
    context_ = {.request = this, .server = before_->server};
    host_.services().objectContext = &context_;
  }
  ~Refusal() override { host_.services().objectContext = before_; }
  Refusal(const Refusal&) = delete;
  Refusal& operator=(const Refusal&) = delete;

  std::string formItem(std::string_view strName) const override {
    if (std::find(colNames_.begin(), colNames_.end(), strName) != colNames_.end())
      throw RuntimeError(kNumber, "refused: " + std::string(strName));
    return before_->request->formItem(strName);
  }

  std::vector<std::string> formNames(std::string_view strPrefix) const override {
    std::vector<std::string> colFound = before_->request->formNames(strPrefix);
    for (const std::string& strName : colNames_) {
      if (strName.starts_with(strPrefix)) colFound.push_back(strName);
    }
    return colFound;
  }

 private:
  TestHost& host_;
  const ObjectContext* before_;
  ObjectContext context_;
  std::vector<std::string> colNames_;
};

/// From now until it ends, a host's request can be asked for this many fields, after which it
/// raises `kNumber`.
class LimitedRequest : public Refusal {
 public:
  LimitedRequest(TestHost& host, std::size_t lngFields) : Refusal(host, {}), lngLeft_(lngFields) {}

  std::string formItem(std::string_view strName) const override {
    if (lngLeft_ == 0) throw RuntimeError(kNumber, "too many fields");
    --lngLeft_;
    return Refusal::formItem(strName);
  }

 private:
  mutable std::size_t lngLeft_;
};

}  // namespace Varnel_Tolv_XML_Creation::test
