#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "HtmlText.h"

// The view document of a form's page, written as text. What differs from form to form, the answers
// and what is wrong with them, can be left out: then a place stands there, and the same view is
// written again for the next form that looks alike. A stylesheet has to make something of each such
// view only once.

/// A page, or a part of it that a stylesheet can be given alone.
struct ViewPart {
  std::string_view strText;             // XML, with places
  std::span<const std::string> values;  // what stands in them
};

// Around the number of a place, noncharacters like kValueBegin, which a value begins with.
constexpr std::string_view kPartsBegin = "\xEF\xB7\x92";  // parts that follow each other
constexpr std::string_view kPlaceEnd = "\xEF\xB7\x91";

/// Elements are written from their beginning to their end, attributes ahead of the content.
class ViewText {
 public:
  /// The whole of a page as one document, or the page and its parts with places.
  enum class Form { whole, withPlaces };
  explicit ViewText(Form form);

  ViewText& begin(const char* name);
  ViewText& end();
  /// An element that has no more than a text.
  ViewText& add(const char* name, std::string_view strText = {}) {
    return begin(name).text(strText).end();
  }

  /// Attributes of the element that was begun last. An empty value leaves one out, but for
  /// `setAlways`.
  ViewText& set(const char* name, std::string_view strValue);
  ViewText& setAlways(const char* name, std::string_view strValue);
  ViewText& setFlag(const char* name, bool blnValue) { return set(name, blnValue ? "true" : ""); }
  ViewText& text(std::string_view strText);

  /// The same for what differs from form to form.
  ViewText& setPlace(const char* name, std::string_view strValue);
  ViewText& textPlace(std::string_view strText);

  /// What is written in between is a part of its own, and has none within it.
  void beginPart();
  void endPart();

  /// The page itself, which has places for the parts.
  ViewPart page() const { return {page_.strText, page_.values}; }
  ViewPart part(std::size_t lngPart) const;
  std::size_t parts() const { return bounds_.empty() ? 0 : bounds_.size() - 1; }
  std::size_t size() const { return page_.strText.size() + parts_.strText.size(); }
  /// The first part in a place for parts, and the one behind the last.
  std::pair<std::size_t, std::size_t> run(std::size_t lngPlace) const {
    return lngPlace < runs_.size() ? runs_[lngPlace] : std::pair<std::size_t, std::size_t>();
  }

 private:
  struct Written {
    std::string strText;
    std::vector<std::string> values;
  };
  struct Bounds {
    std::size_t lngText = 0;
    std::size_t lngValue = 0;
  };

  Written& now() { return blnInPart_ ? parts_ : page_; }
  std::string& content();
  void attribute(const char* name, std::string_view strValue, bool blnPlace);
  void value(std::string& strTo, std::string_view strValue, bool blnPlace);

  Form form_;
  Written page_;
  Written parts_;               // one behind the other
  std::vector<Bounds> bounds_;  // where they begin, and where the last one ends
  std::vector<std::pair<std::size_t, std::size_t>> runs_;
  std::size_t lngBehindRun_ = 0;  // how long the page was behind the last place for parts
  std::vector<const char*> open_;
  bool blnInPart_ = false;
  bool blnInTag_ = false;
};
