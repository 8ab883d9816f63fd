// The .NET call of tklVal("1234,56") by its generated member, against
// double.Parse of the same text (the anchor, in the same run). Prints one
// JSON line of nanoseconds per call, best of five rounds, for
// bench/bindings_bench.py.
using System;
using System.Diagnostics;
using System.Globalization;
using Norvik50;

static class LibBench {
  static double BestNs(int calls, Action call) {
    double best = double.MaxValue;
    for (int round = 0; round < 5; ++round) {
      var clock = Stopwatch.StartNew();
      for (int i = 0; i < calls; ++i) call();
      best = Math.Min(best, clock.Elapsed.TotalMilliseconds * 1e6 / calls);
    }
    return best;
  }

  static int Main(string[] argv) {
    int calls = argv.Length > 0 ? int.Parse(argv[0], CultureInfo.InvariantCulture) : 200000;
    using (var lib = new Lib()) {
      double sink = 0;
      double anchor = BestNs(calls, () => sink += double.Parse("1234.56", CultureInfo.InvariantCulture));
      double member = BestNs(calls, () => sink += lib.tklVal("1234,56"));
      Console.WriteLine(string.Format(CultureInfo.InvariantCulture,
          "{{\"dotnet_double_parse_ns\": {0:F1}, \"dotnet_tklVal_ns\": {1:F1}, \"sink\": {2}}}",
          anchor, member, sink > 0 ? 1 : 0));
    }
    return 0;
  }
}
