"""A million calls leave the resident size flat: nothing leaks across the
boundary (values, results, by-reference write-backs, raised errors)."""

import gc
import os

import norvik50


def resident_kib():
    with open("/proc/self/statm") as statm:
        return int(statm.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") // 1024


def test_a_million_calls_keep_the_resident_size(lib):
    tkl_val, separate, cval = lib.tklVal, lib.tklSeparateString, lib.tklCVal
    before, term, after = norvik50.Ref(""), norvik50.Ref(""), norvik50.Ref("")

    def calls(n):
        for _ in range(n // 4):
            tkl_val("1234,56")
            separate("left-mid-right", "-", before, term, after)
            cval(14, "1,50")  # a Decimal result
            try:
                tkl_val([1])
            except norvik50.Error:
                pass

    calls(100_000)  # the allocator settles
    gc.collect()
    start = resident_kib()
    calls(1_000_000)
    gc.collect()
    grown = resident_kib() - start
    print(f"resident size: {start} KiB, {grown:+} KiB after a million calls")
    assert grown < 4 * 1024
