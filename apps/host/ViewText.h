#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The view document of a form's page, written as text. What differs from form to form, the answers
// and what is wrong with them, can be left out: then a place stands there, and the same view is
// written again for the next form that looks alike. A stylesheet has to make something of each such
// view only once.

/// A part of a page that a stylesheet can be given alone.
struct ViewPart {
  std::string strText;              // XML; "place" and a number where a value is
  std::vector<std::string> values;  // what stands there
};

// Around the number of a place. None of these is a character of any text.
constexpr std::string_view kValueBegin = "\xEF\xB7\x90";  // a value
constexpr std::string_view kPartsBegin = "\xEF\xB7\x92";  // parts that follow each other
constexpr std::string_view kPlaceEnd = "\xEF\xB7\x91";

/// Elements are written from their beginning to their end, attributes ahead of the content.
class ViewText {
 public:
  /// The whole of a page as one document, or the page and its parts with places.
  enum class Form { whole, withPlaces };
  explicit ViewText(Form form) : form_(form), parts_(1) {}

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

  /// The page itself, which has places for the parts behind it.
  const ViewPart& page() const { return parts_.front(); }
  const ViewPart& part(std::size_t lngPart) const { return parts_[lngPart]; }
  /// The first part in a place for parts, and the one behind the last.
  std::pair<std::size_t, std::size_t> run(std::size_t lngPlace) const { return runs_[lngPlace]; }

 private:
  ViewPart& now() { return blnInPart_ ? parts_.back() : parts_.front(); }
  std::string& content();
  void attribute(const char* name, std::string_view strValue, bool blnPlace);
  void value(std::string& strTo, std::string_view strValue, bool blnPlace);

  Form form_;
  std::vector<ViewPart> parts_;  // the page itself first
  std::vector<std::pair<std::size_t, std::size_t>> runs_;
  std::size_t lngBehindRun_ = 0;  // how long the page was behind the last place for parts
  std::vector<const char*> open_;
  bool blnInPart_ = false;
  bool blnInTag_ = false;
};
