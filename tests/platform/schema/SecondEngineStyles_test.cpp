#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "SecondEngine.h"

// Damaged messages of schemas in the styles of real ones (tests/data/platform/styles/, a folder
// each: schema.xsd with what it includes and imports, and a valid message): the reader and another
// validator agree on whether each is valid and on which elements hold a bad value.
// SECOND_ENGINE_SEED and SECOND_ENGINE_COUNT, the number for all styles together, as elsewhere.
//
// What the other validator gets wrong does not occur, neither in the messages nor by damage:
// - `xsi:nil="1"` is as good as "true" (2.6.2 and the lexical space of boolean): it looks for
// "true".
// - an unknown attribute of the xsi namespace is one error like another (3.4.4): it stops reading.
// - a `length` counts characters (4.3.1): it counts the units of UTF-16, so all are in the BMP.
// - what is declared is checked wherever a lax wildcard leads (3.10.1 and the ur-type): it checks
//   nothing below an element that has no declaration, so such elements hold none. For the same
//   reason only elements without children are moved to where they are not declared.
// - what has a bad value has none that a key could compare (3.11.4): it compares the texts, and may
//   not come back from that, so the fields of keys hold other values, but no bad ones.
// - a prefix that `xs:selector` itself declares is in scope (3.11.2): it does not see it.

namespace Varnel_Tolv_XML_Creation {
namespace {

using Text = std::unique_ptr<xmlChar, decltype(xmlFree)>;

std::string textOf(const xmlChar* strText) { return reinterpret_cast<const char*>(strText); }

std::string qualified(const xmlNs* prefix, const xmlChar* strName) {
  return prefix && prefix->prefix ? textOf(prefix->prefix) + ":" + textOf(strName)
                                  : textOf(strName);
}

Item itemOf(const xmlNode* element) {
  Item item{qualified(element->ns, element->name), "", "", {}};
  for (const xmlNs* declared = element->nsDef; declared; declared = declared->next) {
    item.attributes += " xmlns" + (declared->prefix ? ":" + textOf(declared->prefix) : "");
    item.attributes += "='" + textOf(declared->href) + "'";
  }
  for (xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
    const Text value(xmlNodeGetContent(reinterpret_cast<xmlNode*>(attribute)), xmlFree);
    item.attributes += " " + qualified(attribute->ns, attribute->name);
    item.attributes += "='" + textOf(value.get()) + "'";
  }
  for (const xmlNode* child = element->children; child; child = child->next) {
    if (child->type == XML_ELEMENT_NODE) item.children.push_back(itemOf(child));
    if (child->type == XML_TEXT_NODE) item.value += textOf(child->content);
  }
  if (item.value.find_first_not_of(" \n") == std::string::npos) item.value.clear();
  return item;
}

Item loaded(const std::filesystem::path& path) {
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> tree(
      xmlReadFile(path.c_str(), nullptr, XML_PARSE_NONET), &xmlFreeDoc);
  return itemOf(xmlDocGetRootElement(tree.get()));
}

/// Damages a message with what it holds itself, and with values that are no good to most types.
class Damage {
 public:
  /// Of what `typed` names, the values have to stay good.
  Damage(const Item& message, std::set<std::string> typed, std::mt19937& random)
      : random_(random), typed_(std::move(typed)) {
    collect(message);
  }

  void apply(Item& message) {
    if (message.children.empty()) return;
    const Place place = anyPlace(message, random_);
    Item& item = *place.at;
    const auto way = static_cast<unsigned>(random_() % 18);
    if (way < kWaysToDisturb) {
      disturb(place, way, random_);
    } else if (way == 4) {
      place.siblings.insert(place.at, any(leaves_));
    } else if (way == 5) {
      place.siblings.insert(place.at, {"y:unknown", "x", " xmlns:y='urn:y'", {}});
    } else if (way == 6) {
      if (item.attributes.find(" extra=") == std::string::npos) item.attributes += " extra='1'";
    } else if (way < 9) {
      damageAttribute(item.attributes);
    } else if (way == 9 && !item.children.empty()) {
      item.value = "text";
    } else if (item.children.empty()) {
      item.value = any(valuesFor(item.name));
    }
  }

 private:
  template <class T>
  const T& any(const std::vector<T>& list) {
    return list[random_() % list.size()];
  }

  const std::vector<std::string>& valuesFor(const std::string& strName) {
    return typed_.contains(strName) ? ofName_[strName] : values_;
  }

  void collect(const Item& item) {
    for (const Item& child : item.children) {
      if (child.children.empty()) {
        values_.push_back(child.value);
        ofName_[child.name].push_back(child.value);
        if (child.attributes.find("xsi:type") == std::string::npos) leaves_.push_back(child);
      }
      collect(child);
    }
  }

  /// Removes one of the attributes, or gives it another value.
  void damageAttribute(std::string& strAttributes) {
    std::vector<std::size_t> starts;
    for (std::size_t at = 0; (at = strAttributes.find(' ', at)) != std::string::npos; ++at) {
      const bool blnOutside =
          std::count(strAttributes.begin(), strAttributes.begin() + static_cast<std::ptrdiff_t>(at),
                     '\'') %
              2 ==
          0;
      if (blnOutside && strAttributes.compare(at, 6, " xmlns") != 0) starts.push_back(at);
    }
    if (starts.empty()) return;
    const std::size_t start = any(starts);
    const std::size_t value = strAttributes.find('\'', start) + 1;
    const std::size_t end = strAttributes.find('\'', value);
    if (random_() % 2 == 0) {
      strAttributes.erase(start, end + 1 - start);
    } else {
      const std::string strName = strAttributes.substr(start + 1, value - start - 3);
      strAttributes.replace(value, end - value, any(valuesFor(strName)));
    }
  }

  std::mt19937& random_;
  std::vector<Item> leaves_;
  std::set<std::string> typed_;
  std::map<std::string, std::vector<std::string>> ofName_ = {{"place", {"1", " 02", "+3", "4"}},
                                                             {"of", {"1", " 02", "+3", "9"}},
                                                             {"xsi:nil", {"true", "false"}}};
  std::vector<std::string> values_ = {"a bad value", "",    "-1", "2020-13-01", "1e", "true",
                                      "99999999999", "1.5", "12", "zz"};
};

class SecondEngineStyles : public testing::TestWithParam<std::string> {};

TEST_P(SecondEngineStyles, AgreeOnEveryBadValueOf) {
  if (!std::filesystem::exists(kProgram)) {
    GTEST_SKIP() << kProgram << " (libxerces-c-samples) is not installed: nothing to compare with";
  }
  const std::filesystem::path source =
      std::filesystem::path(VARNEL_TEST_DATA_DIR) / "platform/styles" / GetParam();
  const SchemaDirectory directory;
  std::filesystem::copy(source, directory.path(""));
  const Item valid = loaded(source / "valid.xml");
  const std::size_t location = valid.attributes.find("schemaLocation='");
  const std::size_t target = valid.attributes.find('\'', location) + 1;
  const std::size_t end = valid.attributes.find_first_of(" '", target);
  SchemaCollection colSchemas;
  colSchemas.add(GetParam() == "all" ? "" : valid.attributes.substr(target, end - target),
                 directory.path("schema.xsd"));
  std::mt19937 random(static_cast<std::uint_fast32_t>(fromEnvironment("SECOND_ENGINE_SEED", 5)));
  std::set<std::string> typed = {"xsi:nil"};
  if (GetParam() == "keys") typed = {"number", "weight", "day", "box", "place", "of"};
  Damage damage(valid, typed, random);
  std::vector<std::string> messages;
  const unsigned long lngCount = fromEnvironment("SECOND_ENGINE_COUNT", 1'000) / 10;
  for (unsigned long number = 0; number < lngCount; ++number) {
    Item message = valid;
    for (unsigned long fault = number % 12; fault > 0; --fault) damage.apply(message);
    message.attributes = valid.attributes;  // the way to the schema
    serialise(message, messages.emplace_back());
  }
  expectAgreement(directory, colSchemas, messages, lngCount / 20, lngCount / 5);
}

INSTANTIATE_TEST_SUITE_P(Styles, SecondEngineStyles,
                         testing::Values("all", "chameleon", "invoice", "keys", "recursion",
                                         "redefine", "registry", "substitution", "values",
                                         "wildcards"),
                         [](const auto& style) { return style.param; });

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
