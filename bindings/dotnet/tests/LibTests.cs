// The .NET assembly's tests: the table of calls every binding runs, then
// the .NET surface (generated members, ref arguments, values, errors) and a
// million calls that must leave the resident size flat. Prints
// "N passed, N failed".
using System;
using System.Globalization;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Runtime.Serialization.Json;
using System.Xml;
using System.Xml.Linq;
using Norvik50;

static class LibTests {
  static int passed, failed;

  static void Check(bool ok, string what) {
    if (ok) {
      ++passed;
    } else {
      ++failed;
      Console.Error.WriteLine("FAILED: " + what);
    }
  }

  static void Throws(int number, Action call, string what) {
    try {
      call();
      Check(false, what + ": no error");
    } catch (LibException e) {
      Check(e.Number == number && e.Description.Length > 0,
            what + ": error " + e.Number + " " + e.Description);
    }
  }

  // ---- The shared table (JSON read through the framework's own reader)

  static string Key(XElement e) {
    var item = e.Attribute("item");
    return item != null ? item.Value : e.Name.LocalName;
  }

  static XElement Field(XElement obj, string name) {
    return obj.Elements().FirstOrDefault(e => Key(e) == name);
  }

  static string Kind(XElement e) { return (string)e.Attribute("type") ?? "string"; }

  static object ToDotNet(XElement typed) {
    switch (Kind(typed)) {
      case "string": return typed.Value;
      case "boolean": return typed.Value == "true";
      case "null": return DBNull.Value;
      case "number":
        int n;
        if (int.TryParse(typed.Value, NumberStyles.Integer, CultureInfo.InvariantCulture, out n)) return n;
        return double.Parse(typed.Value, CultureInfo.InvariantCulture);
    }
    string vt = Field(typed, "vt").Value;
    XElement v = Field(typed, "v");
    var inv = CultureInfo.InvariantCulture;
    switch (vt) {
      case "Empty": return null;
      case "Null": return DBNull.Value;
      case "Integer": return short.Parse(v.Value, inv);
      case "Long": return int.Parse(v.Value, inv);
      case "Byte": return byte.Parse(v.Value, inv);
      case "Single": return float.Parse(v.Value, inv);
      case "Double": return double.Parse(v.Value, inv);
      case "Currency": return new CurrencyWrapper(decimal.Parse(v.Value, inv));
      case "Decimal": return decimal.Parse(v.Value, inv);
      case "Date": return DateTime.Parse(v.Value, inv);
      case "String": return v.Value;
      case "Boolean": return v.Value == "true";
      case "Error": return new ErrorValue(int.Parse(v.Value, inv));
      case "Array": {
        if (Kind(v) == "null") return null;
        var items = v.Elements().ToArray();
        XElement lb = Field(typed, "lb");
        int lower = lb == null ? 0 : int.Parse(lb.Value, inv);
        Array array = Array.CreateInstance(typeof(object), new[] { items.Length }, new[] { lower });
        for (int i = 0; i < items.Length; ++i) array.SetValue(ToDotNet(items[i]), lower + i);
        return array;
      }
      case "Record": {
        var record = new Record(Field(typed, "type").Value);
        foreach (XElement f in v.Elements()) record[Key(f)] = ToDotNet(f);
        return record;
      }
    }
    throw new InvalidDataException("no typed value: " + vt);
  }

  static bool Same(XElement expected, object actual) {
    if (Kind(expected) == "string") return actual is string && (string)actual == expected.Value;
    string vt = Field(expected, "vt").Value;
    XElement v = Field(expected, "v");
    var inv = CultureInfo.InvariantCulture;
    switch (vt) {
      case "Empty": return actual == null;
      case "Null": return actual is DBNull;
      case "Integer": return actual is short && (short)actual == short.Parse(v.Value, inv);
      case "Long": return actual is int && (int)actual == int.Parse(v.Value, inv);
      case "Byte": return actual is byte && (byte)actual == byte.Parse(v.Value, inv);
      case "Single": return actual is float && (float)actual == float.Parse(v.Value, inv);
      case "Double": return actual is double && (double)actual == double.Parse(v.Value, inv);
      case "Currency":
      case "Decimal": return actual is decimal && (decimal)actual == decimal.Parse(v.Value, inv);
      case "Date": return actual is DateTime && (DateTime)actual == DateTime.Parse(v.Value, inv);
      case "String": return actual is string && (string)actual == v.Value;
      case "Boolean": return actual is bool && (bool)actual == (v.Value == "true");
      case "Error": return actual is ErrorValue && ((ErrorValue)actual).Code == int.Parse(v.Value, inv);
      case "Array": {
        var array = actual as Array;
        var items = v.Elements().ToArray();
        XElement lb = Field(expected, "lb");
        int lower = lb == null ? 0 : int.Parse(lb.Value, inv);
        if (array == null || array.Length != items.Length || array.GetLowerBound(0) != lower) return false;
        for (int i = 0; i < items.Length; ++i) {
          if (!Same(items[i], array.GetValue(lower + i))) return false;
        }
        return true;
      }
      case "Record": {
        var record = actual as Record;
        if (record == null || record.TypeName != Field(expected, "type").Value) return false;
        var fields = v.Elements().ToArray();
        if (record.Fields.Count != fields.Length) return false;
        return fields.All(f => Same(f, record[Key(f)]));
      }
    }
    return false;
  }

  static void SharedTable(Lib lib, string path) {
    byte[] bytes = File.ReadAllBytes(path);
    XElement root;
    using (var reader = JsonReaderWriterFactory.CreateJsonReader(bytes, XmlDictionaryReaderQuotas.Max)) {
      root = XElement.Load(reader);
    }
    var cases = Field(root, "cases").Elements().ToArray();
    Check(cases.Length > 20, "the table has its cases");
    foreach (XElement c in cases) {
      string name = Field(c, "name").Value;
      XElement expect = Field(c, "expect");
      object[] args = Field(c, "args").Elements().Select(ToDotNet).ToArray();
      bool let = Field(c, "let") != null;
      try {
        object result = lib.Invoke(Field(c, "member").Value, let ? Lib.PropertyLet
                                                                  : Lib.Method | Lib.PropertyGet, args);
        Check(Field(expect, "error") == null, name + ": expected an error");
        XElement expectedResult = Field(expect, "result");
        Check(expectedResult == null ? result == null : Same(expectedResult, result),
              name + ": result " + result);
        XElement byref = Field(expect, "byref");
        if (byref != null) {
          foreach (XElement arg in byref.Elements()) {
            int index = int.Parse(Key(arg), CultureInfo.InvariantCulture);
            Check(Same(arg, args[index]), name + ": argument " + index + " = " + args[index]);
          }
        }
      } catch (LibException e) {
        XElement number = Field(expect, "error");
        Check(number != null && e.Number == int.Parse(number.Value, CultureInfo.InvariantCulture),
              name + ": error " + e.Number);
      }
    }
  }

  // ---- The .NET surface

  static void GeneratedMembers(Lib lib) {
    Check(lib.tklVal("1234,56") == 1234.56, "tklVal in a German locale");
    string before = "", term = "", after = "";
    lib.tklSeparateString("left-mid-right", "-", ref before, ref term, ref after);
    Check(before == "left" && term == "-" && after == "mid-right", "ref arguments written back");
    short start = 4;
    Check(lib.tklFindSubString("abcabc", "c", ref start) == 6, "an overload without the later refs");
    lib.tklRegKey = "Software\\Norvik50\\DotNet";
    Check(lib.tklRegKey == "Software\\Norvik50\\DotNet", "a property without arguments");
    string source = "abcdef";
    int length = 3;
    lib.Let_tklMid(ref source, 2, ref length, "XYZ");
    Check(source == "aXYZef", "a let form with arguments: " + source);
    Check(lib.tklCVal(6, "12,5") is decimal && (decimal)lib.tklCVal(6, "12,5") == 12.5m, "Currency as decimal");
    Check((DateTime)lib.tklCVal(7, "2024-03-05") == new DateTime(2024, 3, 5), "Date as DateTime");
    var nulls = (Array)lib.tklGetNotNullValue(new object[] { DBNull.Value, null });
    Check(nulls.GetValue(0) is DBNull && nulls.GetValue(1) == null, "DBNull is Null, null is Empty");
    Check(lib.tklIsEmpty(null), "null is Empty");
    Check(lib.tklRound(new CurrencyWrapper(2.345m), 2) is decimal, "CurrencyWrapper passes a Currency");
    var files = new Record("typFileInfo");
    Check(lib.tklSeparateFile("C:\\data\\report.txt", ref files), "a record by reference");
    Check((string)files["lpExt"] == "txt", "the record's fields written back");
    Array sorted = Array.CreateInstance(typeof(object), new[] { 2 }, new[] { 5 });
    sorted.SetValue("pear", 5);
    sorted.SetValue("apple", 6);
    lib.tklBubbleSort(ref sorted);
    Check(sorted.GetLowerBound(0) == 5 && (string)sorted.GetValue(5) == "apple", "arrays keep their bounds");
    HostObject items = HostObject.NewCollection();
    items.Add(1);
    object o = items;
    lib.tklClearCollection(ref o);
    Check(items.Count == 0, "a collection cleared through the library");
    Check(Lib.Members.Any(m => m.Name == "tklFindSubString" && m.Params[2].ByRef &&
                               (short)m.Params[2].Default == 1), "the member table");
  }

  static void Errors(Lib lib) {
    Throws(438, () => lib.Invoke("tklNoSuchMember", Lib.Method, new object[0]), "unknown member");
    Throws(449, () => lib.Invoke("tklVal", Lib.Method, new object[0]), "argument missing");
    Throws(450, () => lib.Invoke("tklVal", Lib.Method, new object[] { "1", "2" }), "too many");
    Throws(13, () => lib.Invoke("tklVal", Lib.Method, new object[] { new object[] { 1 } }), "wrong type");
    Throws(13, () => lib.Invoke("tklVal", Lib.Method, new object[] { new Uri("http://x") }), "no such value");
    Throws(5, () => lib.tklGlobalVar("NOPE", ""), "the member's own error");
    Throws(5, () => Lib.SetDialogs(7), "an unknown dialog choice");
    var closed = new Lib();
    closed.Dispose();
    Throws(91, () => closed.tklVal("1"), "a disposed object");
  }

  static long ResidentKb() {
    string[] statm = File.ReadAllText("/proc/self/statm").Split(' ');
    return long.Parse(statm[1], CultureInfo.InvariantCulture) * Environment.SystemPageSize / 1024;
  }

  // A million calls, strings and by-reference arguments included: the
  // resident size after them is that after the first hundred thousand.
  static void NoLeak(Lib lib, int calls) {
    Action batch = () => {
      for (int i = 0; i < calls / 10; ++i) {
        lib.tklVal("1234,56");
        string b = "", t = "", a = "";
        lib.tklSeparateString("x-y", "-", ref b, ref t, ref a);
      }
    };
    batch();
    GC.Collect();
    GC.WaitForPendingFinalizers();
    long start = ResidentKb();
    for (int round = 0; round < 9; ++round) batch();
    GC.Collect();
    GC.WaitForPendingFinalizers();
    long end = ResidentKb();
    Console.WriteLine("resident size after " + calls / 10 + " call pairs: " + start +
                      " KiB, after " + calls + ": " + end + " KiB");
    Check(end - start < 8 * 1024, "the resident size stays flat (" + (end - start) + " KiB more)");
  }

  static int Main(string[] argv) {
    string table = argv.Length > 0 ? argv[0] : Environment.GetEnvironmentVariable("NORVIK50_CALLS_TABLE");
    int calls = argv.Length > 1 ? int.Parse(argv[1], CultureInfo.InvariantCulture) : 1000000;
    using (var lib = new Lib()) {
      SharedTable(lib, table);
      GeneratedMembers(lib);
      Errors(lib);
      NoLeak(lib, calls);
    }
    Console.WriteLine(passed + " passed, " + failed + " failed");
    return failed == 0 ? 0 : 1;
  }
}
