"""What the end-to-end tests say, and how it is counted."""
import sys
import time

_failures = []


def check(what, condition):
    if not condition:
        _failures.append(what)


def run(*tests):
    """Runs each test and ends the program: with 1 when a check failed."""
    for test in tests:
        started = time.monotonic()
        test()
        print(f"{test.__name__}: {time.monotonic() - started:.1f} s")
    for failure in _failures:
        print("FAILED:", failure)
    sys.exit(1 if _failures else 0)
