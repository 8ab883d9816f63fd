// The LIB members of the text toolkit: each applies its error style and
// forwards to the free function of its family.
#include <exception>
#include <utility>
#include <vector>

#include "norvik50/lib.h"
#include "text/bracket_pairs.h"
#include "text/brackets.h"
#include "text/bubble_sort.h"
#include "text/function_call.h"
#include "text/numeric_word.h"
#include "text/replace.h"
#include "text/replace_ext.h"
#include "text/search.h"
#include "text/signs.h"
#include "text/split.h"
#include "text/variant_values.h"

namespace norvik50 {

int16_t LIB::tklFindSubString(std::u16string_view sSource, std::u16string_view sFind,
                              int16_t iStartSearch, bool bIgnoreCase, bool bFindFirst,
                              bool bWholeWord, std::u16string* sFound) {
  return FindSubString(sSource, sFind, iStartSearch, bIgnoreCase, bFindFirst, bWholeWord, sFound);
}

int16_t LIB::tklHasSubString(std::u16string_view sSource, std::u16string_view sFind,
                             int16_t iStartSearch, bool bIgnoreCase) {
  return HasSubString(sSource, sFind, iStartSearch, bIgnoreCase);
}

int16_t LIB::tklFindLastSubString(std::u16string_view sSource, std::u16string_view sFind,
                                  int16_t iStartSearch, bool bIgnoreCase) {
  return FindLastSubString(sSource, sFind, iStartSearch, bIgnoreCase);
}

int16_t LIB::tklCountSubString(std::u16string_view sSource, std::u16string_view sFind,
                               int16_t iStartSearch, bool bIgnoreCase) {
  return CountSubString(sSource, sFind, iStartSearch, bIgnoreCase);
}

int16_t LIB::tklCountSubStringExt(std::u16string_view sSource, std::u16string_view sFind,
                                  int16_t iStartSearch, bool bIgnoreCase,
                                  std::u16string_view sNotInSigns) {
  return CountSubStringExt(sSource, sFind, iStartSearch, bIgnoreCase, sNotInSigns);
}

bool LIB::tklIsInSigns(std::u16string_view sSource, std::u16string_view sSigns, int16_t iStart,
                       int16_t iLen) {
  return IsInSigns(sSource, sSigns, iStart, iLen);
}

std::u16string LIB::tklReplaceInString(std::u16string_view sSource, std::u16string_view sFind,
                                       std::u16string_view sReplace, int16_t iStartSearch,
                                       bool bIgnoreCase, bool bOnlyAtBeginning, bool bNotInSigns,
                                       bool bWholeWord) {
  return ReplaceInString(sSource, sFind, sReplace, iStartSearch, bIgnoreCase, bOnlyAtBeginning,
                         bNotInSigns, bWholeWord);
}

std::u16string LIB::tklGetSubString(std::u16string_view sSource, std::u16string_view sBefore,
                                    std::u16string_view sAfter, int16_t iStartSearch,
                                    bool bIgnoreCase, bool bWholeWord) {
  return GetSubString(sSource, sBefore, sAfter, iStartSearch, bIgnoreCase, bWholeWord);
}

void LIB::tklSeparateString(std::u16string_view sSource, std::u16string_view sFind,
                            std::u16string& sBefore, std::u16string& sTerm, std::u16string& sAfter,
                            int16_t iStartSearch, bool bIgnoreCase) {
  SeparateString(sSource, sFind, sBefore, sTerm, sAfter, iStartSearch, bIgnoreCase);
}

std::u16string LIB::tklMid(std::u16string_view Source, int32_t Start, int32_t length) {
  return Mid(Source, Start, length);
}

void LIB::tklMid(std::u16string& Source, int32_t Start, int32_t length, std::u16string_view value) {
  MidLet(Source, Start, length, value);
}

Variant LIB::tklGetNotNullValue(const Variant& vValue) {
  try {
    return GetNotNullValue(vValue);
  } catch (const std::exception&) {
    return Variant();
  }
}

bool LIB::tklIsEmpty(const Variant& vValue) {
  try {
    return IsEmptyValue(vValue);
  } catch (const std::exception&) {
    return false;
  }
}

bool LIB::tklIsInList(const Variant& vValue, const Variant& vList) {
  return IsInList(vValue, vList);
}

bool LIB::tklArrayHasData(const Variant& vArray) { return ArrayHasData(vArray); }

void LIB::tklClearCollection(std::shared_ptr<HostObject>& oCollection, bool bSetToNothing) {
  ClearCollection(oCollection, bSetToNothing);
}

void LIB::tklBubbleSort(SafeArray& sList) { BubbleSort(sList); }

bool LIB::tklExtractBrackets(std::u16string_view sSource, std::u16string& sTerm,
                             std::u16string& sBefore, std::u16string& sAfter,
                             bool bStartWithBracket) {
  try {
    return ExtractBrackets(sSource, sTerm, sBefore, sAfter, bStartWithBracket);
  } catch (const std::exception&) {
    return false;
  }
}

std::u16string LIB::tklReplaceInStringExt(std::u16string_view sSource, std::u16string_view sFind,
                                          std::u16string_view sReplace, int16_t iStartSearch,
                                          bool /*bIgnoreCase*/, bool bOnlyAtBeginning,
                                          bool bWholeWord, bool bNotNumVals, bool bOnlyNumVals,
                                          std::u16string_view sNotInSigns) {
  // Like tklReplaceInString, the replacement always ignores case.
  const ExtendedReplaceRules rules{bOnlyAtBeginning, bWholeWord, bNotNumVals, bOnlyNumVals,
                                   sNotInSigns};
  return ReplaceInStringExt(sSource, sFind, sReplace, iStartSearch, rules);
}

bool LIB::tklExtractExpression(std::u16string_view sSource, std::u16string& sExpression,
                               std::u16string& sBefore, std::u16string& sAfter,
                               std::u16string* sFunction, bool bIgnoreCase) {
  try {
    CallExpression call;
    const std::u16string_view name = sFunction != nullptr ? *sFunction : u"";
    if (!ExtractExpression(sSource, name, bIgnoreCase, call)) return false;
    sExpression = std::move(call.expression);
    sBefore = std::move(call.before);
    sAfter = std::move(call.after);
    if (sFunction != nullptr) *sFunction = std::move(call.name);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

std::u16string LIB::tklPhraseWithoutBrackets(std::u16string_view sSource) {
  try {
    return PhraseWithoutBrackets(sSource);
  } catch (const std::exception&) {
    return u"";
  }
}

bool LIB::tklSeparateFunction(std::u16string_view sSource, std::u16string& sFunction,
                              SafeArray& vArguments) {
  try {
    std::u16string name;
    std::vector<std::u16string> arguments;
    if (!SeparateFunction(sSource, name, arguments)) return false;
    std::vector<Variant> items(arguments.begin(), arguments.end());
    vArguments = SafeArray(0, std::move(items), VarType::kString);
    sFunction = std::move(name);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool LIB::tklIsNumericWord(std::u16string_view sWord) { return IsNumericWord(sWord); }

}  // namespace norvik50
