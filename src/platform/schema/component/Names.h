#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/text/ShortText.h"

namespace Varnel_Tolv_XML_Creation {

/// A namespace (empty: none) and a local name.
struct ExpandedName {
  std::string strUri;
  std::string strLocal;

  /// `{uri}local`, plain where there is no namespace.
  std::string text() const;
  bool operator==(const ExpandedName&) const = default;
};

/// The number of a name that a schema mentions; equal names of one schema have equal numbers.
using NameId = std::uint32_t;
inline constexpr NameId kNoName = 0;  // of a name that it does not mention

class NameTable {
 public:
  NameTable();
  NameTable(NameTable&&) = default;
  NameTable& operator=(NameTable&&) = default;

  NameId intern(std::string_view strUri, std::string_view strLocal);
  NameId find(std::string_view strUri, std::string_view strLocal) const noexcept;
  const ExpandedName& operator[](NameId name) const noexcept { return names_[name]; }
  std::size_t size() const noexcept { return names_.size(); }

 private:
  struct Key {
    std::size_t lngHash;  // once computed, enough to find a name and to add it
    std::string_view strUri;
    std::string_view strLocal;
    bool operator==(const Key& other) const noexcept {
      return lngHash == other.lngHash && isSame(strLocal, other.strLocal) &&
             isSame(strUri, other.strUri);
    }
  };
  struct Hash {
    std::size_t operator()(const Key& key) const noexcept { return key.lngHash; }
  };
  static Key keyOf(std::string_view strUri, std::string_view strLocal) noexcept;

  std::deque<ExpandedName> names_;  // never moves a name, and the keys lie in them
  std::unordered_map<Key, NameId, Hash> ids_;
};

/// What is known of names. Their numbers are small and close to each other: this is a list.
template <class Value>
class NameMap {
 public:
  /// The value of a name that was given none is that of `Value()`.
  Value find(NameId name) const noexcept { return name < values_.size() ? values_[name] : Value(); }

  Value& operator[](NameId name) {
    if (name >= values_.size()) values_.resize(name + 1);
    return values_[name];
  }

 private:
  std::vector<Value> values_;
};

}  // namespace Varnel_Tolv_XML_Creation
