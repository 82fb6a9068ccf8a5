#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Varnel_Tolv_XML_Creation {

/// A namespace (empty: none) and a local name.
struct ExpandedName {
  std::string strUri;
  std::string strLocal;

  /// `{uri}local`, plain where there is no namespace.
  std::string text() const;
};

/// The number of a name that a schema mentions; equal names of one schema have equal numbers.
using NameId = std::uint32_t;
inline constexpr NameId kNoName = 0;  // of a name that it does not mention

class NameTable {
 public:
  NameTable();

  NameId intern(std::string_view strUri, std::string_view strLocal);
  NameId find(std::string_view strUri, std::string_view strLocal) const noexcept;
  const ExpandedName& operator[](NameId name) const noexcept { return names_[name]; }
  std::size_t size() const noexcept { return names_.size(); }

 private:
  std::deque<ExpandedName> names_;
  // From a local name to the names that have it: mostly one.
  std::unordered_map<std::string_view, std::vector<NameId>> byLocal_;
};

}  // namespace Varnel_Tolv_XML_Creation
