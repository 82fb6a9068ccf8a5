#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Stylesheet.h"
#include "host/ViewText.h"

/// What a stylesheet makes of views with places, kept for the next page that looks alike: then a
/// page is put together from texts. No answer is in them. Several threads may use one at the same
/// time.
class PageTemplates {
 public:
  /// What is kept, and how much was made for it and for single pages.
  struct Figures {
    std::size_t lngKept = 0;
    std::size_t lngBytes = 0;
    std::size_t lngMade = 0;
  };

  /// The stylesheet takes places and outlives the object.
  explicit PageTemplates(const Stylesheet& stylesheet,
                         std::size_t lngMostBytes = std::size_t{16} << 20)
      : stylesheet_(stylesheet), lngMostBytes_(lngMostBytes) {}

  /// The page; none when the stylesheet has to be given the whole, as of one with very many parts.
  std::optional<std::string> page(const ViewText& view);

  Figures figures() const;

 private:
  enum class Kind { text, value, valueInTag, parts };
  struct Piece {
    Kind kind = Kind::text;
    std::string strText = {};
    std::size_t lngPlace = 0;
  };
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view strText) const {
      return std::hash<std::string_view>()(strText);
    }
  };
  using Template = std::vector<Piece>;
  using Shared = std::shared_ptr<const Template>;

  static Template cutAtPlaces(std::string_view strPage);
  Shared make(const ViewPart& part, bool blnPage) const;
  Shared templateOf(const ViewPart& part, bool blnPage);
  bool fill(const ViewText& view, const ViewPart& part, bool blnPage, std::string& strPage);

  const Stylesheet& stylesheet_;
  const std::size_t lngMostBytes_;  // a form has some hundred views: only who wants to reaches it
  mutable std::mutex mutex_;
  std::unordered_map<std::string, Shared, Hash, std::equal_to<>> known_;  // by the text of the view
  std::size_t lngBytes_ = 0;
  std::size_t lngMade_ = 0;
};
