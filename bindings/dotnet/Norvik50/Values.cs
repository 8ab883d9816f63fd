// .NET values to the library's and back, as COM interop maps them: null is
// Empty, DBNull Null, decimal Decimal (CurrencyWrapper for Currency),
// DateTime Date (its OLE Automation date is the library's serial),
// ErrorWrapper or ErrorValue an error value, Missing.Value an omitted
// argument, System.Array an array with its lower bound.
using System;
using System.Reflection;
using System.Runtime.InteropServices;

namespace Norvik50 {
  internal static class Values {
    internal static void Check(int rc) {
      if (rc != 0) throw new LibException(rc, "The value was refused", "Norvik50");
    }

    internal static IntPtr Checked(IntPtr v) {
      if (v == IntPtr.Zero) throw new OutOfMemoryException();
      return v;
    }

    // A new native value (the caller frees it); IntPtr.Zero for Missing.
    internal static IntPtr ToNative(object value) {
      if (value == null) return Checked(NativeMethods.norvik50_value_new_empty());
      if (value is Missing) return IntPtr.Zero;
      if (value is string) {
        var s = (string)value;
        return Checked(NativeMethods.norvik50_value_new_string16(s, (UIntPtr)s.Length));
      }
      if (value is int) return Checked(NativeMethods.norvik50_value_new_long((int)value));
      if (value is short) return Checked(NativeMethods.norvik50_value_new_integer((short)value));
      if (value is double) return Checked(NativeMethods.norvik50_value_new_double((double)value));
      if (value is bool) return Checked(NativeMethods.norvik50_value_new_boolean((bool)value ? 1 : 0));
      if (value is byte) return Checked(NativeMethods.norvik50_value_new_byte((byte)value));
      if (value is float) return Checked(NativeMethods.norvik50_value_new_single((float)value));
      if (value is long) {
        long n = (long)value;
        return n >= int.MinValue && n <= int.MaxValue
            ? Checked(NativeMethods.norvik50_value_new_long((int)n))
            : Checked(NativeMethods.norvik50_value_new_double(n));
      }
      if (value is DBNull) return Checked(NativeMethods.norvik50_value_new_null());
      if (value is decimal) return DecimalToNative((decimal)value);
      if (value is CurrencyWrapper) {
        decimal scaled = decimal.Round(((CurrencyWrapper)value).WrappedObject * 10000m);
        return Checked(NativeMethods.norvik50_value_new_currency(decimal.ToInt64(scaled)));
      }
      if (value is DateTime) {
        IntPtr v;
        Check(NativeMethods.norvik50_value_new_date(((DateTime)value).ToOADate(), out v));
        return v;
      }
      if (value is ErrorWrapper) {
        return Checked(NativeMethods.norvik50_value_new_error(((ErrorWrapper)value).ErrorCode));
      }
      if (value is ErrorValue) return Checked(NativeMethods.norvik50_value_new_error(((ErrorValue)value).Code));
      if (value is HostObject) {
        var obj = (HostObject)value;
        return obj.Handle == IntPtr.Zero ? Checked(NativeMethods.norvik50_value_new_nothing())
                                         : Checked(NativeMethods.norvik50_value_copy(obj.Handle));
      }
      if (value is Array) return ArrayToNative((Array)value);
      if (value is Record) return RecordToNative((Record)value);
      throw new LibException(13, "Type mismatch: no library value for " + value.GetType().Name,
                             "Norvik50");
    }

    private static IntPtr DecimalToNative(decimal d) {
      int[] bits = decimal.GetBits(d);
      ulong lo = ((ulong)(uint)bits[1] << 32) | (uint)bits[0];
      byte scale = (byte)((bits[3] >> 16) & 0xFF);
      IntPtr v;
      Check(NativeMethods.norvik50_value_new_decimal((uint)bits[2], lo, scale, bits[3] < 0 ? 1 : 0, out v));
      return v;
    }

    private static IntPtr ArrayToNative(Array array) {
      if (array.Rank != 1) throw new LibException(5, "Only one-dimensional arrays", "Norvik50");
      int lower = array.GetLowerBound(0);
      IntPtr v;
      Check(NativeMethods.norvik50_value_new_array(12, lower, (UIntPtr)array.Length, out v));
      try {
        for (int i = 0; i < array.Length; ++i) {
          IntPtr item = ToNative(array.GetValue(lower + i));
          try {
            Check(NativeMethods.norvik50_array_set(v, lower + i, item));
          } finally {
            NativeMethods.norvik50_value_free(item);
          }
        }
      } catch {
        NativeMethods.norvik50_value_free(v);
        throw;
      }
      return v;
    }

    private static IntPtr RecordToNative(Record record) {
      IntPtr v;
      Check(NativeMethods.norvik50_value_new_record(record.TypeName, out v));
      try {
        foreach (var field in record.Fields) {
          IntPtr item = ToNative(field.Value);
          try {
            Check(NativeMethods.norvik50_record_set(v, field.Key, item));
          } finally {
            NativeMethods.norvik50_value_free(item);
          }
        }
      } catch {
        NativeMethods.norvik50_value_free(v);
        throw;
      }
      return v;
    }

    // The value behind `v`, which is freed.
    internal static object TakeFromNative(IntPtr v) {
      try {
        return FromNative(v);
      } finally {
        NativeMethods.norvik50_value_free(v);
      }
    }

    internal static object FromNative(IntPtr v) {
      ushort vt = NativeMethods.norvik50_value_type(v);
      switch (vt) {
        case 0: return null;
        case 1: return DBNull.Value;
        case 2: { short x; NativeMethods.norvik50_value_get_integer(v, out x); return x; }
        case 3: { int x; NativeMethods.norvik50_value_get_long(v, out x); return x; }
        case 4: { float x; NativeMethods.norvik50_value_get_single(v, out x); return x; }
        case 5: { double x; NativeMethods.norvik50_value_get_double(v, out x); return x; }
        case 6: { long x; NativeMethods.norvik50_value_get_currency(v, out x); return x / 10000m; }
        case 7: { double x; NativeMethods.norvik50_value_get_date(v, out x); return DateTime.FromOADate(x); }
        case 8: {
          IntPtr units;
          UIntPtr length;
          NativeMethods.norvik50_value_get_string16(v, out units, out length);
          return Marshal.PtrToStringUni(units, (int)length);
        }
        case 9: {
          UIntPtr id;
          NativeMethods.norvik50_object_id(v, out id);
          return id == UIntPtr.Zero ? HostObject.Nothing
                                    : new HostObject(Checked(NativeMethods.norvik50_value_copy(v)));
        }
        case 10: { int x; NativeMethods.norvik50_value_get_error(v, out x); return new ErrorValue(x); }
        case 11: { short x; NativeMethods.norvik50_value_get_boolean(v, out x); return x != 0; }
        case 14: {
          uint hi; ulong lo; byte scale; int negative;
          NativeMethods.norvik50_value_get_decimal(v, out hi, out lo, out scale, out negative);
          return new decimal((int)(uint)lo, (int)(uint)(lo >> 32), (int)hi, negative != 0, scale);
        }
        case 17: { byte x; NativeMethods.norvik50_value_get_byte(v, out x); return x; }
        case 36: return RecordFromNative(v);
      }
      if ((vt & 0x2000) != 0) return ArrayFromNative(v);
      throw new LibException(13, "Type mismatch: value type " + vt, "Norvik50");
    }

    private static object ArrayFromNative(IntPtr v) {
      int lower;
      UIntPtr count;
      // A never-dimensioned array has no .NET form with bounds.
      if (NativeMethods.norvik50_array_bounds(v, out lower, out count) != 0) return null;
      Array array = Array.CreateInstance(typeof(object), new[] { (int)count }, new[] { lower });
      for (int i = 0; i < (int)count; ++i) {
        IntPtr item;
        Check(NativeMethods.norvik50_array_get(v, lower + i, out item));
        array.SetValue(TakeFromNative(item), lower + i);
      }
      return array;
    }

    private static Record RecordFromNative(IntPtr v) {
      IntPtr type;
      UIntPtr count;
      NativeMethods.norvik50_record_type(v, out type);
      NativeMethods.norvik50_record_field_count(v, out count);
      var record = new Record(Marshal.PtrToStringAnsi(type));
      for (ulong i = 0; i < (ulong)count; ++i) {
        IntPtr name, item;
        Check(NativeMethods.norvik50_record_field(v, (UIntPtr)i, out name, out item));
        record[Marshal.PtrToStringAnsi(name)] = TakeFromNative(item);
      }
      return record;
    }
  }
}
