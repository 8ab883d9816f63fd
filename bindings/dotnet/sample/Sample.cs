// A C# host: the library object, a member with by-reference arguments and
// a failed call.
using System;
using Norvik50;

static class Sample {
  static int Main() {
    using (var lib = new Lib()) {
      string before = "", term = "", after = "";
      lib.tklSeparateString("Invoice-2024-0042", "-", ref before, ref term, ref after);
      Console.WriteLine(before + " | " + after);  // Invoice | 2024-0042
      try {
        lib.tklGlobalVar("NOPE", "");
      } catch (LibException e) {
        Console.WriteLine("error " + e.Number);  // error 5
      }
    }
    return 0;
  }
}
