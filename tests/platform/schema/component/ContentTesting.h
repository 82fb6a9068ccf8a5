#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/schema/component/Components.h"
#include "platform/schema/component/ContentModel.h"

// What the tests of content models share: a notation for models and words, and another way to tell
// what a model allows.

namespace Varnel_Tolv_XML_Creation {

/// Element declarations by their names. Those that are not mentioned before are made.
class Vocabulary {
 public:
  ElementDeclaration& operator[](const std::string& strName) {
    ElementDeclaration& element = elements_[strName];
    if (element.name == kNoName) element.name = static_cast<NameId>(elements_.size());
    return element;
  }

  std::string nameOf(const ElementDeclaration* element) const {
    for (const auto& [strName, known] : elements_)
      if (&known == element) return strName;
    return "?";
  }

  /// The names of elements, with blanks between.
  std::string namesOf(const std::vector<const ElementDeclaration*>& elements) const {
    std::string strNames;
    for (const ElementDeclaration* element : elements)
      strNames.append(strNames.empty() ? "" : " ").append(nameOf(element));
    return strNames;
  }

  /// The particle that a text stands for: a name; `<uri>` for a wildcard; `(a, b)`, `(a | b)` and
  /// `(a & b)` for groups, `(,)`, `(|)` and `(&)` for empty ones. Behind it ?, *, +, {2}, {2,3} or
  /// {2,}.
  Particle parse(std::string_view strText) {
    Particle particle = term(strText);
    EXPECT_EQ(strText, "") << "left over";
    return particle;
  }

 private:
  static char peek(std::string_view& strText) {
    while (strText.starts_with(' ')) strText.remove_prefix(1);
    return strText.empty() ? '\0' : strText.front();
  }
  static bool take(std::string_view& strText, char token) {
    if (peek(strText) != token) return false;
    strText.remove_prefix(1);
    return true;
  }
  static std::uint32_t number(std::string_view& strText) {
    std::uint32_t lngNumber = 0;
    for (; std::isdigit(static_cast<unsigned char>(peek(strText))); strText.remove_prefix(1))
      lngNumber = lngNumber * 10 + static_cast<std::uint32_t>(strText.front() - '0');
    return lngNumber;
  }

  Particle term(std::string_view& strText) {
    Particle particle;
    if (take(strText, '(')) {
      while (!take(strText, ')')) {
        if (take(strText, ',')) particle.term = Particle::Term::sequence;
        if (take(strText, '|')) particle.term = Particle::Term::choice;
        if (take(strText, '&')) particle.term = Particle::Term::all;
        if (peek(strText) != ')') particle.children.push_back(term(strText));
      }
    } else if (take(strText, '<')) {
      particle.term = Particle::Term::wildcard;
      particle.wildcard.blnOthers = false;
      particle.wildcard.uris = {std::string(strText.substr(0, strText.find('>')))};
      strText.remove_prefix(strText.find('>') + 1);
    } else {
      particle.term = Particle::Term::element;
      peek(strText);
      const std::size_t end = std::min(strText.find_first_of(" ,|&()<{?*+"), strText.size());
      particle.element = &(*this)[std::string(strText.substr(0, end))];
      strText.remove_prefix(end);
    }
    if (take(strText, '?')) particle.minOccurs = 0;
    if (take(strText, '+')) particle.maxOccurs = Particle::kUnbounded;
    if (take(strText, '*')) {
      particle.minOccurs = 0;
      particle.maxOccurs = Particle::kUnbounded;
    }
    if (take(strText, '{')) {
      particle.minOccurs = particle.maxOccurs = number(strText);
      if (take(strText, ','))
        particle.maxOccurs = peek(strText) == '}' ? Particle::kUnbounded : number(strText);
      take(strText, '}');
    }
    return particle;
  }

  std::map<std::string, ElementDeclaration> elements_;
};

/// A child: an element of a name, or one of a namespace that no name is known of.
struct Child {
  NameId name = kNoName;
  std::string strUri;
};

/// What a model allows after some children, by trying everything: the most plain way, and a slow
/// one.
class ContentOracle {
 public:
  using Leaves = std::set<const Particle*>;

  ContentOracle(const Particle& content, const std::vector<Child>& children)
      : content_(content), children_(children) {}

  bool complete() { return ends(content_, 0).contains(children_.size()); }

  /// The elements and wildcards that may take the next child.
  Leaves next() {
    Leaves leaves;
    collected_.clear();
    collect(content_, 0, leaves);
    return leaves;
  }

  /// The elements among these, in the order of the model.
  std::vector<const ElementDeclaration*> expected(const Leaves& leaves) const {
    std::vector<const ElementDeclaration*> elements;
    list(content_, leaves, elements);
    return elements;
  }

  static bool fits(const Particle& leaf, const Child& child) {
    if (leaf.term == Particle::Term::wildcard) return leaf.wildcard.admits(child.strUri);
    return leaf.element->name == child.name ||
           std::any_of(
               leaf.element->substitutes.begin(), leaf.element->substitutes.end(),
               [&](const ElementDeclaration* member) { return member->name == child.name; });
  }

 private:
  using Places = std::set<std::size_t>;

  // Where an occurrence of the particle's term may stand within its occurrences: their number so
  // far, which need not be counted on beyond the least and beyond all children, and the place.
  std::set<std::pair<std::uint32_t, std::size_t>> starts(const Particle& particle,
                                                         std::size_t lngFrom) {
    const auto lngEnough = particle.minOccurs + static_cast<std::uint32_t>(children_.size()) + 1;
    std::set<std::pair<std::uint32_t, std::size_t>> known = {{0, lngFrom}};
    std::deque<std::pair<std::uint32_t, std::size_t>> open(known.begin(), known.end());
    for (; !open.empty(); open.pop_front()) {
      const auto [lngCount, lngAt] = open.front();
      if (lngCount == std::min(particle.maxOccurs, lngEnough)) continue;
      for (const std::size_t lngEnd : termEnds(particle, lngAt))
        if (known.emplace(lngCount + 1, lngEnd).second) open.emplace_back(lngCount + 1, lngEnd);
    }
    return known;
  }

  Places ends(const Particle& particle, std::size_t lngFrom) {
    const auto [known, blnNew] = ends_.try_emplace({&particle, lngFrom});
    if (!blnNew) return known->second;
    Places places;
    for (const auto& [lngCount, lngAt] : starts(particle, lngFrom))
      if (lngCount >= particle.minOccurs) places.insert(lngAt);
    return ends_[{&particle, lngFrom}] = places;
  }

  Places termEnds(const Particle& particle, std::size_t lngFrom) {
    Places places;
    switch (particle.term) {
      case Particle::Term::element:
      case Particle::Term::wildcard:
        if (lngFrom < children_.size() && fits(particle, children_[lngFrom]))
          places.insert(lngFrom + 1);
        break;
      case Particle::Term::sequence:
        places.insert(lngFrom);
        for (const Particle& child : particle.children) places = endsFrom(child, places);
        break;
      case Particle::Term::choice:
        for (const Particle& child : particle.children) places.merge(ends(child, lngFrom));
        break;
      case Particle::Term::all:
        for (const auto& [lngTaken, lngAt] : takenOfAll(particle, lngFrom))
          if (lngTaken + 1 == 1U << particle.children.size()) places.insert(lngAt);
    }
    return places;
  }

  Places endsFrom(const Particle& particle, const Places& from) {
    Places places;
    for (const std::size_t lngAt : from) places.merge(ends(particle, lngAt));
    return places;
  }

  std::set<std::pair<unsigned, std::size_t>> takenOfAll(const Particle& particle,
                                                        std::size_t lngFrom) {
    std::set<std::pair<unsigned, std::size_t>> known = {{0, lngFrom}};
    std::deque<std::pair<unsigned, std::size_t>> open(known.begin(), known.end());
    for (; !open.empty(); open.pop_front()) {
      const auto [lngTaken, lngAt] = open.front();
      for (std::size_t child = 0; child < particle.children.size(); ++child) {
        if (lngTaken >> child & 1) continue;
        for (const std::size_t lngEnd : ends(particle.children[child], lngAt))
          if (known.emplace(lngTaken | 1U << child, lngEnd).second)
            open.emplace_back(lngTaken | 1U << child, lngEnd);
      }
    }
    return known;
  }

  void collect(const Particle& particle, std::size_t lngFrom, Leaves& leaves) {
    if (!collected_.emplace(&particle, lngFrom).second) return;
    for (const auto& [lngCount, lngAt] : starts(particle, lngFrom)) {
      if (lngCount >= particle.maxOccurs) continue;
      Places places = {lngAt};
      switch (particle.term) {
        case Particle::Term::element:
        case Particle::Term::wildcard:
          if (lngAt == children_.size()) leaves.insert(&particle);
          break;
        case Particle::Term::sequence:
          for (const Particle& child : particle.children) {
            for (const std::size_t lngPlace : places) collect(child, lngPlace, leaves);
            places = endsFrom(child, places);
          }
          break;
        case Particle::Term::choice:
          for (const Particle& child : particle.children) collect(child, lngAt, leaves);
          break;
        case Particle::Term::all:
          for (const auto& [lngTaken, lngPlace] : takenOfAll(particle, lngAt)) {
            for (std::size_t child = 0; child < particle.children.size(); ++child)
              if (!(lngTaken >> child & 1)) collect(particle.children[child], lngPlace, leaves);
          }
      }
    }
  }

  static void list(const Particle& particle, const Leaves& leaves,
                   std::vector<const ElementDeclaration*>& elements) {
    for (const Particle& child : particle.children) list(child, leaves, elements);
    if (!leaves.contains(&particle) || !particle.element) return;
    std::vector<const ElementDeclaration*> group = particle.element->substitutes;
    group.insert(group.begin(), particle.element);
    for (const ElementDeclaration* element : group) {
      if (!element->blnAbstract &&
          std::find(elements.begin(), elements.end(), element) == elements.end())
        elements.push_back(element);
    }
  }

  const Particle& content_;
  const std::vector<Child>& children_;
  std::map<std::pair<const Particle*, std::size_t>, Places> ends_;
  std::set<std::pair<const Particle*, std::size_t>> collected_;
};

}  // namespace Varnel_Tolv_XML_Creation
