"""The table of calls every binding runs, with the C++ dispatch's answers."""

import json
import os

import pytest

import norvik50
from typed_json import same, to_python

with open(os.environ["NORVIK50_CALLS_TABLE"], encoding="utf-8") as table:
    CASES = json.load(table)["cases"]


@pytest.mark.parametrize("case", CASES, ids=[c["name"] for c in CASES])
def test_answers_as_the_dispatch(lib, case):
    expect = case["expect"]
    written = {int(i) for i in expect.get("byref", {})}
    args = [to_python(a) for a in case["args"]]
    args = [norvik50.Ref(a) if i in written else a for i, a in enumerate(args)]
    call = lib.let if case.get("let") else lib.call
    if "error" in expect:
        with pytest.raises(norvik50.Error) as failure:
            call(case["member"], *args)
        assert failure.value.number == expect["error"]
        assert failure.value.description
        return
    result = call(case["member"], *args)
    if "result" in expect:
        assert same(expect["result"], result), f"{result!r}"
    else:
        assert result is None
    for index, value in expect.get("byref", {}).items():
        assert same(value, args[int(index)].value), f"argument {index}: {args[int(index)].value!r}"
