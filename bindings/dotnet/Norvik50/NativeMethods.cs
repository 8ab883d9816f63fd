// The C interface of libnorvik50 (norvik50/norvik50.h) as P/Invoke
// declarations. "norvik50" resolves to libnorvik50.so.0 through the
// assembly's dllmap on Mono and to libnorvik50.so on .NET.
using System;
using System.Runtime.InteropServices;

namespace Norvik50 {
  [StructLayout(LayoutKind.Sequential)]
  internal struct NativeError {
    public int Number;
    public IntPtr Description;
    public IntPtr Source;
  }

  [StructLayout(LayoutKind.Sequential)]
  internal struct NativeMember {
    public IntPtr Name;
    public int How;
    public ushort ResultType;
    public int DesignedHere;
    public UIntPtr ParamCount;
  }

  [StructLayout(LayoutKind.Sequential)]
  internal struct NativeParam {
    public IntPtr Name;
    public ushort Type;
    public int ByRef;
    public int Optional;
    public IntPtr DefaultValue;
    public IntPtr RecordType;
  }

  internal static class NativeMethods {
    private const string Library = "norvik50";

    [DllImport(Library)] internal static extern void norvik50_error_clear(ref NativeError err);
    [DllImport(Library)] internal static extern void norvik50_free(IntPtr text);
    [DllImport(Library)] internal static extern IntPtr norvik50_version();

    [DllImport(Library)] internal static extern IntPtr norvik50_value_new_empty();
    [DllImport(Library)] internal static extern IntPtr norvik50_value_new_null();
    [DllImport(Library)] internal static extern IntPtr norvik50_value_new_integer(short v);
    [DllImport(Library)] internal static extern IntPtr norvik50_value_new_long(int v);
    [DllImport(Library)] internal static extern IntPtr norvik50_value_new_single(float v);
    [DllImport(Library)] internal static extern IntPtr norvik50_value_new_double(double v);
    [DllImport(Library)] internal static extern IntPtr norvik50_value_new_currency(long scaled);
    [DllImport(Library)] internal static extern IntPtr norvik50_value_new_boolean(int v);
    [DllImport(Library)] internal static extern IntPtr norvik50_value_new_error(int code);
    [DllImport(Library)] internal static extern IntPtr norvik50_value_new_byte(byte v);
    [DllImport(Library)] internal static extern IntPtr norvik50_value_new_string16(
        [MarshalAs(UnmanagedType.LPWStr)] string units, UIntPtr length);
    [DllImport(Library)] internal static extern IntPtr norvik50_value_new_nothing();
    [DllImport(Library)] internal static extern IntPtr norvik50_value_new_collection();
    [DllImport(Library)] internal static extern int norvik50_value_new_date(double serial, out IntPtr v);
    [DllImport(Library)] internal static extern int norvik50_value_new_decimal(
        uint hi, ulong lo, byte scale, int negative, out IntPtr v);
    [DllImport(Library)] internal static extern int norvik50_value_new_array(
        ushort elementType, int lower, UIntPtr count, out IntPtr v);
    [DllImport(Library)] internal static extern int norvik50_value_new_unbounded_array(
        ushort elementType, out IntPtr v);
    [DllImport(Library)] internal static extern int norvik50_value_new_record(
        [MarshalAs(UnmanagedType.LPStr)] string typeName, out IntPtr v);
    [DllImport(Library)] internal static extern IntPtr norvik50_value_copy(IntPtr v);
    [DllImport(Library)] internal static extern void norvik50_value_free(IntPtr v);
    [DllImport(Library)] internal static extern ushort norvik50_value_type(IntPtr v);

    [DllImport(Library)] internal static extern int norvik50_value_get_integer(IntPtr v, out short x);
    [DllImport(Library)] internal static extern int norvik50_value_get_long(IntPtr v, out int x);
    [DllImport(Library)] internal static extern int norvik50_value_get_single(IntPtr v, out float x);
    [DllImport(Library)] internal static extern int norvik50_value_get_double(IntPtr v, out double x);
    [DllImport(Library)] internal static extern int norvik50_value_get_currency(IntPtr v, out long x);
    [DllImport(Library)] internal static extern int norvik50_value_get_date(IntPtr v, out double x);
    [DllImport(Library)] internal static extern int norvik50_value_get_boolean(IntPtr v, out short x);
    [DllImport(Library)] internal static extern int norvik50_value_get_error(IntPtr v, out int x);
    [DllImport(Library)] internal static extern int norvik50_value_get_byte(IntPtr v, out byte x);
    [DllImport(Library)] internal static extern int norvik50_value_get_decimal(
        IntPtr v, out uint hi, out ulong lo, out byte scale, out int negative);
    [DllImport(Library)] internal static extern int norvik50_value_get_string16(
        IntPtr v, out IntPtr units, out UIntPtr length);

    [DllImport(Library)] internal static extern int norvik50_array_bounds(
        IntPtr v, out int lower, out UIntPtr count);
    [DllImport(Library)] internal static extern int norvik50_array_get(IntPtr v, long index, out IntPtr item);
    [DllImport(Library)] internal static extern int norvik50_array_set(IntPtr v, long index, IntPtr item);
    [DllImport(Library)] internal static extern int norvik50_record_type(IntPtr v, out IntPtr name);
    [DllImport(Library)] internal static extern int norvik50_record_field_count(IntPtr v, out UIntPtr count);
    [DllImport(Library)] internal static extern int norvik50_record_field(
        IntPtr v, UIntPtr index, out IntPtr name, out IntPtr item);
    [DllImport(Library)] internal static extern int norvik50_record_set(
        IntPtr v, [MarshalAs(UnmanagedType.LPStr)] string name, IntPtr item);
    [DllImport(Library)] internal static extern int norvik50_object_id(IntPtr v, out UIntPtr id);
    [DllImport(Library)] internal static extern int norvik50_collection_count(IntPtr v, out int count);
    [DllImport(Library)] internal static extern int norvik50_collection_add(IntPtr v, IntPtr item);
    [DllImport(Library)] internal static extern int norvik50_collection_item(IntPtr v, int index, out IntPtr item);

    [DllImport(Library)] internal static extern int norvik50_lib_new(out IntPtr lib, ref NativeError err);
    [DllImport(Library)] internal static extern int norvik50_lib_free(IntPtr lib);
    [DllImport(Library)] internal static extern int norvik50_invoke(
        IntPtr lib, [MarshalAs(UnmanagedType.LPStr)] string name, int how,
        [In, Out] IntPtr[] args, UIntPtr argc, out IntPtr result, ref NativeError err);

    [DllImport(Library)] internal static extern UIntPtr norvik50_member_count();
    [DllImport(Library)] internal static extern int norvik50_member_get(UIntPtr index, out NativeMember member);
    [DllImport(Library)] internal static extern int norvik50_member_param(
        UIntPtr member, UIntPtr param, out NativeParam info);

    [DllImport(Library)] internal static extern int norvik50_set_dialogs(int which, ref NativeError err);
    [DllImport(Library)] internal static extern int norvik50_set_host_application(
        [MarshalAs(UnmanagedType.LPStr)] string name, [MarshalAs(UnmanagedType.LPStr)] string title);
  }
}
