// Dispatch entries of the library services, the log and the path members.
#include "core/file_info_record.h"
#include "core/member_builder.h"
#include "core/member_registry.h"
#include "norvik50/lib.h"

namespace norvik50 {

void RegisterCoreMembers(MemberTable& table) {
  using namespace members;

  table.Add(Method("tklSystemDir", {}, S, [](LIB& lib, CallArgs&) {
    return Variant(lib.tklSystemDir());
  }));
  table.Add(Method("tklTempDir", {}, S, [](LIB& lib, CallArgs&) {
    return Variant(lib.tklTempDir());
  }));
  table.Add(Get("tklRegKey", {}, S, [](LIB& lib, CallArgs&) {
    return Variant(lib.tklRegKey());
  }));
  table.Add(Let("tklRegKey", {Ref("sNewValue", S)}, [](LIB& lib, CallArgs& a) {
    lib.tklRegKey(a.str(0));
    return Variant();
  }));

  table.Add(DesignedHere(Get("tklProperty", {In("sName", S)}, V,
                             [](LIB& lib, CallArgs& a) { return lib.tklProperty(a.str(0)); })));
  table.Add(DesignedHere(
      Let("tklProperty", {In("sName", S), In("vNewValue", V)}, [](LIB& lib, CallArgs& a) {
        lib.tklProperty(a.str(0), a[1]);
        return Variant();
      })));

  table.Add(Method("tklLogAction", {In("sMessage", S), Opt("sLogFileName", S, Variant(u""))},
                   VarType::kEmpty, [](LIB& lib, CallArgs& a) {
                     lib.tklLogAction(a.str(0), a.str(1));
                     return Variant();
                   }));
  table.Add(Method("tklLogError",
                   {Ref("lError", L), Ref("sErrDesc", S), Ref("sErrSrc", S),
                    Opt("bShowMsgBox", B, Variant(false), true)},
                   VarType::kEmpty, [](LIB& lib, CallArgs& a) {
                     lib.tklLogError(a.i32(0), a.str(1), a.str(2), a.flag(3));
                     return Variant();
                   }));
  table.Add(Method("tklErrorMsg",
                   {In("lError", L), In("sErrorDesc", S), In("sErrorSource", S)},
                   VarType::kEmpty, [](LIB& lib, CallArgs& a) {
                     lib.tklErrorMsg(a.i32(0), a.str(1), a.str(2));
                     return Variant();
                   }));

  table.Add(Method("tklGetFullPath", {In("sPath", S), In("sFile", S)}, S,
                   [](LIB& lib, CallArgs& a) {
                     return Variant(lib.tklGetFullPath(a.str(0), a.str(1)));
                   }));
  table.Add(Method("tklFileExists", {In("sFilename", S)}, B, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tklFileExists(a.str(0)));
  }));
  // The folder attribute travels unchanged as the Boolean's value (16).
  table.Add(Method("tklPathExists", {In("sPath", S)}, B, [](LIB& lib, CallArgs& a) {
    return Variant::Boolean(lib.tklPathExists(a.str(0)));
  }));
  table.Add(Method("tklSeparateFile",
                   {In("sFullName", S), RecordRef("tFileInfo", kFileInfoType)}, B,
                   [](LIB& lib, CallArgs& a) {
                     typFileInfo info = FileInfoFromRecord(a[1].as_record());
                     const bool split = lib.tklSeparateFile(a.str(0), info);
                     WriteBack(a, 1, Variant(ToRecord(info)));
                     return Variant(split);
                   }));

  table.Add(DesignedHere(Method(
      "tklGetRelativePath", {In("sPath", S), Opt("sBasePath", S, Variant(u""))}, S,
      [](LIB& lib, CallArgs& a) { return Variant(lib.tklGetRelativePath(a.str(0), a.str(1))); })));
  table.Add(DesignedHere(Method(
      "tklGetAbsolutePath", {In("sPath", S), Opt("sBasePath", S, Variant(u""))}, S,
      [](LIB& lib, CallArgs& a) { return Variant(lib.tklGetAbsolutePath(a.str(0), a.str(1))); })));
  table.Add(
      DesignedHere(Method("tklChangeToPath", {In("sPath", S), OptMissing("sCurrentPath", S, true)},
                          B, [](LIB& lib, CallArgs& a) {
                            std::u16string current;
                            const bool changed = lib.tklChangeToPath(a.str(0), &current);
                            if (a.has(1)) WriteBack(a, 1, Variant(current));
                            return Variant(changed);
                          })));
  table.Add(DesignedHere(Method(
      "tklFindFile", {In("sPath", S), In("sPattern", S), Opt("bSubFolders", B, Variant(false))}, S,
      [](LIB& lib, CallArgs& a) {
        return Variant(lib.tklFindFile(a.str(0), a.str(1), a.flag(2)));
      })));
  table.Add(DesignedHere(Method(
      "tklCheckAttributes",
      {In("sPath", S), Opt("lAttributes", L, Variant(int32_t{0})), OptMissing("lActual", L, true)},
      B, [](LIB& lib, CallArgs& a) {
        int32_t actual = 0;
        const bool has = lib.tklCheckAttributes(a.str(0), a.i32(1), &actual);
        if (a.has(2)) WriteBack(a, 2, Variant(actual));
        return Variant(has);
      })));
  table.Add(DesignedHere(Get("tklFileStream", {In("sFilename", S)}, S, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tklFileStream(a.str(0)));
  })));
  table.Add(DesignedHere(
      Let("tklFileStream", {In("sFilename", S), In("sData", S)}, [](LIB& lib, CallArgs& a) {
        lib.tklFileStream(a.str(0), a.str(1));
        return Variant();
      })));
}

}  // namespace norvik50
