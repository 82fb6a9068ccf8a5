#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

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

/// The names of a schema by their numbers, and their numbers by their texts, in buckets by a hash
/// that takes next to nothing. Names can be made so that many have the same: where a bucket gets
/// too many, all go into buckets by the standard library's hash, which takes longer.
class NameTable {
 public:
  NameTable();
  NameTable(NameTable&&) = default;
  NameTable& operator=(NameTable&&) = default;

  NameId intern(std::string_view strUri, std::string_view strLocal);
  NameId find(std::string_view strUri, std::string_view strLocal) const noexcept;
  const ExpandedName& operator[](NameId name) const noexcept { return names_[name]; }
  std::size_t size() const noexcept { return names_.size(); }

  /// The names in the fullest bucket, with which one that is looked for may be compared.
  std::size_t mostAlike() const noexcept;

 private:
  struct Entry {
    std::size_t lngHash = 0;
    NameId nextOfBucket = kNoName;
    std::string_view strUri = {};
    std::string_view strLocal = {};
  };

  std::size_t hashOfName(std::string_view strUri, std::string_view strLocal) const noexcept;
  NameId find(std::string_view strUri, std::string_view strLocal,
              std::size_t lngHash) const noexcept;
  NameId& bucket(std::size_t lngHash) { return buckets_[lngHash & (buckets_.size() - 1)]; }
  void fillBuckets(std::size_t lngBuckets);
  std::size_t alikeFrom(NameId name) const noexcept;

  std::deque<ExpandedName> names_;  // never moves a name, and the texts of the entries lie in them
  std::vector<Entry> entries_;      // of the names
  std::vector<NameId> buckets_;     // the first name of each
  bool blnManyAlike_ = false;
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
