"""Python values across the boundary, and the package's own surface."""

import datetime
import decimal
import os
import subprocess
import sys

import pytest

import norvik50
from norvik50 import VT, Variant

D = decimal.Decimal


# Each value passes through a member that hands back what it was given
# (tklGetNotNullValue returns a non-Null Variant unchanged).
@pytest.mark.parametrize("value", [
    "text with ä and €", "", "\U0001F600", 0, -2147483648, 2147483647, 0.1, -1e300, True, False,
    D("12.3456"), D("-0.0000000000000000000000000001"), D("79228162514264337593543950335"),
    datetime.datetime(2024, 3, 5, 14, 7, 9), datetime.datetime(1899, 12, 29, 6, 0, 0),
    datetime.datetime(100, 1, 1), datetime.datetime(9999, 12, 31, 23, 59, 59),
    norvik50.Empty, norvik50.ErrorValue(2042),
], ids=repr)
def test_values_round_trip(lib, value):
    back = lib.tklGetNotNullValue(value)
    assert back == value and type(back) is type(value)


def test_a_reference_starts_empty_or_holds_null():
    assert norvik50.Ref().value is norvik50.Empty
    assert norvik50.Ref(None).value is None


def test_a_lone_surrogate_survives_the_trip(lib):
    assert lib.tklGetNotNullValue("a\ud800b") == "a\ud800b"


def test_forced_types_arrive_as_those_types(lib):
    assert lib.tklCVal(8, Variant(D("2.5"), VT.Currency)) == "2,5"
    assert lib.tklRound(Variant(D("2.345"), VT.Currency), 2) == D("2.35")  # Currency rounds
    assert lib.tklRound(D("2.345"), 2) == D("2.345")  # a Decimal keeps its digits here


def test_integers_past_a_long_become_doubles(lib):
    assert lib.tklGetNotNullValue(2**40) == float(2**40)


def test_dates_before_the_epoch_count_the_time_forward(lib):
    # 1899-12-29 06:00 is serial -1.25: the whole day back, the time forward.
    assert lib.tklCVal(5, datetime.datetime(1899, 12, 29, 6)) == -1.25
    assert lib.tklCVal(7, -1.25) == datetime.datetime(1899, 12, 29, 6)


def test_arrays_keep_their_lower_bound(lib):
    sorted_list = norvik50.Ref(norvik50.Array(["pear", "apple"], lower=5))
    lib.tklBubbleSort(sorted_list)
    assert sorted_list.value == ["apple", "pear"] and sorted_list.value.lower == 5
    assert lib.tklArrayHasData(norvik50.Ref(norvik50.Array([], lower=None))) is False
    assert lib.tklArrayHasData(norvik50.Ref([1])) is True


def test_by_reference_arguments(lib):
    before, term, after = norvik50.Ref(), norvik50.Ref(), norvik50.Ref("untouched?")
    assert lib.tklSeparateString("left-mid-right", "-", before, term, after) is None
    assert (before.value, term.value, after.value) == ("left", "-", "mid-right")
    found = norvik50.Ref("")
    start = norvik50.Ref(4)
    assert lib.tklFindSubString("abcabc", "C", start, sFound=found) == 6
    assert found.value == "C"
    assert start.value == 4  # not written: the caller's value stays


def test_keyword_arguments_by_their_table_names(lib):
    assert lib.tklFindSubString(sSource="abcabc", sFind="C", bIgnoreCase=False) == 0
    assert lib.tklFindSubString("abcabc", "C", bIgnoreCase=True) == 3
    with pytest.raises(TypeError, match="unexpected keyword"):
        lib.tklFindSubString("a", "b", bNoSuchFlag=True)
    with pytest.raises(TypeError, match="multiple values"):
        lib.tklFindSubString("a", "b", sSource="c")


def test_properties(lib):
    lib.tklRegKey = "Software\\Norvik50\\PyTest"
    assert lib.tklRegKey == "Software\\Norvik50\\PyTest"
    source = norvik50.Ref("abcdef")
    lib.let("tklMid", source, 2, 3, "XYZ")
    assert source.value == "aXYZef"


@pytest.mark.parametrize("call, number", [
    (lambda lib: lib.call("tklNoSuchMember"), 438),
    (lambda lib: lib.tklVal(), 449),
    (lambda lib: lib.tklVal("1", "2"), 450),
    (lambda lib: lib.tklVal([1, 2]), 13),
    (lambda lib: lib.tklAND("3000000000", 1), 6),
    (lambda lib: lib.tklGlobalVar("NOPE", ""), 5),
    (lambda lib: lib.let("tklVal", "1"), 438),
    (lambda lib: lib.tklGetNotNullValue(D("1e40")), 6),
], ids=["unknown member", "argument missing", "too many", "wrong type", "overflow",
        "member's own error", "no let form", "decimal out of range"])
def test_errors_carry_the_runtime_number(lib, call, number):
    with pytest.raises(norvik50.Error) as failure:
        call(lib)
    assert failure.value.number == number
    assert failure.value.description and failure.value.source


def test_a_value_python_cannot_pass_is_a_type_mismatch(lib):
    with pytest.raises(norvik50.Error) as failure:
        lib.tklGetNotNullValue(object())
    assert failure.value.number == 13


def test_a_closed_library_refuses_calls():
    lib = norvik50.LIB()
    lib.close()
    lib.close()  # twice is harmless
    with pytest.raises(norvik50.Error) as failure:
        lib.tklVal("1")
    assert failure.value.number == 91


def test_collections_are_shared_objects(lib):
    items = norvik50.HostObject.collection([1, "two"])
    assert len(items) == 2 and items.item(2) == "two"
    lib.tklClearCollection(norvik50.Ref(items))
    assert len(items) == 0
    emptied = norvik50.Ref(items)
    lib.tklClearCollection(emptied, True)
    assert emptied.value is norvik50.Nothing


def test_members_follow_the_table():
    table = norvik50.members()
    names = {m["name"] for m in table}
    assert len(table) > 50
    for name in names:
        assert hasattr(norvik50.LIB, name) or any(
            m["name"] == name and m["how"] == 4 for m in table), name
    find = next(m for m in table if m["name"] == "tklFindSubString")
    assert [p["name"] for p in find["params"]][:3] == ["sSource", "sFind", "iStartSearch"]
    assert find["params"][2]["by_ref"] and find["params"][2]["default"] == 1


def test_stubs_list_every_member():
    stubs = os.path.join(os.path.dirname(norvik50.__file__), "__init__.pyi")
    with open(stubs, encoding="utf-8") as f:
        text = f.read()
    compile(text, stubs, "exec")  # the stubs are valid Python
    for member in norvik50.members():
        if member["how"] != 4:
            assert f"def {member['name']}(self" in text, member["name"]


def test_the_log_names_the_python_host(tmp_path):
    # A fresh process, so that the application name is set before the
    # first object writes its line.
    script = ("import norvik50; norvik50.set_host_application('pyhost'); "
              "lib = norvik50.LIB(); lib.close()")
    env = dict(os.environ, TMPDIR=str(tmp_path) + "/")
    subprocess.run([sys.executable, "-c", script], check=True, env=env)
    logs = list(tmp_path.rglob("*.LOG")) + list(tmp_path.rglob("*.log"))
    assert any("pyhost initialized." in p.read_text(errors="replace") for p in logs), logs


def test_headless_dialogs_answer_at_once(lib):
    norvik50.set_dialogs(norvik50.DIALOGS_HEADLESS)
    assert lib.tklMsgBox("Prompt", "Detail") == 10
    with pytest.raises(norvik50.Error) as failure:
        norvik50.set_dialogs(7)
    assert failure.value.number == 5


def test_the_readme_example_runs():
    example = os.path.join(os.path.dirname(__file__), "..", "..", "examples", "example.py")
    out = subprocess.run([sys.executable, example], check=True, capture_output=True,
                         text=True).stdout.splitlines()
    assert out[:3] == ["1234.56", "2024-0042", "2"]
    assert out[3].startswith("error 438 ")
