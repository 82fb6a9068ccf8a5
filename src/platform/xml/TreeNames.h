#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/xml/Arena.h"

namespace Varnel_Tolv_XML_Creation {

/// A prefix or a namespace's URI, once for all the names of a document. The empty one has number 0.
struct NamePart {
  std::string_view strText;  // a NUL stands behind it
  std::uint32_t lngNumber = 0;
  std::size_t lngHash = 0;
  const NamePart* uri = nullptr;  // of a prefix: that of the first name that was made with it
};

/// The name of elements and attributes, or the target of an instruction. Nodes of one document have
/// the same name when they point to the same one of these.
struct TreeName {
  const NamePart* prefix = nullptr;
  const NamePart* uri = nullptr;    // the empty one: it is in no namespace
  std::string_view strLocal;        // without the prefix; whole, as written, in no namespace
  std::string_view strQualified;    // as written; a NUL stands behind both
  const TreeName* plain = nullptr;  // that of the same URI and local part without a prefix
  std::size_t lngHash = 0;
  bool blnColon = false;  // it is in no namespace and was made with a prefix all the same
  const TreeName* nextWithColon = nullptr;
};

/// The names of one document, each once. They live as long as the arena that is given with every
/// call that may make one.
class TreeNames {
 public:
  /// Begins with the names of another table, in place of what it has: they count as made here.
  /// `base` must stay as it is for as long as this is used; any number of tables may share it.
  void startFrom(const TreeNames& base) noexcept;

  /// The name of these parts. In no namespace, which is the empty URI, there is no prefix.
  const TreeName* get(Arena& arena, std::string_view strPrefix, std::string_view strLocal,
                      std::string_view strUri);

  /// The name of the same parts as one of another table.
  const TreeName* get(Arena& arena, const TreeName& other);

  /// `plain` of the names with this URI and local part; null when no node ever had one.
  const TreeName* find(std::string_view strLocal, std::string_view strUri) const;

  /// The part of this text; null when no name ever had one.
  const NamePart* findPart(std::string_view strText) const noexcept;

  /// What all of them take as texts, each with its prefix.
  std::size_t bytes() const noexcept { return lngBytes_; }

  /// Begins to count what is made: kMaxNames more may be made from here on, else kXmlFailure.
  void startCount() noexcept { lngMade_ = 0; }

  /// No name that was made takes more bytes, with its prefix and six times its URI.
  std::size_t longest() const noexcept { return lngLongest_; }

  /// The last of those with a colon, which leads to the others; null when there is none.
  const TreeName* withColon() const noexcept { return withColon_; }

  /// Whether no prefix was made with one URI and then with another. False may say too little.
  bool bindPrefixesOnce() const noexcept { return blnBoundOnce_; }

  /// More than the number of any part.
  std::size_t parts() const noexcept { return parts_.lngCount; }

 private:
  /// Entries by their hash: a table with open addressing, half full at most. It finds those of
  /// another table in place until one is added.
  template <class Entry>
  struct Slots {
    /// The entry of this hash that `isIt`, or null.
    template <class IsIt>
    const Entry* find(std::size_t lngHash, const IsIt& isIt) const noexcept {
      if (lngSize == 0) return nullptr;
      for (std::size_t at = lngHash, lngStep = 1;; at += lngStep++) {
        const Entry* const entry = slots[at & (lngSize - 1)];
        if (!entry || (entry->lngHash == lngHash && isIt(*entry))) return entry;
      }
    }
    void add(Arena& arena, const Entry* entry);

    const Entry** slots = nullptr;
    std::size_t lngSize = 0;
    std::size_t lngCount = 0;
    bool blnShared = false;
  };

  const TreeName* find(std::string_view strPrefix, std::string_view strLocal,
                       std::string_view strUri, std::size_t lngHash) const noexcept;
  const TreeName* get(Arena& arena, std::string_view strPrefix, std::string_view strLocal,
                      std::string_view strUri, std::size_t lngHash, std::size_t lngPlain);
  const NamePart* part(Arena& arena, std::string_view strText, const NamePart*& last);
  const NamePart* part(Arena& arena, std::string_view strText);
  const NamePart* findPart(std::string_view strText, std::size_t lngHash) const noexcept;

  void countOne();

  Slots<NamePart> parts_;
  Slots<TreeName> names_;
  std::size_t lngSharedParts_ = 0;  // with the first numbers
  const NamePart* empty_ = nullptr;
  const NamePart* lastPrefix_ = nullptr;  // of a name that was made
  const NamePart* lastUri_ = nullptr;
  bool blnBoundOnce_ = true;
  std::size_t lngBytes_ = 0;
  std::size_t lngLongest_ = 0;
  const TreeName* withColon_ = nullptr;
  std::size_t lngMade_ = 0;  // local names, prefixes and URIs
};

}  // namespace Varnel_Tolv_XML_Creation
