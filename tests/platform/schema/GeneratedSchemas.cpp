#include "GeneratedSchemas.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>

namespace Varnel_Tolv_XML_Creation {
namespace {

using Kind = ModelPart::Kind;

constexpr const char* kGood = "1";
constexpr const char* kBad = "x";
constexpr const char* kElsewhere = "7";  // never made bad: who checks it depends on where it stands

const ModelPart* elementIn(const ModelPart& particle, const std::string& strName) {
  if (particle.kind == Kind::element && particle.strName == strName) return &particle;
  for (const ModelPart& part : particle.parts) {
    if (const ModelPart* found = elementIn(part, strName)) return found;
  }
  return nullptr;
}

std::size_t unrolledSize(const ModelPart& particle) {
  std::size_t lngSize = particle.kind == Kind::element ? 1 : 0;
  for (const ModelPart& part : particle.parts) lngSize += unrolledSize(part);
  return lngSize * static_cast<std::size_t>(std::max({particle.lngMin, particle.lngMax, 1}));
}

bool isPlainlyCounted(const ModelPart& particle, bool blnRepeated) {
  const bool blnCounted =
      particle.lngMin > 1 || (particle.lngMax != 1 && particle.lngMax != kUnbounded);
  if (blnCounted && (blnRepeated || particle.kind != Kind::element)) return false;
  return std::all_of(particle.parts.begin(), particle.parts.end(), [&](const ModelPart& part) {
    return isPlainlyCounted(part, blnRepeated || particle.lngMax != 1);
  });
}

}  // namespace

/// Makes the types one by one and writes the schema down.
class GeneratedSchema::Maker {
 public:
  Maker(GeneratedSchema& schema, std::uint_fast32_t seed) : schema_(schema), random_(seed) {}

  void make() {
    schema_.models_.resize(2);
    // Models grow by themselves and by types within them: these are made until all are there.
    schema_.models_[1] = model(0);
    std::string strTypes;
    for (std::size_t type = 1; type < schema_.models_.size(); ++type) {
      strTypes.append("<xs:complexType name='T").append(std::to_string(type)).append("'>");
      if (type > 1) schema_.models_[type] = model(depths_[type]);
      write(schema_.models_[type], strTypes);
      strTypes += "</xs:complexType>\n";
    }
    schema_.strText_ =
        "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>\n"
        "<xs:element name='m' type='T1'/>\n";
    for (const std::string& strName : schema_.globals_) {
      schema_.strText_.append("<xs:element name='").append(strName).append("' type='xs:int'/>\n");
    }
    schema_.strText_.append(strTypes).append(strGroups_).append("</xs:schema>");
  }

 private:
  bool oneIn(unsigned lngMany) { return random_() % lngMany == 0; }
  int from(int lngLeast, int lngMost) {
    return lngLeast + static_cast<int>(random_() % static_cast<unsigned>(lngMost - lngLeast + 1));
  }
  std::string newName(char first) { return first + std::to_string(++lngNames_); }

  ModelPart model(int lngDepth) {
    lngDepth_ = lngDepth;
    if (!oneIn(7)) return term(0, oneIn(8) ? 400 : 60);
    ModelPart all;
    all.kind = Kind::all;
    if (oneIn(4)) all.lngMin = 0;
    for (int parts = from(1, 8); parts > 0; --parts) {
      all.parts.push_back(element());
      if (oneIn(2)) all.parts.back().lngMin = 0;
    }
    if (oneIn(3)) all.strName = newName('g');
    return all;
  }

  ModelPart named() {
    ModelPart element;
    element.strName = newName('e');
    return element;
  }

  ModelPart element() {
    ModelPart element = named();
    if (lngDepth_ < 2 && oneIn(8)) {
      element.type = schema_.models_.size();
      schema_.models_.emplace_back();
      depths_[element.type] = lngDepth_ + 1;
    } else {
      schema_.numbers_.push_back(element.strName);
      if (oneIn(8)) schema_.globals_.push_back(element.strName);
    }
    return element;
  }

  /// `lngCounts` bounds the product of the counts that stand in one another.
  void count(ModelPart& particle, int& lngCounts) {
    constexpr int kRanges[][2] = {{0, 1}, {0, kUnbounded}, {1, kUnbounded}};
    const int way = from(0, 9);
    if (way < 3) {
      particle.lngMin = kRanges[way][0];
      particle.lngMax = kRanges[way][1];
    } else if (way < 7 && lngCounts >= 2) {
      particle.lngMax = from(2, std::min(oneIn(3) ? 20 : 5, lngCounts));
      particle.lngMin = oneIn(3) ? particle.lngMax : from(0, particle.lngMax);
      if (oneIn(6)) particle.lngMax = kUnbounded;
      lngCounts /= std::max({particle.lngMin, particle.lngMax, 1});
    }
  }

  /// A sequence or a choice.
  ModelPart term(int lngLevel, int lngCounts) {
    ModelPart term;
    term.kind = oneIn(3) ? Kind::choice : Kind::sequence;
    count(term, lngCounts);
    for (int parts = from(1, 5); parts > 0; --parts) {
      if (lngLevel < 3 && oneIn(3)) {
        term.parts.push_back(this->term(lngLevel + 1, lngCounts));
      } else if (term.kind == Kind::sequence && oneIn(10)) {
        addTwice(term, lngCounts);
      } else {
        term.parts.push_back(element());
        int lngOwn = lngCounts;
        count(term.parts.back(), lngOwn);
      }
    }
    if (oneIn(6)) term.strName = newName('g');
    return term;
  }

  /// One name at two places, and between them and behind them what must stand there.
  void addTwice(ModelPart& term, int lngCounts) {
    ModelPart element = named();
    schema_.numbers_.push_back(element.strName);
    for (int time = 0; time < 2; ++time) {
      int lngOwn = lngCounts;
      count(element, lngOwn);
      term.parts.push_back(element);
      term.parts.push_back(named());
      schema_.numbers_.push_back(term.parts.back().strName);
    }
  }

  static std::string counts(const ModelPart& particle) {
    const std::string strMax =
        particle.lngMax == kUnbounded ? "unbounded" : std::to_string(particle.lngMax);
    return " minOccurs='" + std::to_string(particle.lngMin) + "' maxOccurs='" + strMax + "'";
  }

  void write(const ModelPart& particle, std::string& strInto) {
    const std::string strCounts = counts(particle);
    if (particle.kind == Kind::element) {
      const auto& globals = schema_.globals_;
      if (std::find(globals.begin(), globals.end(), particle.strName) != globals.end()) {
        strInto += "<xs:element ref='" + particle.strName + "'" + strCounts + "/>";
        return;
      }
      strInto += "<xs:element name='" + particle.strName + "' type='";
      strInto += particle.type == 0 ? "xs:int" : "T" + std::to_string(particle.type);
      strInto += "'" + strCounts + "/>";
      return;
    }
    const char* const kTags[] = {"", "xs:sequence", "xs:choice", "xs:all"};
    const std::string strTag = kTags[static_cast<std::size_t>(particle.kind)];
    std::string strTerm = "<" + strTag + (particle.strName.empty() ? strCounts : "") + ">";
    for (const ModelPart& part : particle.parts) write(part, strTerm);
    strTerm += "</" + strTag + ">";
    if (particle.strName.empty()) {
      strInto += strTerm;
      return;
    }
    strGroups_ += "<xs:group name='" + particle.strName + "'>" + strTerm + "</xs:group>\n";
    strInto += "<xs:group ref='" + particle.strName + "'" + strCounts + "/>";
  }

  GeneratedSchema& schema_;
  std::mt19937 random_;
  int lngNames_ = 0;
  int lngDepth_ = 0;                   // of the type that is made
  std::map<std::size_t, int> depths_;  // of the types
  std::string strGroups_;
};

GeneratedSchema::GeneratedSchema(std::uint_fast32_t seed) { Maker(*this, seed).make(); }

std::size_t GeneratedSchema::unrolled() const {
  std::size_t lngMost = 0;
  for (const ModelPart& model : models_) lngMost = std::max(lngMost, unrolledSize(model));
  return lngMost;
}

bool GeneratedSchema::countsPlainly() const {
  return std::all_of(models_.begin(), models_.end(),
                     [](const ModelPart& model) { return isPlainlyCounted(model, false); });
}

void GeneratedSchema::fill(const ModelPart& particle, std::mt19937& random,
                           std::vector<Item>& children) const {
  const int lngMost = particle.lngMax == kUnbounded ? particle.lngMin + 3 : particle.lngMax;
  // Few where many may stand, now and then as many as may.
  int lngTimes = particle.lngMin;
  if (lngMost > lngTimes) {
    const auto lngRoom = static_cast<unsigned>(lngMost - lngTimes);
    lngTimes += static_cast<int>(random() % (random() % 4 == 0 ? lngRoom + 1 : 2U));
  }
  for (; lngTimes > 0 && children.size() < 150; --lngTimes) {
    switch (particle.kind) {
      case Kind::element:
        children.push_back({particle.strName, particle.type == 0 ? kGood : "", "", {}});
        if (particle.type != 0) fill(models_[particle.type], random, children.back().children);
        break;
      case Kind::choice:
        fill(particle.parts[random() % particle.parts.size()], random, children);
        break;
      case Kind::sequence:
        for (const ModelPart& part : particle.parts) fill(part, random, children);
        break;
      case Kind::all: {
        std::vector<const ModelPart*> parts;
        for (const ModelPart& part : particle.parts) parts.push_back(&part);
        for (std::size_t left = parts.size(); left > 0; --left) {
          std::swap(parts[random() % left], parts[left - 1]);
          fill(*parts[left - 1], random, children);
        }
        break;
      }
    }
  }
}

void GeneratedSchema::damage(Item& message, std::mt19937& random) const {
  if (message.children.empty()) {
    message.children.push_back({"unknown", "x", "", {}});
    return;
  }
  const Place place = anyPlace(message, random);
  auto& [siblings, at] = place;
  const auto way = static_cast<unsigned>(random() % 9);
  if (way < kWaysToDisturb) {
    disturb(place, way, random);
  } else if (way == kWaysToDisturb) {  // too many
    const Item item = *at;
    siblings.insert(at, 1 + random() % 22, item);
  } else if (way == kWaysToDisturb + 1) {  // too few
    const auto lngLeft = static_cast<std::size_t>(siblings.end() - at);
    siblings.erase(at, at + static_cast<std::ptrdiff_t>(1 + random() % lngLeft));
  } else if (way == kWaysToDisturb + 2 && !numbers_.empty()) {
    siblings.insert(at, {numbers_[random() % numbers_.size()], kElsewhere, "", {}});
  } else if (at->value == kGood) {
    at->value = kBad;
  }
}

Item GeneratedSchema::message(std::mt19937& random, int lngDamages) const {
  Item message{"m", "", "", {}};
  fill(models_[1], random, message.children);
  for (; lngDamages > 0; --lngDamages) damage(message, random);
  return message;
}

void GeneratedSchema::report(const Item& item, std::size_t type, const std::string& strPath,
                             std::vector<std::string>& lines) const {
  if (type == 0) {
    if (item.value != kBad) return;
    lines.push_back(strPath + ": The element: '" + item.name +
                    "'  has an invalid value according to its data type.");
    return;
  }
  const ModelPart& model = models_[type];
  ContentByDefinition content(model);
  const auto contentReport = [&](const char* how) {
    std::string strLine = strPath + ": Element content is " + how + " according to the DTD/Schema.";
    const char* before = " + Expecting: ";
    for (const std::string& strName : content.next()) {
      strLine.append(before).append(strName);
      before = ", ";
    }
    lines.push_back(strLine + (*before == ',' ? "." : ""));
  };
  bool blnRefused = false;
  for (const Item& child : item.children) {
    if (child.name == "unknown") {
      lines.push_back(strPath +
                      ": The element 'unknown' is used but not declared in the "
                      "DTD/Schema.");
      continue;
    }
    if (!blnRefused && !content.take(child.name)) {
      blnRefused = true;
      contentReport("invalid");
    }
    if (const ModelPart* element = elementIn(model, child.name)) {
      report(child, element->type, strPath + "/" + child.name, lines);
    }
  }
  if (!blnRefused && !content.isComplete()) contentReport("incomplete");
}

std::vector<std::string> GeneratedSchema::reports(const Item& message) const {
  std::vector<std::string> lines;
  report(message, 1, "/m", lines);
  return lines;
}

}  // namespace Varnel_Tolv_XML_Creation
