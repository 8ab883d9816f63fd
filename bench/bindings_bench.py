#!/usr/bin/env python3
"""A call by name from each language, as ratios against anchors measured in
the same run: tklVal("1234,56") through the C interface (against the C++
dispatch, from c_interface_bench), from Python (against float() of the same
text, and against the batch's throughput from Python), through ctypes (the
mechanism not chosen), and from .NET (against double.Parse).

    python3 bench/bindings_bench.py BUILD_DIR

BUILD_DIR is a build with benchmarks (-DNORVIK50_BUILD_BENCHMARKS=ON)."""

import ctypes
import json
import os
import subprocess
import sys
import threading
import time

BUILD = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else "build")
os.environ["NORVIK50_LOCALE"] = "de-DE"
sys.path.insert(0, os.path.join(BUILD, "bindings", "python"))
import norvik50  # noqa: E402

CALLS = 200_000


def best_ns(call, calls=CALLS, rounds=5):
    best = float("inf")
    for _ in range(rounds):
        start = time.perf_counter()
        for _ in range(calls):
            call()
        best = min(best, (time.perf_counter() - start) * 1e9 / calls)
    return best


def c_figures():
    out_file = os.path.join(BUILD, "bench", "c_interface_bench.json")
    subprocess.run([os.path.join(BUILD, "bench", "c_interface_bench"),
                    "--benchmark_out=" + out_file, "--benchmark_out_format=json",
                    "--benchmark_repetitions=3"], check=True, capture_output=True)
    with open(out_file, encoding="utf-8") as f:
        runs = json.load(f)["benchmarks"]
    best = {}
    for run in runs:
        if run.get("run_type") == "iteration":
            name = run["run_name"]
            best[name] = min(best.get(name, float("inf")), run["cpu_time"])
    return best


def ctypes_call():
    lib = ctypes.CDLL(os.path.join(BUILD, "libnorvik50.so.0"))
    p = ctypes.c_void_p
    lib.norvik50_lib_new.argtypes = [ctypes.POINTER(p), p]
    lib.norvik50_value_new_utf8.argtypes = [ctypes.c_char_p, ctypes.c_size_t, ctypes.POINTER(p)]
    lib.norvik50_invoke.argtypes = [p, ctypes.c_char_p, ctypes.c_int32, ctypes.POINTER(p),
                                    ctypes.c_size_t, ctypes.POINTER(p), p]
    lib.norvik50_value_get_double.argtypes = [p, ctypes.POINTER(ctypes.c_double)]
    lib.norvik50_value_free.argtypes = [p]
    handle = p()
    lib.norvik50_lib_new(ctypes.byref(handle), None)

    def call(text=b"1234,56"):
        arg = p()
        lib.norvik50_value_new_utf8(text, len(text), ctypes.byref(arg))
        args = (p * 1)(arg)
        result = p()
        lib.norvik50_invoke(handle, b"tklVal", 1, args, 1, ctypes.byref(result), None)
        value = ctypes.c_double()
        lib.norvik50_value_get_double(result, ctypes.byref(value))
        lib.norvik50_value_free(result)
        lib.norvik50_value_free(args[0])
        return value.value

    assert call() == 1234.56
    return call


def batch_ns(requests=CALLS):
    """Per request through `norvik50 batch`, requests written while answers
    are read, as a Python host drives it at full speed."""
    tool = os.path.join(BUILD, "tools", "norvik50", "norvik50")
    line = (json.dumps({"member": "tklVal", "args": ["1234,56"]}) + "\n").encode()
    best = float("inf")
    for _ in range(3):
        proc = subprocess.Popen([tool, "batch", "--headless"], stdin=subprocess.PIPE,
                                stdout=subprocess.PIPE)
        start = time.perf_counter()

        def feed():
            proc.stdin.write(line * requests)
            proc.stdin.close()

        writer = threading.Thread(target=feed)
        writer.start()
        answers = 0
        for answer in proc.stdout:
            answers += 1
            json.loads(answer)
        writer.join()
        proc.wait()
        assert answers == requests
        best = min(best, (time.perf_counter() - start) * 1e9 / requests)
    return best


def batch_round_trip_ns(requests=5000):
    """Per request through `norvik50 batch` when a host waits for each answer
    before it sends the next request, as a synchronous call does."""
    tool = os.path.join(BUILD, "tools", "norvik50", "norvik50")
    line = (json.dumps({"member": "tklVal", "args": ["1234,56"]}) + "\n").encode()
    proc = subprocess.Popen([tool, "batch", "--headless"], stdin=subprocess.PIPE,
                            stdout=subprocess.PIPE)
    start = time.perf_counter()
    for _ in range(requests):
        proc.stdin.write(line)
        proc.stdin.flush()
        json.loads(proc.stdout.readline())
    elapsed = time.perf_counter() - start
    proc.stdin.close()
    proc.wait()
    return elapsed * 1e9 / requests


def dotnet_figures():
    exe = os.path.join(BUILD, "bindings", "dotnet", "LibBench.exe")
    if not os.path.exists(exe):
        return None
    env = dict(os.environ, LD_LIBRARY_PATH=BUILD)
    out = subprocess.run(["mono", exe, str(CALLS)], check=True, capture_output=True, text=True,
                         env=env).stdout
    return json.loads(out.strip().splitlines()[-1])


def main():
    c = c_figures()
    cpp, c_call = c["BM_CppDispatchByName"], c["BM_CInvoke"]
    lib = norvik50.LIB()
    anchor = best_ns(lambda: float("1234.56"))
    tkl_val = lib.tklVal
    python = best_ns(lambda: tkl_val("1234,56"))
    via_ctypes = best_ns(ctypes_call(), calls=CALLS // 4)
    batch = batch_ns(CALLS // 4)
    round_trip = batch_round_trip_ns()
    rows = [("C++ dispatch by name", cpp, "the anchor"),
            ("C interface", c_call, "target 1.5x"),
            ("Python (pybind11 package)", python, f"{python - c_call:.0f} ns above the C call,"
             f" target < 1000; {python / anchor:.1f}x Python's float() ({anchor:.0f} ns)"),
            ("Python through ctypes", via_ctypes, f"{via_ctypes / python:.1f}x the package"),
            ("Python through the batch", batch, f"streamed; the package has "
             f"{batch / python:.1f}x its throughput, target 10x"),
            ("  one request at a time", round_trip, f"the package has "
             f"{round_trip / python:.1f}x its throughput")]
    dotnet = dotnet_figures()
    if dotnet:
        net, parse = dotnet["dotnet_tklVal_ns"], dotnet["dotnet_double_parse_ns"]
        rows.append((".NET (Mono, P/Invoke)", net, f"{net - c_call:.0f} ns above the C call; "
                     f"{net / parse:.1f}x .NET's double.Parse ({parse:.0f} ns)"))
    print('tklVal("1234,56") by name: ns per call (best of the runs), ratio to the C++ dispatch')
    for name, ns, note in rows:
        print(f"  {name:27} {ns:8.0f} {ns / cpp:7.2f}x  {note}")
    lib.close()


if __name__ == "__main__":
    main()
