// The .NET forms of the library's values that .NET has no type for, and
// the exception a failed member raises.
using System;
using System.Collections.Generic;

namespace Norvik50 {
  /// <summary>A member failed: the runtime's error number, description and source.</summary>
  public class LibException : Exception {
    public LibException(int number, string description, string source)
        : base(description + " (" + number + ")") {
      Number = number;
      Description = description;
      Source = source;
    }
    public int Number { get; private set; }
    public string Description { get; private set; }
  }

  /// <summary>A record such as typFileInfo: its type name and fields in order.</summary>
  public class Record {
    public Record(string typeName) {
      TypeName = typeName;
      Fields = new List<KeyValuePair<string, object>>();
    }
    public string TypeName { get; private set; }
    public List<KeyValuePair<string, object>> Fields { get; private set; }
    /// <summary>The field's value; null when the record has no such field.</summary>
    public object this[string name] {
      get {
        foreach (var field in Fields) if (field.Key == name) return field.Value;
        return null;
      }
      set {
        for (int i = 0; i < Fields.Count; ++i) {
          if (Fields[i].Key == name) {
            Fields[i] = new KeyValuePair<string, object>(name, value);
            return;
          }
        }
        Fields.Add(new KeyValuePair<string, object>(name, value));
      }
    }
  }

  /// <summary>An error value (the runtime's CVErr), not a raised error.</summary>
  public struct ErrorValue {
    public ErrorValue(int code) { Code = code; }
    public int Code;
    public override string ToString() { return "Error " + Code; }
  }

  /// <summary>
  /// An object value the library handed out, or a collection the host made.
  /// Copies refer to the same object; Nothing is HostObject.Nothing.
  /// </summary>
  public sealed class HostObject : IDisposable {
    public static readonly HostObject Nothing = new HostObject(IntPtr.Zero);
    private IntPtr value_;

    internal HostObject(IntPtr value) { value_ = value; }
    ~HostObject() { Dispose(); }

    /// <summary>A new, empty collection (items from 1).</summary>
    public static HostObject NewCollection() {
      return new HostObject(Values.Checked(NativeMethods.norvik50_value_new_collection()));
    }

    internal IntPtr Handle { get { return value_; } }

    public int Count {
      get {
        int n;
        Values.Check(NativeMethods.norvik50_collection_count(value_, out n));
        return n;
      }
    }

    public void Add(object item) {
      IntPtr v = Values.ToNative(item);
      try {
        Values.Check(NativeMethods.norvik50_collection_add(value_, v));
      } finally {
        NativeMethods.norvik50_value_free(v);
      }
    }

    /// <summary>The item at 1-based index.</summary>
    public object Item(int index) {
      IntPtr v;
      Values.Check(NativeMethods.norvik50_collection_item(value_, index, out v));
      return Values.TakeFromNative(v);
    }

    public void Dispose() {
      if (value_ != IntPtr.Zero) NativeMethods.norvik50_value_free(value_);
      value_ = IntPtr.Zero;
      GC.SuppressFinalize(this);
    }
  }
}
