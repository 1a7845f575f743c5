# SPDX-License-Identifier: Apache-2.0
"""What run_tests counts as passed and failed, of tests that are a process each and of programs with many tests."""

import os
import pathlib
import re
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
GOOD = f"{os.environ['KX_GOOD']} --gtest_filter=*.KeepsTheOrderOfEveryWayOfWriting:*.HoldsMoreThanOneBlock"  # two tests
BAD = os.environ["KX_BAD"]  # one
SKIPPED = """<testsuites tests="2">
  <testcase name="A" status="run" result="completed" time="0" classname="T" />
  <testcase name="B" status="run" result="skipped" time="0" classname="T">
    <skipped message="no"><![CDATA[no]]></skipped>
  </testcase>
</testsuites>"""
PROPERTIES = """<testsuites tests="1">
  <testcase name="A" status="run" result="completed" time="0" classname="T">
    <properties>
      <property name="rounds" value="3"/>
    </properties>
  </testcase>
</testsuites>"""


def counted(folder, tests):
    """The last numbers, after CTest ran the shell commands that stand below the names of the tests."""
    build = folder / "build"
    build.mkdir(exist_ok=True)
    lines = []
    for name, command in tests.items():
        script = folder / f"{name}.sh"
        script.write_text(f"#!/bin/sh\n{command}\n")
        script.chmod(0o755)
        lines.append(f'add_test({name} "{script}")')
        lines.append(f'set_tests_properties({name} PROPERTIES ENVIRONMENT "GTEST_OUTPUT=xml:{build}/test-groups/{name}.xml")')
    (build / "CTestTestfile.cmake").write_text("\n".join(lines))
    script = f'. "{ROOT}/cmake/setup.bash"; passed=0 failed=0; run_tests build; echo "$passed passed, $failed failed"'
    path = f"{pathlib.Path(os.environ['KX_CTEST']).parent}:{os.environ['PATH']}"
    done = subprocess.run(["bash", "-c", script], cwd=folder, env={**os.environ, "PATH": path}, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    last = re.fullmatch(r"(\d+) passed, (\d+) failed", done.stdout.splitlines()[-1])
    assert last, done.stdout
    return int(last[1]), int(last[2])


def writing(text):
    """A command that writes the file of its tests as told."""
    return f"mkdir -p \"$(dirname \"${{GTEST_OUTPUT#xml:}}\")\"; cat > \"${{GTEST_OUTPUT#xml:}}\" << 'END'\n{text}\nEND"


@pytest.mark.parametrize("name, command, numbers", [
    ("single.Passes", "true", (1, 0)),
    ("single.Fails", "false", (0, 1)),
    ("single.Crashes", "kill -SEGV $$", (0, 1)),
    ("group.Good.1", GOOD, (2, 0)),
    ("group.Bad.1", BAD, (0, 1)),
    ("group.LeaksAtTheEnd.1", f"{GOOD}; exit 23", (2, 1)),
    ("group.DiesHalfWay.1", "kill -SEGV $$", (0, 1)),
    ("group.EndsHalfWay.1", "exit 0", (0, 1)),
    ("group.HasNoTest.1", f"{os.environ['KX_GOOD']} --gtest_filter=Nothing.*", (0, 1)),
    ("group.Skips.1", writing(SKIPPED), (1, 1)),
    ("group.NotesNumbers.1", writing(PROPERTIES), (1, 0)),
    ("group.CannotStart.1", "exec ./nothing", (0, 1)),
])
def test_counts(tmp_path, name, command, numbers):
    assert counted(tmp_path, {name: command}) == numbers


def test_adds_up(tmp_path):
    tests = {"group.Good.1": GOOD, "group.Bad.1": BAD, "group.Good.2": GOOD, "single.Passes": "true", "single.Fails": "false"}
    assert counted(tmp_path, tests) == (5, 2)


def test_counts_no_test_as_failed(tmp_path):
    assert counted(tmp_path, {}) == (0, 1)


def test_counts_nothing_of_an_earlier_run(tmp_path):
    old = tmp_path / "build/test-groups/group.Dies.1.xml"
    old.parent.mkdir(parents=True)
    old.write_text(PROPERTIES)
    assert counted(tmp_path, {"group.Dies.1": "kill -SEGV $$"}) == (0, 1)
