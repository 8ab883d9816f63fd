// The LIB members for numbers and SQL literals: each applies its error
// style and forwards to the free function of its family.
#include <exception>

#include "norvik50/lib.h"
#include "numeric/convert_to_type.h"
#include "numeric/decimal_chars.h"
#include "numeric/fraction.h"
#include "numeric/numeric_text.h"
#include "numeric/radix.h"
#include "numeric/sql_literals.h"

namespace norvik50 {

double LIB::tklVal(std::u16string_view sSource) { return Val(sSource); }

Variant LIB::tklCVal(int32_t VarTypeCode, const Variant& SourceVal) {
  return ConvertToType(VarTypeCode, SourceVal);
}

Variant LIB::tklRound(const Variant& vSourceValue, int16_t iDecimalPlaces) {
  return RoundValue(vSourceValue, iDecimalPlaces);
}

bool LIB::tklCompare(float nSource, float nTarget, float nTolerance) {
  return CompareWithin(nSource, nTarget, nTolerance);
}

bool LIB::tklAND(int32_t lVal1, int32_t lVal2) { return HasAllBits(lVal1, lVal2); }

std::u16string LIB::tklReplaceDecimalChars(std::u16string_view sSource, bool bGermanToEnglish) {
  return ReplaceDecimalChars(sSource, bGermanToEnglish);
}

int32_t LIB::tklHexToDec(const Variant& vHexVal) { return HexTextToLong(vHexVal); }

double LIB::tklHex2Dbl(std::u16string_view sValue) { return Hex2Dbl(sValue); }

std::u16string LIB::tklDbl2Hex(double dValue, int16_t iMinLen) { return Dbl2Hex(dValue, iMinLen); }

std::u16string LIB::tklLng2Str(int32_t Value) { return Lng2Str(Value); }

int32_t LIB::tklStr2Lng(std::u16string_view Source) { return Str2Lng(Source); }

void LIB::tklBruchrechnung(float nValue, int32_t& lZaehler, int32_t& lNenner) {
  ApproximateFraction(nValue, lZaehler, lNenner);
}

std::u16string LIB::tklSQLDate(const Variant& vValue, bool bMSSQLServer) {
  return SqlDate(vValue, bMSSQLServer);
}

std::u16string LIB::tklSQLDouble(const Variant& vValue) { return SqlDouble(vValue); }

std::u16string LIB::tklSQLFilter(const SafeArray& vParams) {
  try {
    return SqlFilter(vParams);
  } catch (const std::exception&) {
    return u"";  // skip style; SqlFilter itself already skips failing steps
  }
}

}  // namespace norvik50
