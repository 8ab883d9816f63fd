// The library object for .NET hosts. Its members (Lib.Members.g.cs) are
// generated from the member table; each calls Invoke, which converts the
// arguments, calls the member by name through the C interface, writes the
// by-reference arguments back into the argument array and raises
// LibException for a failed member.
using System;
using System.Collections.Generic;
using System.Globalization;
using System.Reflection;
using System.Runtime.InteropServices;

namespace Norvik50 {
  /// <summary>One form of a member as the member table gives it.</summary>
  public sealed class MemberInfo {
    public string Name;
    public int How;  // 1 method, 2 property get, 4 property let
    public int ResultType;
    public bool DesignedHere;
    public ParamInfo[] Params;
  }

  public sealed class ParamInfo {
    public string Name;
    public int Type;
    public bool ByRef;
    public bool Optional;
    public object Default;  // Missing.Value when it has none
  }

  public partial class Lib : IDisposable {
    public const int Method = 1, PropertyGet = 2, PropertyLet = 4;
    public const int DialogsHeadless = 0, DialogsQt = 1;

    private IntPtr lib_;

    /// <summary>Creates the library object ("... initialized." in the log).</summary>
    public Lib() {
      var err = new NativeError();
      if (NativeMethods.norvik50_lib_new(out lib_, ref err) != 0) throw Failure(ref err);
    }

    ~Lib() { Free(); }

    public void Dispose() {
      Free();
      GC.SuppressFinalize(this);
    }

    private void Free() {
      if (lib_ != IntPtr.Zero) NativeMethods.norvik50_lib_free(lib_);
      lib_ = IntPtr.Zero;
    }

    public static string Version {
      get { return Marshal.PtrToStringAnsi(NativeMethods.norvik50_version()); }
    }

    /// <summary>Qt forms (DialogsQt) or immediate failed answers (DialogsHeadless).</summary>
    public static void SetDialogs(int which) {
      var err = new NativeError();
      if (NativeMethods.norvik50_set_dialogs(which, ref err) != 0) throw Failure(ref err);
    }

    public static void SetHostApplication(string name, string title = "") {
      Values.Check(NativeMethods.norvik50_set_host_application(name, title ?? ""));
    }

    /// <summary>
    /// Calls member `name` by name (how: Method, PropertyGet, PropertyLet or
    /// Method | PropertyGet). Missing.Value omits an argument. The
    /// arguments the member passes by reference hold, afterwards, what it
    /// left in them.
    /// </summary>
    public object Invoke(string name, int how, object[] args) {
      bool[] byRef = ByRefFlags(name, how);
      var slots = new IntPtr[args.Length];
      IntPtr result = IntPtr.Zero;
      try {
        for (int i = 0; i < args.Length; ++i) slots[i] = Values.ToNative(args[i]);
        var err = new NativeError();
        // After Dispose the handle is zero, which the library refuses (91).
        if (NativeMethods.norvik50_invoke(lib_, name, how, slots, (UIntPtr)slots.Length,
                                          out result, ref err) != 0) {
          throw Failure(ref err);
        }
        for (int i = 0; i < args.Length && i < byRef.Length; ++i) {
          if (byRef[i] && slots[i] != IntPtr.Zero) args[i] = Values.FromNative(slots[i]);
        }
        return result == IntPtr.Zero ? null : Values.FromNative(result);
      } finally {
        foreach (IntPtr slot in slots) NativeMethods.norvik50_value_free(slot);
        NativeMethods.norvik50_value_free(result);
      }
    }

    private static LibException Failure(ref NativeError err) {
      var e = new LibException(err.Number, Marshal.PtrToStringAnsi(err.Description) ?? "",
                               Marshal.PtrToStringAnsi(err.Source) ?? "");
      NativeMethods.norvik50_error_clear(ref err);
      return e;
    }

    // ---- The member table

    private static List<MemberInfo> members_;
    private static readonly object tableLock_ = new object();

    /// <summary>Every member form of the loaded library.</summary>
    public static IList<MemberInfo> Members {
      get {
        lock (tableLock_) {
          if (members_ == null) members_ = ReadMembers();
          return members_.AsReadOnly();
        }
      }
    }

    // Which arguments each member form passes by reference, by form and
    // name (any case, as calls by name are): read once, then without a lock.
    private sealed class ByRefTable {
      internal readonly Dictionary<string, bool[]>[] ByForm = new Dictionary<string, bool[]>[5];
      internal ByRefTable() {
        foreach (int form in forms_) {
          ByForm[form] = new Dictionary<string, bool[]>(StringComparer.OrdinalIgnoreCase);
        }
        foreach (MemberInfo m in Members) {
          var flags = new bool[m.Params.Length];
          for (int i = 0; i < flags.Length; ++i) flags[i] = m.Params[i].ByRef;
          ByForm[m.How][m.Name] = flags;
        }
      }
    }
    private static readonly Lazy<ByRefTable> byRef_ = new Lazy<ByRefTable>(() => new ByRefTable());
    private static readonly bool[] none_ = new bool[0];
    private static readonly int[] forms_ = { Method, PropertyGet, PropertyLet };

    private static bool[] ByRefFlags(string name, int how) {
      ByRefTable table = byRef_.Value;
      bool[] found;
      foreach (int form in forms_) {
        if ((how & form) != 0 && table.ByForm[form].TryGetValue(name, out found)) return found;
      }
      return none_;
    }

    private static List<MemberInfo> ReadMembers() {
      var list = new List<MemberInfo>();
      ulong count = (ulong)NativeMethods.norvik50_member_count();
      for (ulong m = 0; m < count; ++m) {
        NativeMember info;
        Values.Check(NativeMethods.norvik50_member_get((UIntPtr)m, out info));
        var ps = new ParamInfo[(int)(ulong)info.ParamCount];
        for (int p = 0; p < ps.Length; ++p) {
          NativeParam param;
          Values.Check(NativeMethods.norvik50_member_param((UIntPtr)m, (UIntPtr)p, out param));
          ps[p] = new ParamInfo {
            Name = Marshal.PtrToStringAnsi(param.Name), Type = param.Type,
            ByRef = param.ByRef != 0, Optional = param.Optional != 0,
            Default = param.DefaultValue == IntPtr.Zero ? Missing.Value
                                                         : Values.FromNative(param.DefaultValue)
          };
        }
        list.Add(new MemberInfo {
          Name = Marshal.PtrToStringAnsi(info.Name), How = info.How,
          ResultType = info.ResultType, DesignedHere = info.DesignedHere != 0, Params = ps
        });
      }
      return list;
    }

    // ---- Helpers of the generated members

    // An optional argument passed by value: null omits it.
    private static object Given(object value) { return value ?? Missing.Value; }

    // A result or written-back argument as the declared .NET type.
    private static T As<T>(object value) {
      if (value == null || value is DBNull) return default(T);
      if (value is T) return (T)value;
      return (T)Convert.ChangeType(value, typeof(T), CultureInfo.InvariantCulture);
    }
  }
}
