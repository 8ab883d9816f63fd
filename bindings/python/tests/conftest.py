import pytest

import norvik50


@pytest.fixture
def lib():
    with norvik50.LIB() as library:
        yield library
