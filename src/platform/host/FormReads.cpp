#include "platform/host/FormReads.h"

#include <algorithm>
#include <typeinfo>
#include <utility>

namespace Varnel_Tolv_XML_Creation {
namespace {

/// A class of the host's may answer otherwise than the collection that it is made of.
const FormCollection* asCollection(const Request& request) {
  const bool blnCollection = typeid(request) == typeid(FormCollection);
  return blnCollection ? static_cast<const FormCollection*>(&request) : nullptr;
}

}  // namespace

FormReads::FormReads(const Request& request)
    : request_(request), collection_(asCollection(request)) {
  if (collection_) wasRead_.resize(collection_->items_.size());
}

std::string FormReads::read(std::string_view strName) {
  if (!collection_) {
    std::string strValue = request_.formItem(strName);
    if (!strValue.empty()) names_.emplace(strName);
    return strValue;
  }
  const FormCollection::Item* const item = collection_->find(strName);
  if (!item) return {};
  wasRead_[static_cast<std::size_t>(item - collection_->items_.data())] = 1;
  return item->strValue;
}

std::vector<std::string> FormReads::unread() const {
  std::vector<std::string> names;
  if (!collection_) {
    for (std::string& strName : request_.formNames("")) {
      if (!names_.contains(strName)) names.push_back(std::move(strName));
    }
    return names;
  }
  const auto nextFrom = [&](auto at) { return std::find(at, wasRead_.end(), 0); };
  for (auto at = nextFrom(wasRead_.begin()); at != wasRead_.end(); at = nextFrom(at + 1)) {
    names.push_back(collection_->items_[static_cast<std::size_t>(at - wasRead_.begin())].strName);
  }
  return names;
}

}  // namespace Varnel_Tolv_XML_Creation
