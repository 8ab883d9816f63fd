// norvik50's chief header: the LIB object.
//
// A host creates one LIB object and calls its members. Creating it starts
// the log file "nvk50err.LOG" in the temporary folder afresh with an
// "<application> initialized." line; destroying it appends
// "<application> terminated.".
//
// Every member follows one of three error styles:
//  - none: a failure throws norvik50::Error (number, description, source);
//  - skip: failing steps are skipped, the member returns what it had;
//  - handler: the member recovers as documented and returns normally.
// Each member's comment names its style and the errors it raises.
//
// Thread safety: a LIB object belongs to the thread that uses it; the
// library-wide base key is shared by all objects of the process and is not
// locked, so hosts with several threads set it once before they start them.
#ifndef NORVIK50_LIB_H_
#define NORVIK50_LIB_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "norvik50/collection.h"
#include "norvik50/error.h"
#include "norvik50/export.h"
#include "norvik50/file_info.h"
#include "norvik50/registry.h"
#include "norvik50/variant.h"

namespace norvik50 {

class PropertyBag;

// The current language (LibLanguageConsts).
enum LibLanguageConsts : int16_t {
  LANG_NEUTRAL = 0,
  LANG_GERMAN = 1,
  LANG_ENGLISH = 2,
  LANG_FRENCH = 3,
  LANG_ITALIC = 4,
  LANG_SPAIN = 5,
};

class NORVIK50_EXPORT LIB {
 public:
  // Writes "<application> initialized." to a fresh nvk50err.LOG.
  LIB();
  // Appends "<application> terminated." to the current log file.
  ~LIB();
  LIB(const LIB&) = delete;
  LIB& operator=(const LIB&) = delete;

  // ---- Library services -------------------------------------------------

  // The Windows folder without a trailing "\" (on Linux: NORVIK50_WINDIR or
  // the installed data folder, as a Windows-style path). Cached on first
  // call for the object's lifetime. Skip style: "" if it cannot be read.
  std::u16string tklSystemDir();
  // The temporary folder (TMPDIR or /tmp, as a Windows-style path), always
  // ending in exactly one "\". Cached on first call. Skip style.
  std::u16string tklTempDir();
  // (Designed here.) The value this object keeps under sName, Empty when
  // it keeps none. Names compare as registry value names do (any case,
  // umlauts included). Style none: 5 for an empty name.
  Variant tklProperty(std::u16string_view sName) const;
  // (Designed here.) Keeps vNewValue under sName for the object's life,
  // replacing what was there; Empty forgets the name. Arrays are copied,
  // objects kept by reference. Style none: 5 for an empty name.
  void tklProperty(std::u16string_view sName, const Variant& vNewValue);
  // The library-wide registry base key; "SOFTWARE\VANTEX\Global" while unset.
  std::u16string tklRegKey() const;
  // Sets the base key without any check; "" restores the default.
  void tklRegKey(const std::u16string& value);

  // ---- Log and errors ---------------------------------------------------

  // Writes one time-stamped line to the log. A non-empty sLogFileName
  // becomes the object's log name and truncates that file; otherwise the
  // line is appended to the current log. A name without "\" lies in the
  // temporary folder with ".LOG" added; a bare name already ending in
  // ".LOG" logs nothing. Skip style: never fails.
  void tklLogAction(std::u16string_view sMessage, std::u16string_view sLogFileName = u"");
  // Appends "ERR=n 'desc' (Source=src)" to the log; with bShowMsgBox also
  // shows it through tklErrorMsg. Style none.
  void tklLogError(int32_t lError, std::u16string_view sErrDesc, std::u16string_view sErrSrc,
                   bool bShowMsgBox = false);
  // Shows "Runtime error 'n':" (German: "Laufzeitfehler 'n':") with the
  // description in the standard message dialog. Skip style.
  void tklErrorMsg(int32_t lError, std::u16string_view sErrorDesc,
                   std::u16string_view sErrorSource);

  // ---- Paths and files --------------------------------------------------

  // sPath + "\" + sFile with exactly one "\" between them. Skip style.
  std::u16string tklGetFullPath(std::u16string_view sPath, std::u16string_view sFile);
  // True when sFilename names an existing file (not a folder). Handler style.
  bool tklFileExists(std::u16string_view sFilename);
  // 16 for an existing folder, 0 otherwise (not the Boolean True).
  int16_t tklPathExists(std::u16string_view sPath);
  // Splits sFullName into drive, path, file name and extension. Handler
  // style: False (fields as far as set) when it fails.
  bool tklSeparateFile(std::u16string_view sFullName, typFileInfo& tFileInfo);
  // (Designed here.) sPath as seen from the folder sBasePath (the current
  // folder when ""): ".\sub\x.txt", "..\..\x.txt", "." for the folder
  // itself; by the text alone, roots and names compared without case. On
  // another drive or share the absolute path. "" for an empty sPath. Skip
  // style: never fails.
  std::u16string tklGetRelativePath(std::u16string_view sPath, std::u16string_view sBasePath = u"");
  // (Designed here.) sPath made absolute below the folder sBasePath (the
  // current folder when ""), "." and ".." resolved, never above the root;
  // an absolute sPath is only normalized. "" for an empty sPath. Skip style.
  std::u16string tklGetAbsolutePath(std::u16string_view sPath, std::u16string_view sBasePath = u"");
  // (Designed here.) Makes the folder sPath, drive included, the process's
  // current folder. True when it did; False (nothing changed) for an empty
  // path or one that names no folder that may be entered. *sCurrentPath,
  // when given, receives the current folder afterwards either way.
  // Handler style: never fails.
  bool tklChangeToPath(std::u16string_view sPath, std::u16string* sCurrentPath = nullptr);
  // (Designed here.) The full path of the first file in sPath (the current
  // folder when "") whose name matches sPattern ("*.txt", "Res_??.dll"; as
  // the Windows directory search, without case), in name order, with
  // bSubFolders also below it (a folder's own files first); "" when none
  // matches or the folder is missing. Handler style: never fails.
  std::u16string tklFindFile(std::u16string_view sPath, std::u16string_view sPattern,
                             bool bSubFolders = false);
  // (Designed here.) True when sPath exists and has every attribute bit of
  // lAttributes (1 read-only, 2 hidden, 16 directory, 32 archive, 1024 a
  // symbolic link; 0 asks only whether it exists). *lActual, when given,
  // receives all its bits, or -1 when nothing is there. Handler style.
  bool tklCheckAttributes(std::u16string_view sPath, int32_t lAttributes = 0,
                          int32_t* lActual = nullptr);
  // (Designed here.) The whole file sFilename as a text of byte characters
  // (one per byte, Windows-1252), as tklGlobalVar's DEFLATE and INFLATE
  // take them. Style none: 52 a name that names no file, 53 missing, 75 a
  // folder or no regular file, 70 not readable, 7 too large.
  std::u16string tklFileStream(std::u16string_view sFilename);
  // (Designed here.) Makes the file sFilename hold the bytes of sData,
  // created when missing. Style none: 5 (file untouched) for a character
  // without a byte, 52, 76 missing folder, 75, 70 not writable, 61 disk
  // full (old content kept).
  void tklFileStream(std::u16string_view sFilename, std::u16string_view sData);

  // ---- Text toolkit -----------------------------------------------------
  // Positions are 1-based UTF-16 units, 0 = not found. sFind is an
  // alternatives list («AND|OR»); an empty one finds nothing. Positions and
  // counts are 16-bit: past 32767 they overflow (6).

  // Position of the first match of an alternative from iStartSearch, 0 if
  // none; bFindFirst: smallest position wins (earlier alternative on a tie),
  // else the first alternative that occurs; bWholeWord: between word
  // separators. *sFound gets the winning alternative. Handler style: 0 for an
  // empty source, a start below 1 or any failure.
  int16_t tklFindSubString(std::u16string_view sSource, std::u16string_view sFind,
                           int16_t iStartSearch = 1, bool bIgnoreCase = true,
                           bool bFindFirst = true, bool bWholeWord = false,
                           std::u16string* sFound = nullptr);
  // -1 if an alternative occurs from iStartSearch, else 0. Never fails.
  int16_t tklHasSubString(std::u16string_view sSource, std::u16string_view sFind,
                          int16_t iStartSearch = 1, bool bIgnoreCase = true);
  // Last (overlapping) occurrence of sFind taken literally, 0 if none.
  // Style none: 5 for a start below 1, 6 past 32767.
  int16_t tklFindLastSubString(std::u16string_view sSource, std::u16string_view sFind,
                               int16_t iStartSearch = 1, bool bIgnoreCase = true);
  // Non-overlapping occurrences summed over the alternatives; 0 for an empty
  // source or sFind. Style none: 5 for a start below 1, 6 on overflow (an
  // empty alternative always overflows).
  int16_t tklCountSubString(std::u16string_view sSource, std::u16string_view sFind,
                            int16_t iStartSearch = 1, bool bIgnoreCase = true);
  // tklCountSubString without occurrences inside any sign pair of
  // sNotInSigns («""|''»). Style none: 5, 6 as tklCountSubString.
  int16_t tklCountSubStringExt(std::u16string_view sSource, std::u16string_view sFind,
                               int16_t iStartSearch = 1, bool bIgnoreCase = true,
                               std::u16string_view sNotInSigns = u"");
  // True if the iLen units at iStart lie between the pair sSigns («()»),
  // judged by sign parity on both sides; False for a pair not of two units,
  // iStart < 2, iLen < 1 or no unit after the span. Skip style.
  bool tklIsInSigns(std::u16string_view sSource, std::u16string_view sSigns, int16_t iStart,
                    int16_t iLen);
  // sSource with each match of sFind from iStartSearch replaced; always
  // case-insensitive (bIgnoreCase is not read); bNotInSigns keeps matches
  // inside double quotes; bOnlyAtBeginning replaces one match leading the
  // trimmed text. Style none: 6 on a 16-bit overflow or an empty alternative
  // replaced by "" (endless), 5 as described for bOnlyAtBeginning.
  std::u16string tklReplaceInString(std::u16string_view sSource, std::u16string_view sFind,
                                    std::u16string_view sReplace, int16_t iStartSearch = 1,
                                    bool bIgnoreCase = true, bool bOnlyAtBeginning = false,
                                    bool bNotInSigns = true, bool bWholeWord = false);
  // The trimmed text between the first sBefore and the next sAfter, both
  // searched from 1 (iStartSearch is not used); "" if a term is missing.
  // Style none (cannot fail).
  std::u16string tklGetSubString(std::u16string_view sSource, std::u16string_view sBefore,
                                 std::u16string_view sAfter, int16_t iStartSearch = 1,
                                 bool bIgnoreCase = true, bool bWholeWord = false);
  // Splits sSource at the first alternative (list order) that occurs into
  // trimmed sBefore, sTerm, sAfter; outputs unchanged if none occurs; empty
  // sFind gives "", sSource, "". Style none: 5 for a start below 1, 6.
  void tklSeparateString(std::u16string_view sSource, std::u16string_view sFind,
                         std::u16string& sBefore, std::u16string& sTerm, std::u16string& sAfter,
                         int16_t iStartSearch = 1, bool bIgnoreCase = true);
  // At most `length` units from Start (-1: to the end). Style none: 5 for
  // Start < 1 or length < -1.
  std::u16string tklMid(std::u16string_view Source, int32_t Start, int32_t length = -1);
  // Splices value into Source at Start in place of `length` units (-1: as
  // many as value has). Style none: 5 for Start < 1, 6 on Long overflow.
  void tklMid(std::u16string& Source, int32_t Start, int32_t length, std::u16string_view value);
  // Empty for a Null, vValue otherwise. Skip style.
  Variant tklGetNotNullValue(const Variant& vValue);
  // True for Empty, Null, a zero number or date, and ""; False for other
  // types. Skip style.
  bool tklIsEmpty(const Variant& vValue);
  // Whether vList holds vValue at an index from 0 to its upper bound
  // (numbers by value, strings exactly). Handler style: False for a list
  // based above 0 or anything that cannot be compared.
  bool tklIsInList(const Variant& vValue, const Variant& vList);
  // Whether vArray is an array with bounds (even 0 to -1). Skip style.
  bool tklArrayHasData(const Variant& vArray);
  // Removes every item of a Collection; with bSetToNothing the reference
  // is reset. Handler style: ends quietly without a Collection.
  void tklClearCollection(std::shared_ptr<HostObject>& oCollection, bool bSetToNothing = false);
  // Sorts a String array in place, case-insensitively in the current
  // locale, stably. Style none: 9 unbounded, 6 bound outside 16 bits, 13 a
  // non-String element.
  void tklBubbleSort(SafeArray& sList);
  // The first "(" ... ")" pair outside double quotes: True with sTerm the
  // content, sBefore and sAfter the text around it; False and outputs
  // unchanged without a pair. Handler style.
  bool tklExtractBrackets(std::u16string_view sSource, std::u16string& sTerm,
                          std::u16string& sBefore, std::u16string& sAfter,
                          bool bStartWithBracket = false);
  // (Designed here.) tklReplaceInString with finer rules: bOnlyAtBeginning
  // and bWholeWord as there; bNotNumVals leaves a match that stands in a
  // numeric word (tklIsNumericWord of the match and the word units around
  // it in sSource), bOnlyNumVals replaces only those (both: nothing); each
  // pair of sNotInSigns («""|()») protects what it encloses: equal signs
  // what follows an odd number of them, brackets by tklIsInSigns, both in
  // the text as edited so far. sNotInSigns «""» answers as bNotInSigns
  // True there, "" as False. Style none: the errors of tklReplaceInString.
  std::u16string tklReplaceInStringExt(std::u16string_view sSource, std::u16string_view sFind,
                                       std::u16string_view sReplace, int16_t iStartSearch = 1,
                                       bool bIgnoreCase = true, bool bOnlyAtBeginning = false,
                                       bool bWholeWord = false, bool bNotNumVals = false,
                                       bool bOnlyNumVals = false,
                                       std::u16string_view sNotInSigns = u"");
  // (Designed here.) The first call expression outside double quotes:
  // with *sFunction empty (or no sFunction) the pair tklExtractBrackets
  // finds and the name directly before its "(", which *sFunction then
  // receives; otherwise the leftmost call of that name (a whole name,
  // without case when bIgnoreCase) whose bracket closes, *sFunction
  // receiving the name as written. True with sExpression the name and the
  // pair, sBefore and sAfter the text around it; False and outputs
  // unchanged when there is none. Handler style.
  bool tklExtractExpression(std::u16string_view sSource, std::u16string& sExpression,
                            std::u16string& sBefore, std::u16string& sAfter,
                            std::u16string* sFunction = nullptr, bool bIgnoreCase = true);
  // (Designed here.) sSource without its outermost bracket pairs (each with
  // its content and the blanks before it), trimmed: «Müller (Kunde) GmbH»
  // gives «Müller GmbH». Brackets without a partner or inside double
  // quotes stay. Handler style.
  std::u16string tklPhraseWithoutBrackets(std::u16string_view sSource);
  // (Designed here.) When the trimmed sSource is one call «Name(args)»:
  // True, sFunction the name, vArguments a String array (lower bound 0,
  // empty for «Name()») of the trimmed arguments split at the commas
  // outside nested brackets and double quotes. False and outputs unchanged
  // otherwise. Handler style.
  bool tklSeparateFunction(std::u16string_view sSource, std::u16string& sFunction,
                           SafeArray& vArguments);
  // (Designed here.) True when sWord is a number in the current locale's
  // notation: optional leading sign, digits grouped by threes with the
  // thousands separator or not at all, at most one decimal separator
  // followed by digits (German «1.234,56», English «1,234.56»). Handler
  // style.
  bool tklIsNumericWord(std::u16string_view sWord);

  // ---- Numbers and SQL literals ----
  // Text is read and written in the current locale: its decimal separator
  // is the point, its thousands separator is ignored when reading.

  // The number in a free text: digits, ",", ".", "-" and "+" are kept, a
  // surplus of decimal separators dropped ("EUR 1.234,56" is 1234.56 in
  // German). Skip style: 0 for "" or what is no number.
  double tklVal(std::u16string_view sSource);
  // SourceVal converted to the type code VarTypeCode (2 Integer ... 17
  // Byte). Skip style: 0 (Integer), today, "" or False when it fails.
  Variant tklCVal(int32_t VarTypeCode, const Variant& SourceVal);
  // vSourceValue rounded half away from zero to iDecimalPlaces (Integer and
  // Long to whole numbers), in its own type; other types and negative
  // places unchanged. Handler style: unchanged when it cannot round.
  Variant tklRound(const Variant& vSourceValue, int16_t iDecimalPlaces);
  // True when nSource lies within nTarget -/+ nTolerance (Single bounds,
  // inclusive). Style none: 6 when a bound is not finite.
  bool tklCompare(float nSource, float nTarget, float nTolerance);
  // True when every bit of lVal2 is set in lVal1. Never fails.
  bool tklAND(int32_t lVal1, int32_t lVal2);
  // The numbers of an expression text in "." notation without thousands
  // separators; bGermanToEnglish: the text's numbers are German. Handler
  // style: the text as far as transformed when something fails.
  std::u16string tklReplaceDecimalChars(std::u16string_view sSource, bool bGermanToEnglish);
  // vHexVal's hexadecimal text (or raw "x" bytes) as a Long. Never raises:
  // 0 on overflow or for a value without a hexadecimal form.
  int32_t tklHexToDec(const Variant& vHexVal);
  // Hexadecimal text (after dropping "&" and "H") as a Double of up to 56
  // bits. Style none: 6 for a high part past eight digits.
  double tklHex2Dbl(std::u16string_view sValue);
  // dValue in hexadecimal, padded with "0" to iMinLen (never cut); a
  // negative value keeps its low 24 bits. Style none: 6 past the Long range.
  std::u16string tklDbl2Hex(double dValue, int16_t iMinLen = 0);
  // Value as four byte characters, most significant first. Style none: 5
  // for a negative value.
  std::u16string tklLng2Str(int32_t Value);
  // The inverse of tklLng2Str. Style none: 6 for a first byte from 128, 5
  // for a text shorter than four characters.
  int32_t tklStr2Lng(std::u16string_view Source);
  // nValue as lZaehler / lNenner with a denominator from 2 to 64 (1.0
  // gives 0/0). Handler style: ends quietly with what was set.
  void tklBruchrechnung(float nValue, int32_t& lZaehler, int32_t& lNenner);
  // vValue as a date literal: #yyyy/mm/dd[ hh:nn:ss]#, or with
  // bMSSQLServer CONVERT(DATETIME, 'yyyy-mm-dd hh:nn:ss', 102). Style none:
  // 13 for a text that is no number (desktop dialect), 6, 94 for Null.
  std::u16string tklSQLDate(const Variant& vValue, bool bMSSQLServer = false);
  // vValue as a Double literal with "." (0 for what is no number). Never
  // fails.
  std::u16string tklSQLDouble(const Variant& vValue);
  // name=literal pairs from vParams (name, value, ...) joined by " AND ";
  // "" for fewer than two elements or no bounds. Skip style.
  std::u16string tklSQLFilter(const SafeArray& vParams);

  // ---- Codecs and named functions ---------------------------------------

  // The named function `name` (compared case-insensitively) applied to
  // `value`:
  //  - "DEFLATE": the LZW-compressed form of the text `value`, whose
  //    characters stand for bytes (Windows-1252, one byte each);
  //  - "INFLATE": the text that the compressed text `value` stands for; ""
  //    for a text that is not compressed ("" included), the part decoded so
  //    far for one cut short.
  // A non-String `value` is converted to text first (Empty is "").
  // Style none: 5 for an unknown name, for a character outside
  // Windows-1252, for an empty text to DEFLATE and for a damaged compressed
  // text; 13 or 94 when `value` cannot be converted to text.
  Variant tklGlobalVar(std::u16string_view name, const Variant& value);
  // (Designed here.) A new object of the library's own kind sName (any
  // case), for hosts that cannot construct one themselves:
  //  - "Collection": holding the elements of the array vValue, in order;
  //  - "XmlDocument": loaded from vValue, XML text when it starts with "<",
  //    else the path of an XML file;
  //  - "Resources": a copy of the built-in resource document.
  // Without vValue (or with Empty or Null) a Collection or document is
  // empty. Style none: 5 for an unknown name, a value "Resources" does not
  // take, or XML that is not well-formed; 53 for a missing file; 13 for a
  // value of the wrong type.
  std::shared_ptr<HostObject> tklGlobalObj(std::u16string_view sName,
                                           const std::optional<Variant>& vValue = std::nullopt);

  // (Designed here.) sValue encrypted for the current user, as printable
  // text that a REG_SZ value holds ("nvk1:" and base64); a fresh result
  // each call. The key is the file HKEY_CURRENT_USER.key beside the user's
  // settings, made on first use. Style none: 5 for a text longer than 361
  // characters (its form would not read back through the registry
  // getters); 70 or 75 for a key file that is not private or is damaged.
  std::u16string tklEncryptedValue(std::u16string_view sValue);
  // (Designed here.) The text tklEncryptedValue made sValue from, exactly.
  // Style none: 5 for a text that is not such a value, was changed, or was
  // encrypted with another key; 53 when the user has no key file; 70 or
  // 75 as tklEncryptedValue. Never a guessed text.
  std::u16string tklDecryptedValue(std::u16string_view sValue);

  // ---- Registry ---------------------------------------------------------
  // lRegKey is a root key (RegistryKeys, e.g. HKEY_CURRENT_USER), sRegSubKey
  // a path below it ("SOFTWARE\VANTEX\Global"), "" the key's default value
  // name. Names are case-insensitive. The getters never raise: a missing
  // key or value, or one longer than 1024 bytes, gives the default, written
  // back first when bAutoCreate is True. Unexpected failures are logged.

  // Deletes the key (with bKillAllSubKeys, its sub-keys first). The store's
  // code: 0 done, 2 not found, 5 refused (it still has sub-keys).
  int32_t tkrDeleteKey(int32_t lRegKey, std::u16string_view sRegSubKey,
                       bool bKillAllSubKeys = false);
  // The value as a Long: DWORDs as stored, text converted (0 when it is no
  // number; "2.50" gives 2, rounded half to even).
  int32_t tkrGetLong(int32_t lRegKey, std::u16string_view sRegSubKey,
                     std::u16string_view sValueName, int32_t lDefaultValue = 0,
                     bool bAutoCreate = false);
  // As tkrGetLong, as an Integer (0 when it does not fit).
  int16_t tkrGetInteger(int32_t lRegKey, std::u16string_view sRegSubKey,
                        std::u16string_view sValueName, int16_t iDefaultValue = 0,
                        bool bAutoCreate = false);
  // The value as text (DWORDs in decimal, binary data one character a byte).
  std::u16string tkrGetString(int32_t lRegKey, std::u16string_view sRegSubKey,
                              std::u16string_view sValueName,
                              std::u16string_view sDefaultValue = u"", bool bAutoCreate = false);
  // The value as read: text, byte text or a Long. Without vDefaultValue a
  // missing value gives "" and nothing is written.
  Variant tkrGetValue(int32_t lRegKey, std::u16string_view sRegSubKey,
                      std::u16string_view sValueName,
                      const std::optional<Variant>& vDefaultValue = std::nullopt,
                      bool bAutoCreate = false);
  // Stores vData, creating the key: Integer, Long and Byte as a DWORD;
  // Single, Double and Currency as text "#,##0.00" in the current locale;
  // text as text; "hex:01,ff" as bytes; "-" deletes the value (and never
  // creates the key); Boolean, Date and everything else as the empty text.
  // False when the store refused or the key could not be opened.
  bool tkrSetValue(int32_t lRegKey, std::u16string_view sRegSubKey, std::u16string_view sValueName,
                   const Variant& vData);
  // The number of keys in the subtree, the key itself included (a key with
  // two leaf sub-keys gives 3); 0 for a missing key.
  int32_t tkrSubKeyCount(int32_t lRegKey, std::u16string_view sRegSubKey);
  // sKeys receives the direct sub-key names (zero-based, case-insensitive
  // name order; no elements for a leaf); an erased array for a missing key.
  void tkrFindRegKeys(int32_t lRegKey, std::u16string_view sRegSubKey, SafeArray& sKeys);
  // (Designed here.) Makes everything stored so far under root lRegKey
  // survive a power cut (FlushSettings in norvik50/registry.h): 0 done, also
  // when there was nothing to flush; 1010 for a number that is no root key;
  // 1011 when the store failed (logged).
  int32_t tkrFlushKey(int32_t lRegKey);

  // ---- Window positions and column widths -------------------------------
  // Kept in HKEY_CURRENT_USER under "<key>\Positions\Forms\<form name>",
  // where <key> is sRegSubKey, or the base key when sRegSubKey is "" (it
  // does not become the base key). Sizes in twips. Forms and list views
  // are the objects of norvik50/form.h and norvik50/list_view.h; any other
  // object, Nothing, or one without a name raises 5.

  // (Designed here.) Stores the form's normal (restored) left, top, width
  // and height ("Left", "Top", "Width", "Height") and "WindowState": 2
  // for a maximised form, 0 otherwise (a minimised form is kept as a
  // normal one). False when the store refused a value.
  bool tklSaveWindowPos(const std::shared_ptr<HostObject>& oForm,
                        std::u16string_view sRegSubKey = u"");
  // (Designed here.) Places the form as tklSaveWindowPos stored it; with
  // bPositionOnly only left and top, the form keeping its size. A position
  // that no screen of today's desktop shows is moved onto the nearest
  // screen (the user interface's ScreenRects; none known: as stored).
  // False, the form untouched, when no complete position is stored (a
  // value missing, or a width or height below 1).
  bool tklLoadWindowPos(const std::shared_ptr<HostObject>& oForm,
                        std::u16string_view sRegSubKey = u"", bool bPositionOnly = false);
  // (Designed here.) Stores the width of each column of the list view as
  // "Col1", "Col2" ... in the sub-key named after the list view, below the
  // form's key. False when the store refused a value.
  bool tklSaveColWidths(const std::shared_ptr<HostObject>& oForm,
                        const std::shared_ptr<HostObject>& oListView,
                        std::u16string_view sRegSubKey = u"");
  // (Designed here.) Gives each column whose width tklSaveColWidths stored
  // that width; other columns keep theirs. True when at least one column
  // got a stored width.
  bool tklLoadColWidths(const std::shared_ptr<HostObject>& oForm,
                        const std::shared_ptr<HostObject>& oListView,
                        std::u16string_view sRegSubKey = u"");

  // ---- Windows and screens -----------------------------------------------
  // Sizes in twips (15 per pixel). Forms are the objects of
  // norvik50/form.h; any other object, or Nothing, raises 5. Without a
  // display (the headless user interface) there is no screen: its sizes
  // are 0, and the frame and menu bar are the classic ones.

  // (Designed here.) The width of the whole primary screen, panels
  // included; 0 when no screen is known.
  int32_t tklGetScreenWidth();
  // (Designed here.) The height of the whole primary screen, as
  // tklGetScreenWidth.
  int32_t tklGetScreenHeight();
  // (Designed here.) What a form's frame adds to its inner size: lWidth the
  // two side borders, lHeight the top and bottom borders and the caption.
  // The library counts every form's size with this frame (the classic one:
  // 120 and 390), whatever the window system draws.
  void tklGetFrameSize(int32_t& lWidth, int32_t& lHeight);
  // (Designed here.) The height of a form's menu bar in the toolkit's style.
  int32_t tklGetMenuHeight();
  // (Designed here.) The room inside oForm for its controls: its size
  // without frame, caption and menu bar, in lWidth and lHeight.
  void tklGetInternalFormSize(const std::shared_ptr<HostObject>& oForm, int32_t& lWidth,
                              int32_t& lHeight);
  // (Designed here.) Keeps oForm above every other window (bTopMost False:
  // lets it go behind them again). False when the form cannot be kept so.
  bool tklTopMost(const std::shared_ptr<HostObject>& oForm, bool bTopMost = true);
  // (Designed here.) Shows oForm in front of every other window and keeps
  // it there. False when it cannot be shown or kept on top.
  bool tklOpenTopMost(const std::shared_ptr<HostObject>& oForm);
  // (Designed here.) Keeps every window the application shows now above
  // other applications' windows (bTopMost False: releases them); the
  // number of windows changed (0 without a display).
  int32_t tklApplicationTopMost(bool bTopMost = true);
  // (Designed here.) tklOpenTopMost, then every other window the
  // application shows kept above other applications' windows too. False,
  // the other windows untouched, when oForm cannot be shown or kept on top.
  bool tklOpenApplicationTopMost(const std::shared_ptr<HostObject>& oForm);
  // (Designed here.) Cuts oForm's corners round with lRadius twips, kept
  // round when it is resized (0: square again). False when the form
  // cannot; 5 for a negative radius.
  bool tklRoundWindow(const std::shared_ptr<HostObject>& oForm, int32_t lRadius = 150);
  // (Designed here.) Gives oForm a soft drop shadow to its right and below
  // it (bShadow False: removes it). False when the form cannot.
  bool tklWindowShadow(const std::shared_ptr<HostObject>& oForm, bool bShadow = true);
  // (Designed here.) Whether the key or mouse button with the Windows
  // virtual-key code lVirtualKey (1 ... 254) is held down now, as the
  // application's windows saw it (the user interface's IsKeyDown). False
  // without a display and for a code with no key on Linux; 5 outside 1 ...
  // 254.
  bool tklIsKeyDown(int32_t lVirtualKey);
  // (Designed here.) Whether a mouse button of lButton is held down: 1 the
  // left, 2 the right, 4 the middle one, or a sum of them (any of them
  // down). 5 for 0 or another bit.
  bool tklIsMouseButtonDown(int32_t lButton = 1);
  // (Designed here.) The font families a form may use, zero-based, in the
  // toolkit's order; an empty array (0 to -1) without a display.
  SafeArray tklGetFontList();
  // (Designed here.) The top-most window on the desktop, of any program,
  // whose class (on X11 either part of WM_CLASS) is sClass and whose title
  // is sTitle, both without regard to case; an empty argument matches
  // every window. Its window id, 0 when there is none. 5 when both are
  // empty; 438 where other programs' windows cannot be seen.
  int32_t tklFindWindow(std::u16string_view sClass, std::u16string_view sTitle = u"");
  // (Designed here.) Waits, processing the host's events, until a window
  // of sClass is on the desktop; True when one is, False when lMilliSeconds
  // passed first (0 or less: one look). 5 for an empty class or a limit
  // above an hour; 438 as tklFindWindow.
  bool tklWaitForClassStarted(std::u16string_view sClass, int32_t lMilliSeconds = 10000);
  // (Designed here.) As tklWaitForClassStarted, until no window of sClass
  // is left.
  bool tklWaitForClassFinished(std::u16string_view sClass, int32_t lMilliSeconds = 10000);
  // (Designed here.) Keeps the pointer inside the rectangle (screen
  // coordinates, twips) until this object is destroyed, the application
  // stops being active or the member is called again; a width or height of
  // 0 releases it. False when the pointer cannot be confined here. 5 for a
  // negative width or height.
  bool tklClipCursor(int32_t lLeft = 0, int32_t lTop = 0, int32_t lWidth = 0, int32_t lHeight = 0);

  // ---- List views -------------------------------------------------------
  // oListView is a norvik50/list_view.h ListView (another object raises
  // invalid call, 5). Rows (lIndex) and columns (lColumn) count from 1,
  // column 1 being the item and the others its sub-items; a row or column
  // the list view does not have raises subscript out of range (9).
  //
  // (Designed here.) Gives the list view one column per header of sHeaders,
  // split at sSeparator; columns beyond them go. Answers the column count.
  int32_t tklSetListViewHeaders(const std::shared_ptr<HostObject>& oListView,
                                std::u16string_view sHeaders, std::u16string_view sSeparator = u"|");
  // (Designed here.) The column whose header is sHeader (without case); 0
  // when none.
  int32_t tklGetListViewCol(const std::shared_ptr<HostObject>& oListView,
                            std::u16string_view sHeader);
  // (Designed here.) The text of row lIndex in column lColumn.
  std::u16string tklListItemText(const std::shared_ptr<HostObject>& oListView, int32_t lIndex,
                                 int32_t lColumn = 1);
  // (Designed here.) The first row whose text in lColumn is sText (without
  // case); 0 when none.
  int32_t tklListItemIndex(const std::shared_ptr<HostObject>& oListView, std::u16string_view sText,
                           int32_t lColumn = 1);
  // (Designed here.) Checks (or with bChecked False clears) every row;
  // answers the number of rows.
  int32_t tklListCheckAllItems(const std::shared_ptr<HostObject>& oListView, bool bChecked = true);
  // (Designed here.) The number of checked rows; their indexes, ascending,
  // into lIndexes (a Long array from 0, empty when none) when given.
  int32_t tklListCheckedItems(const std::shared_ptr<HostObject>& oListView,
                              SafeArray* lIndexes = nullptr);
  // (Designed here.) Whether row lIndex is checked, after checking or
  // clearing it when bChecked is given.
  bool tklListItemChecked(const std::shared_ptr<HostObject>& oListView, int32_t lIndex,
                          std::optional<bool> bChecked = std::nullopt);
  // (Designed here.) The number of selected rows; their indexes into
  // lIndexes when given, as tklListCheckedItems.
  int32_t tklListSelectedItems(const std::shared_ptr<HostObject>& oListView,
                               SafeArray* lIndexes = nullptr);
  // (Designed here.) Selects (bSelected False: deselects) the rows vIndexes
  // names: one index or an array of them. With bDeselectOthers every other
  // row loses its selection. A bad index raises 9 before any row changes.
  // Answers the number of selected rows.
  int32_t tklListSelectItems(const std::shared_ptr<HostObject>& oListView, const Variant& vIndexes,
                             bool bSelected = true, bool bDeselectOthers = false);
  // (Designed here.) Whether row lIndex is selected, after selecting or
  // deselecting it when bSelected is given.
  bool tklListItemSelected(const std::shared_ptr<HostObject>& oListView, int32_t lIndex,
                           std::optional<bool> bSelected = std::nullopt);
  // (Designed here.) The number of selected rows.
  int32_t tklSelItemCount(const std::shared_ptr<HostObject>& oListView);
  // (Designed here.) The text in lColumn of the first selected row ("" when
  // none); its index (0 when none) into lIndex when given.
  std::u16string tklSelectedItem(const std::shared_ptr<HostObject>& oListView, int32_t lColumn = 1,
                                 int32_t* lIndex = nullptr);
  // (Designed here.) Whether any row is selected.
  bool tklHasSelectedItem(const std::shared_ptr<HostObject>& oListView);
  // (Designed here.) Whether the row vItem names is selected: a number is
  // the row's index, a text the first row with that item text (without
  // case). False, not an error, when there is no such row.
  bool tklIsSelected(const std::shared_ptr<HostObject>& oListView, const Variant& vItem);
  // (Designed here.) Sorts the rows by lColumn, ascending, or descending
  // when already sorted ascending by it (a column header's second click).
  // iSortType: 0 as the column's cells read (numbers, else dates, else
  // text), 1 text, 2 numbers, 3 dates, in the current locale. Answers the
  // order now shown: 0 ascending, 1 descending.
  int16_t tklSortListView(const std::shared_ptr<HostObject>& oListView, int32_t lColumn,
                          int16_t iSortType = 0);
  // (Designed here.) The incremental search of a person typing into the
  // list: the first row from lStart on (0: the selected row, else the
  // first; wrapping round) whose text in lColumn begins with sTyped without
  // case; one character typed again cycles through the rows beginning with
  // it. With bSelect the found row becomes the only selected one. Answers
  // the row, 0 when none.
  int32_t tklSearchListItem(const std::shared_ptr<HostObject>& oListView, std::u16string_view sTyped,
                            int32_t lStart = 0, int32_t lColumn = 1, bool bSelect = true);
  // (Designed here.) The rows (bSelectedOnly: the selected ones), after a
  // line of headers with bHeaders, as tab-separated text, each row ended by
  // CR LF: what a spreadsheet pastes.
  std::u16string tklCopyListView(const std::shared_ptr<HostObject>& oListView, bool bHeaders = true,
                                 bool bSelectedOnly = false);
  // (Designed here.) Turns the style bits of lStyle (ListViewStyle of
  // norvik50/list_view.h: 1 full-row select, 2 grid lines, 4 check boxes,
  // 8 header drag and drop, 16 hot tracking, 32 no headers, 64 single
  // selection, 128 full text of cut-off cells as tooltip) on, or off with
  // bOn False; lStyle 0 changes nothing. Answers the bits now in effect.
  // Another bit raises 5.
  int32_t tklSetListViewStyle(const std::shared_ptr<HostObject>& oListView, int32_t lStyle,
                              bool bOn = true);
  // (Designed here.) The tooltip the list view shows for row lIndex in
  // lColumn, after setting it to sText when given ("" takes it away).
  std::u16string tklShowListViewTooltip(const std::shared_ptr<HostObject>& oListView,
                                        int32_t lIndex, int32_t lColumn = 1,
                                        std::optional<std::u16string> sText = std::nullopt);

  // ---- Languages and resources ------------------------------------------
  // A non-empty sRegKey becomes the library's base key first. Documents,
  // nodes, lists and tab strips are the objects of norvik50/xml.h and
  // norvik50/host_controls.h; another object (or Nothing) reads as a
  // failure: "" or an unfilled control.

  // The current language id: "Language", else "DefaultLanguage" under
  // HKEY_CURRENT_USER\base key, else the chooser of the user interface,
  // else German (1); a missing "Language" is then stored. Any stored id is
  // returned, also one without a name in LibLanguageConsts.
  LibLanguageConsts tklLanguage(std::u16string_view sRegKey = u"");
  // "langid;name;extension" of each built-in language whose resource
  // library exists next to "ResourceDLL" (read under
  // HKEY_LOCAL_MACHINE\sRegKey as passed, the root when it is ""), in the
  // built-in order; an empty array (0 to -1) when none exists.
  SafeArray tklLanguages(std::u16string_view sRegKey = u"");
  // The two-letter code of the current language ("DE"); "" when the
  // built-in table does not know it.
  std::u16string tklLangCode(std::u16string_view sRegKey = u"");
  // String lResID of the current language's resource library
  // ("ResourceDLL" with %L replaced), through the ANSI code page and cut
  // at 32766 characters; "" when absent. A library that cannot be loaded
  // is logged (-2147221504) with a message box, and "" returned.
  std::u16string tklRes(int32_t lResID, std::u16string_view sRegKey = u"");
  // Custom resource "#lResID" of type sResType of the current language's
  // resource library (or the file "DebugXML_<id>" names) as Windows-1252
  // text, everything before its first "<" dropped. Failures are logged
  // (53 for a missing file; -2147221504 with a message box when the
  // library cannot be loaded or no library is configured) and give "".
  std::u16string tklResource(int32_t lResID, std::u16string_view sResType,
                             std::u16string_view sRegKey = u"");
  // (Designed here.) Fills the form's texts that name a resource (a Form
  // of norvik50/form.h; any other object raises 5) in the current
  // language: a number names a string of the resource library, as tklRes
  // reads it ("1001"), any other id an item of the built-in resource
  // document ("cmdOK"). Captions and tabs keep the "&" of their access
  // key; titles, tooltips and column headers show the text without it. A
  // missing or empty resource leaves the designed text. The library is
  // loaded once per call (a failure is logged once, with a message box, as
  // tklRes does). Returns the number of texts set.
  int32_t tklLoadFormCaptions(const std::shared_ptr<HostObject>& oForm,
                              std::u16string_view sRegKey = u"");
  // The text of the first /resources/item with that name (and, unless
  // iNumber is -1, that number) in oDOMDoc; "" when none.
  std::u16string tklXMLRes(const std::shared_ptr<HostObject>& oDOMDoc, std::u16string_view sName,
                           int16_t iNumber = -1);
  // Attribute sProp of the node; "" when absent.
  std::u16string tklXMLItemProp(const std::shared_ptr<HostObject>& oXMLNode,
                                std::u16string_view sProp);
  // sSource with "%d" filled by numbers, dates and Booleans and "%s" by
  // everything else, left to right, each kind on its own; one element
  // "^a|b" stands for the texts a and b; then \t, \r, \n become control
  // characters. Never fails.
  std::u16string tklResConv(std::u16string_view sSource, const SafeArray& Vars);
  // Clears the list and adds each item named sName: its text as a row, its
  // number as the row's item data. Errors end it quietly.
  void tklXMLFillList(const std::shared_ptr<HostObject>& oDOMDoc,
                      const std::shared_ptr<HostObject>& oList, std::u16string_view sName);
  // Clears the combo and adds the items sResID numbered 0, 1, 2 ... up to
  // the first gap: the text before any "|", led by the number formatted
  // with sInclNoFormat when that is not empty; item data is the number.
  void tklXMLFillComboWithResList(const std::shared_ptr<HostObject>& oDOMDoc,
                                  const std::shared_ptr<HostObject>& oCombo,
                                  std::u16string_view sResID,
                                  std::u16string_view sInclNoFormat = u"");
  // Clears the strip's tabs and adds one per item named sName: key "T" and
  // the number, caption the text. A duplicate key ends it quietly.
  void tklXMLFillTabStrip(const std::shared_ptr<HostObject>& oDOMDoc,
                          const std::shared_ptr<HostObject>& oTab, std::u16string_view sName);

  // ---- List boxes, option groups, tabs and grids -------------------------
  // On the host's controls (norvik50/host_controls.h). An object of the
  // wrong kind raises 5; a row index that names no row raises 9.

  // (Designed here.) The item data of row lIndex (0-based), or of the
  // first chosen row for -1; -1 when lIndex is -1 and no row is chosen.
  int32_t tklListBoxData(const std::shared_ptr<HostObject>& oList, int32_t lIndex = -1);
  // (Designed here.) The sum of the item data of the chosen rows (of all
  // rows with bAllItems): the flags a list of bit values stands for.
  // Raises 6 when the sum leaves a Long.
  int32_t tklListBoxItemSum(const std::shared_ptr<HostObject>& oList, bool bAllItems = false);
  // (Designed here.) Chooses (releases, with bSelect False) the first row
  // whose item data is the number vFind, or whose text is the text vFind
  // without regard to case. The row's index; -1, with the list untouched,
  // when none matches. 13 for a vFind that is neither.
  int32_t tklSelectListBoxItem(const std::shared_ptr<HostObject>& oList, const Variant& vFind,
                               bool bSelect = true);
  // (Designed here.) The number of the checked button of the option
  // group; -1 when none is checked.
  int16_t tklGetOptionIndex(const std::shared_ptr<HostObject>& oGroup);
  // (Designed here.) Shows the frame of oTab's tab in front and hides the
  // other frames of oFrames (the frames in tab order). The frame shown, -1
  // when no tab is in front (every frame hidden); 9 when the tab in front
  // has no frame.
  int16_t tklOnTabClick(const std::shared_ptr<HostObject>& oTab,
                        const std::shared_ptr<HostObject>& oFrames);
  // (Designed here.) Makes column iCol (-1: the last) of oGrid fill what
  // the other columns leave of the grid's visible width, at least
  // lMinWidth twips. The column's new width in twips.
  int32_t tklResizeGridCol(const std::shared_ptr<HostObject>& oGrid, int16_t iCol = -1,
                           int32_t lMinWidth = 0);
  // (Designed here.) Aligns the text of column iCol (-1: every column) of
  // oGrid: iAlignment 0 left, 1 right, 2 centre; 5 for another.
  void tklAlignText(const std::shared_ptr<HostObject>& oGrid, int16_t iAlignment,
                    int16_t iCol = -1);
  // (Designed here.) True when vObject stands for a control of a form (a
  // text field, list, tab strip, option group, frame set, grid, list view
  // or anything else that takes the focus); False for a form, any other
  // object, Nothing and a value that is no object. Never fails.
  bool tklIsControl(const Variant& vObject);

  // ---- Dialogs ----------------------------------------------------------
  // Shown through the installed user interface (norvik50/host.h); the
  // headless one shows nothing and answers as a dialog that failed. Answer
  // codes: 1 OK, 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6 Yes, 7 No, 0 for
  // the close box, 10 when the dialog failed.

  // The rich message box (frmMsgBox): sPrompt is rich-text source and may
  // end in "|width|height" (twips); lButtons the message-box style word. An
  // empty *sTitle becomes the application title and is written back.
  // Explicit sizes above 0 win over those in the prompt. 10 on any failure
  // (a size piece that is no number included).
  int32_t tklExtMsgBox(std::u16string_view sPrompt, int32_t lButtons = 0,
                       std::u16string* sTitle = nullptr, int32_t lWidthInTwips = 0,
                       int32_t lHeightInTwips = 0);
  // Yes/no question through tklExtMsgBox (style 36, No the default with
  // bDefaultNo). True exactly for Yes.
  bool tklExtAsk(const Variant& sQuestion, std::u16string* sTitle = nullptr,
                 int32_t lWidthInTwips = 0, int32_t lHeightInTwips = 0, bool bDefaultNo = false);
  // The standard message box (frmStdMsg): a prompt in PromptColor (0..15 of
  // the sixteen-colour palette), FontSize points, bold with FontBold, and a
  // detail text below it. An empty Title is the application title. 10 when
  // it fails, at once and without a box for a PromptColor outside 0..15.
  int32_t tklMsgBox(std::u16string_view Prompt, std::u16string_view Detail, int32_t Buttons = 0,
                    std::u16string_view Title = u"", int32_t PromptColor = 0, int16_t FontSize = 10,
                    bool FontBold = true);
  // The window system's yes/no question; True exactly for Yes. A missing
  // vTitle is the application title.
  bool tklAsk(const Variant& sQuestion, const std::optional<Variant>& vTitle = std::nullopt,
              bool bDefaultNo = false);
  // The answer box with one button per element of Buttons (captions as
  // given, "&" marks the access letter). Returns the chosen button's
  // position (1 for the first element, whatever the lower bound), 0 for
  // Escape, the close box or a box that could not be shown.
  int16_t tklGetAnswer(std::u16string_view Prompt, std::u16string_view Detail,
                       std::u16string_view Title, const SafeArray& Buttons);

  // The input form: Prompt above a one-line box, Title as the caption
  // ("08|Word": at most 8 characters, caption "Word"), OK and Cancel in the
  // current language. The box starts with Default (empty when Value is
  // Empty, Null or ""), never with Value. OK answers 1 and sets Value to
  // the box's text as text; when Value held a number (Integer, Long,
  // Single, Double) it gets the number at the start of the text ("." the
  // decimal point) written as text. Cancel, the close box and a form that
  // cannot be shown answer 2 and leave Value alone.
  int32_t tklInputValue(std::u16string_view Prompt, std::u16string_view Title, Variant& Value,
                        std::u16string_view Default = u"");
  // tklInputValue with every typed character shown as "*"; Value gets the
  // clear text.
  int32_t tklInputCode(std::u16string_view Prompt, std::u16string_view Title, Variant& Value,
                       std::u16string_view Default = u"");

  // The zoom editor for a host text field (a TextControl of type TextBox,
  // ComboBox, Node, ListItem, ListBox, QSCombo or DCCombo, any case): its
  // text in a large window captioned Description ("Zoom" when empty),
  // enabled and locked as the source unless IgnoreAttributes, with its
  // tooltip. The source's text is set afterwards: the edited text after
  // OK, the first text otherwise; then its whole text is selected and it
  // gets the focus. The window's size is kept under the base key +
  // "\Positions\Forms\ZoomWindow" ("Width", "Height", twips). Raises 5
  // for any other object, with nothing shown.
  void tklZoomTextBox(const std::shared_ptr<HostObject>& Source,
                      std::u16string_view Description = u"", bool IgnoreAttributes = false);

  // ---- Control helpers --------------------------------------------------

  // Selects the whole text of a text field (a TextControl); with
  // bChangeSelection a field whose whole text is selected gets the caret at
  // the end instead. A StatusPanel's text becomes the field's tooltip.
  // Never raises: other objects, Nothing and a failing step are passed over.
  void tklSelectField(const std::shared_ptr<HostObject>& oControl, bool bChangeSelection = false,
                      const std::shared_ptr<HostObject>& oStatusPanel = nullptr);
  // Gives a control that can take it (a Focusable: a text field, and the
  // Qt lists and tab strips) the input focus. Never raises.
  void tklSetFocus(const std::shared_ptr<HostObject>& oControl);

  // ---- Forms and fields -------------------------------------------------

  // (Designed here.) Whether the form vForm names is open: a text is a
  // form's name, compared without case with the forms the user interface
  // shows now (OpenForms); a Form object answers for itself. A closed
  // form is not open. False for Empty, Null, "", Nothing and any other
  // object; 13 for a value of another type.
  bool tklIsFormOpen(const Variant& vForm);
  // (Designed here.) The container oControl sits in (norvik50/container.h):
  // with sKind "" the one that holds it directly (a frame, a tab page, a
  // page, or the form); else the nearest one up whose type ("Frame",
  // "TabPage", "Page", "Form") or name is sKind, without case. Nothing
  // when none is. 5 when oControl is no control placed on a form.
  std::shared_ptr<HostObject> tklGetContainer(const std::shared_ptr<HostObject>& oControl,
                                              std::u16string_view sKind = u"");
  // (Designed here.) For a field's KeyDown handler: when iKeyCode is F2
  // (113) with no Shift, Ctrl or Alt in iShift (1, 2, 4), opens the zoom on
  // oControl as tklZoomTextBox does (sDescription its caption,
  // bIgnoreAttributes as there), then sets iKeyCode to 0 so that the host's
  // own handling ignores the key, and answers True. Any other key answers
  // False and changes nothing. Raises what tklZoomTextBox raises (5 for a
  // control it cannot zoom), the key code then kept.
  bool tklCheckF2Key(const std::shared_ptr<HostObject>& oControl, int16_t& iKeyCode,
                     int16_t iShift = 0, std::u16string_view sDescription = u"",
                     bool bIgnoreAttributes = false);
  // (Designed here.) For a control's MouseMove handler: True when the
  // point nX, nY (twips from the control's top left corner) lies on
  // oControl (a MouseHolder of norvik50/mouse_pointer.h); the control then
  // holds the mouse, so that it is told of the move that leaves it. False
  // for a point off it, and the control lets the mouse go. 5 for another
  // object.
  bool tklCheckMouseMove(const std::shared_ptr<HostObject>& oControl, float nX, float nY);
  // (Designed here.) For a control's MouseDown and MouseUp handlers: True
  // when the press (or its release) at nX, nY lies on oControl; False for
  // one off it (a press let go outside the control is no click), and the
  // control lets the mouse go. Never takes hold of it. 5 for another
  // object.
  bool tklCheckMouseDown(const std::shared_ptr<HostObject>& oControl, float nX, float nY);

  // ---- Folder chooser and file dialog -------------------------------------

  // Lets the user pick a folder. With sDefaultPath the library's form
  // frmChoosePath starts there (in the current folder when it does not
  // exist), captioned sCaption when that is not empty, its captions German
  // for language 1 and English for every other; without it the toolkit's
  // folder browser titled sCaption. Returns the folder (Windows-style), ""
  // when nothing was chosen or no dialog could be shown. Never raises.
  std::u16string tklChoosePath(std::u16string_view sDefaultPath = u"",
                               std::u16string_view sCaption = u"");
  // The open (bOpen) or save file dialog: sFilter "Description|pattern|...",
  // title sDlgTitle, starting with sFilename in sInitDir (else in the
  // folder part of sFilename). lFlags 0 means 2626560 for opening (the
  // file must exist) and 2663430 for saving (ask before replacing, ask
  // before creating). lHWndParent, when not 0, is the owner window. True
  // with sFilename set to the chosen file after OK; False, sFilename as
  // it was, when cancelled or when the dialog failed. Never raises.
  bool tklFileDialog(std::u16string_view sFilter, std::u16string_view sDlgTitle,
                     std::u16string& sFilename, int32_t lFlags = 0, int32_t lHWndParent = 0,
                     std::u16string_view sInitDir = u"", bool bOpen = true);

  // The progress message window (frmMessage), one for the process. Opens
  // it or changes it; every argument is optional and a missing one
  // leaves its property alone. Title: the caption (missing: a fresh window
  // takes the application title, a hidden one keeps its own). Prompt: the
  // message as rich text, shown centred ("{\qc " + text + "}"); Empty,
  // Null, "" and 0 keep the old message. ShowCounter: the bar shows
  // exactly when it equals True. Sizes and the message top in twips,
  // taken when they differ from the window's. MaxCount becomes the
  // maximum when above the minimum; CurCount the bar's value, raising the
  // maximum when past it; both receive their values as Longs. A window
  // that is not visible is shown, owned by the window ParentHwnd (an X11
  // window id; 0 for the active window) and top-most unless
  // OpenAsTopMost is false; a visible one stays where the user put it.
  // Pending window events are processed unless NoEvents. Never raises: a
  // value that cannot be read skips its step.
  void tklSendMessage(const std::optional<Variant>& Prompt = std::nullopt,
                      const std::optional<Variant>& Title = std::nullopt,
                      const std::optional<Variant>& ShowCounter = std::nullopt,
                      Variant* CurCount = nullptr, Variant* MaxCount = nullptr,
                      int32_t ParentHwnd = 0,
                      const std::optional<Variant>& WidthInTwips = std::nullopt,
                      const std::optional<Variant>& HeightInTwips = std::nullopt,
                      const std::optional<Variant>& MsgTopInTwips = std::nullopt,
                      bool NoEvents = false, bool OpenAsTopMost = true);
  // Hides the progress window, keeping its text and counter for the next
  // tklSendMessage; nothing when it is not loaded.
  void tklHideMessage();
  // Unloads the progress window: the next tklSendMessage starts from the
  // designed form. Nothing when it is not loaded.
  void tklClearMessage();
  // Sets the "MousePointer" of oSource (a MousePointerControl) to 11, the
  // hourglass, for True and to 0 for False, then processes pending events
  // until the object reports it. Nothing for Nothing or any other object;
  // never raises.
  void tklShowWait(const std::shared_ptr<HostObject>& oSource, bool value);
  // Waits lMilliSeconds. Inactive: the thread sleeps, processing nothing
  // (no wait for 0 or less). Active: processes pending window events until
  // the seconds since midnight exceed the start + lMilliSeconds / 1000 in
  // single precision; a wait that spans midnight lasts until the clock
  // passes that value on the next day.
  void tklWait(int32_t lMilliSeconds, bool bIsActive = true);

  // ---- Pictures ---------------------------------------------------------
  // Pictures are the objects of norvik50/picture.h: a Picture, or a canvas
  // a host hands in (a Qt picture box or form background, which answers
  // what it shows now). Another object, or Nothing where a picture is
  // needed, raises 5. Opacities are percentages 0 ... 100 and colours the
  // runtime's RGB Longs (red in the low byte); others raise 5.

  // (Designed here.) A new Picture: a copy of what oPicture shows with each
  // pixel's alpha scaled to lOpacity percent. Pixels of the colour
  // vTransparentColor (when given) become fully transparent; with
  // vBackColor the copy is drawn over that colour and comes out opaque.
  std::shared_ptr<HostObject> tklGetSemiTransparentPicture(
      const std::shared_ptr<HostObject>& oPicture, int32_t lOpacity = 50,
      const Variant& vTransparentColor = Variant(), const Variant& vBackColor = Variant());
  // (Designed here.) Draws oPicture onto oTarget (a Picture, a picture box
  // or a form's background) with its top left at lLeft, lTop and lOpacity
  // percent, stretched to lWidth x lHeight when those are above 0. All
  // positions and sizes in twips (15 a pixel, rounded down). False when
  // the target can no longer be drawn on (its control is gone); 5 for a
  // negative size.
  bool glbDrawSemiTransparentPicture(const std::shared_ptr<HostObject>& oTarget,
                                     const std::shared_ptr<HostObject>& oPicture, int32_t lLeft = 0,
                                     int32_t lTop = 0, int32_t lOpacity = 50, int32_t lWidth = 0,
                                     int32_t lHeight = 0);
  // (Designed here.) Makes oPicture the icon of row lRow (from 1) of the
  // list view oListView, or of every row for lRow 0; Nothing removes the
  // icon. Answers the number of rows changed. 9 for a row the list view
  // does not have; 5 for a list view that shows no icons.
  int32_t tklCopyImageIntoListView(const std::shared_ptr<HostObject>& oListView,
                                   const std::shared_ptr<HostObject>& oPicture, int32_t lRow = 0);

  // ---- State shared with the member families ----------------------------

  // The object's current log file name ("nvk50err" after creation).
  const std::u16string& current_log_name() const noexcept { return log_name_; }

 private:
  std::u16string system_dir_;  // cache of tklSystemDir
  std::u16string temp_dir_;    // cache of tklTempDir
  std::u16string log_name_;    // current log file name
  std::unique_ptr<PropertyBag> properties_;  // tklProperty; made on first let
};

}  // namespace norvik50

#endif  // NORVIK50_LIB_H_
