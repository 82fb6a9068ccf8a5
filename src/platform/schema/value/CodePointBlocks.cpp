#include <charconv>

#include "platform/schema/value/CodePoints.h"
#include "platform/schema/value/LexicalForms.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// The blocks that XML Schema 1.0 names, and what Unicode 4 added to them: the name of each, its
/// first and its last character. Some stand here several times.
constexpr std::string_view kBlocks =
    "AegeanNumbers 10100 1013F  AlphabeticPresentationForms FB00 FB4F  Arabic 600 6FF  "
    "ArabicPresentationForms-A FB50 FDFF  ArabicPresentationForms-B FE70 FEFE  "
    "Armenian 530 58F  Arrows 2190 21FF  BasicLatin 0 7F  Bengali 980 9FF  "
    "BlockElements 2580 259F  Bopomofo 3100 312F  BopomofoExtended 31A0 31BF  "
    "BoxDrawing 2500 257F  BraillePatterns 2800 28FF  Buhid 1740 175F  "
    "ByzantineMusicalSymbols 1D000 1D0FF  CJKCompatibility 3300 33FF  "
    "CJKCompatibilityForms FE30 FE4F  CJKCompatibilityIdeographs F900 FAFF  "
    "CJKCompatibilityIdeographsSupplement 2F800 2FA1F  CJKRadicalsSupplement 2E80 2EFF  "
    "CJKSymbolsandPunctuation 3000 303F  CJKUnifiedIdeographs 4E00 9FFF  "
    "CJKUnifiedIdeographsExtensionA 3400 4DB5  CJKUnifiedIdeographsExtensionB 20000 2A6D6  "
    "Cherokee 13A0 13FF  CombiningDiacriticalMarks 300 36F  "
    "CombiningDiacriticalMarksforSymbols 20D0 20FF  CombiningHalfMarks FE20 FE2F  "
    "CombiningMarksforSymbols 20D0 20FF  ControlPictures 2400 243F  CurrencySymbols 20A0 20CF  "
    "CypriotSyllabary 10800 1083F  Cyrillic 400 4FF  CyrillicSupplement 500 52F  "
    "Deseret 10400 1044F  Devanagari 900 97F  Dingbats 2700 27BF  "
    "EnclosedAlphanumerics 2460 24FF  EnclosedCJKLettersandMonths 3200 32FF  "
    "Ethiopic 1200 137F  GeneralPunctuation 2000 206F  GeometricShapes 25A0 25FF  "
    "Georgian 10A0 10FF  Gothic 10330 1034F  Greek 370 3FF  GreekExtended 1F00 1FFF  "
    "GreekandCoptic 370 3FF  Gujarati A80 AFF  Gurmukhi A00 A7F  "
    "HalfwidthandFullwidthForms FF00 FFEF  HangulCompatibilityJamo 3130 318F  "
    "HangulJamo 1100 11FF  HangulSyllables AC00 D7A3  Hanunoo 1720 173F  Hebrew 590 5FF  "
    "HighPrivateUseSurrogates DB80 DBFF  HighSurrogates D800 DB7F  Hiragana 3040 309F  "
    "IPAExtensions 250 2AF  IdeographicDescriptionCharacters 2FF0 2FFF  Kanbun 3190 319F  "
    "KangxiRadicals 2F00 2FDF  Kannada C80 CFF  Katakana 30A0 30FF  "
    "KatakanaPhoneticExtensions 31F0 31FF  Khmer 1780 17FF  KhmerSymbols 19E0 19FF  "
    "Lao E80 EFF  Latin-1Supplement 80 FF  LatinExtended-A 100 17F  LatinExtended-B 180 24F  "
    "LatinExtendedAdditional 1E00 1EFF  LetterlikeSymbols 2100 214F  Limbu 1900 194F  "
    "LinearBIdeograms 10080 100FF  LinearBSyllabary 10000 1007F  LowSurrogates DC00 DFFF  "
    "Malayalam D00 D7F  MathematicalAlphanumericSymbols 1D400 1D7FF  "
    "MathematicalOperators 2200 22FF  MiscellaneousMathematicalSymbols-A 27C0 27EF  "
    "MiscellaneousMathematicalSymbols-B 2980 29FF  MiscellaneousSymbols 2600 26FF  "
    "MiscellaneousSymbolsandArrows 2B00 2BFF  MiscellaneousTechnical 2300 23FF  "
    "Mongolian 1800 18AF  MusicalSymbols 1D100 1D1FF  Myanmar 1000 109F  "
    "NumberForms 2150 218F  Ogham 1680 169F  OldItalic 10300 1032F  "
    "OpticalCharacterRecognition 2440 245F  Oriya B00 B7F  Osmanya 10480 104AF  "
    "PhoneticExtensions 1D00 1D7F  PrivateUse E000 F8FF  PrivateUse F0000 FFFFD  "
    "PrivateUse 100000 10FFFD  PrivateUseArea E000 F8FF  Runic 16A0 16FF  Shavian 10450 1047F  "
    "Sinhala D80 DFF  SmallFormVariants FE50 FE6F  SpacingModifierLetters 2B0 2FF  "
    "Specials FEFF FEFF  Specials FFF0 FFFD  SuperscriptsandSubscripts 2070 209F  "
    "SupplementalArrows-A 27F0 27FF  SupplementalArrows-B 2900 297F  "
    "SupplementalMathematicalOperators 2A00 2AFF  SupplementaryPrivateUseArea-A F0000 FFFFF  "
    "SupplementaryPrivateUseArea-B 100000 10FFFF  Syriac 700 74F  Tagalog 1700 171F  "
    "Tagbanwa 1760 177F  Tags E0000 E007F  TaiLe 1950 197F  TaiXuanJingSymbols 1D300 1D35F  "
    "Tamil B80 BFF  Telugu C00 C7F  Thaana 780 7BF  Thai E00 E7F  Tibetan F00 FFF  "
    "Ugaritic 10380 1039F  UnifiedCanadianAboriginalSyllabics 1400 167F  "
    "VariationSelectors FE00 FE0F  VariationSelectorsSupplement E0100 E01EF  "
    "YiRadicals A490 A4CF  YiSyllables A000 A48F  YijingHexagramSymbols 4DC0 4DFF";

char32_t takeCodePoint(std::string_view& strRest) {
  const std::string_view strDigits = takeItem(strRest);
  std::uint32_t lngCodePoint = 0;
  std::from_chars(strDigits.data(), strDigits.data() + strDigits.size(), lngCodePoint, 16);
  return lngCodePoint;
}

}  // namespace

std::optional<CodePoints> blockNamed(std::string_view strName) {
  std::vector<CodePoints::Range> ranges;
  for (std::string_view strRest = kBlocks; !strRest.empty();) {
    const bool blnNamed = takeItem(strRest) == strName;
    const char32_t first = takeCodePoint(strRest);
    const char32_t last = takeCodePoint(strRest);
    if (blnNamed) ranges.push_back({first, last});
  }
  if (ranges.empty()) return std::nullopt;
  return CodePoints(std::move(ranges));
}

}  // namespace Varnel_Tolv_XML_Creation
