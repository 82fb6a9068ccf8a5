#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <utility>

#include "ExampleRun.h"
#include "XmlMutator.h"

// How libFuzzer changes an input made of parts: one part at a time, each beginning as the example
// has it, so that most inputs are nearly right and go deep. Three changes of four to an XML
// document leave it one.

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maximum);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maximum, unsigned seed) {
  using namespace Varnel_Tolv_XML_Creation::fuzz;
  std::minstd_rand dice(seed);
  Parts parts = partsOf({reinterpret_cast<const char*>(data), size});
  if (parts.empty() || dice() % 16 == 0) {
    const auto& [strName, strText] = *std::next(
        exampleParts().begin(), static_cast<std::ptrdiff_t>(dice() % exampleParts().size()));
    parts.emplace(strName, strText);
  }
  auto& [strName, strText] =
      *std::next(parts.begin(), static_cast<std::ptrdiff_t>(dice() % parts.size()));
  if (strText.empty() && exampleParts().contains(strName)) strText = exampleParts().at(strName);

  const std::string& strOther =
      std::next(exampleParts().begin(), static_cast<std::ptrdiff_t>(dice() % exampleParts().size()))
          ->second;
  std::optional<std::string> changed;
  if (dice() % 4 != 0) changed = mutatedXml(strText, strOther, dice);
  if (changed) {
    strText = std::move(*changed);
  } else {
    const std::size_t lngOld = strText.size();
    strText.resize(lngOld + 256);
    strText.resize(
        LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(strText.data()), lngOld, strText.size()));
  }
  const std::string strInput = textOf(parts);
  if (strInput.size() > maximum) return LLVMFuzzerMutate(data, size, maximum);
  std::copy(strInput.begin(), strInput.end(), data);
  return strInput.size();
}
