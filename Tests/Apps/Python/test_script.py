# SPDX-License-Identifier: Apache-2.0
import os
import signal
import subprocess
import time

import pytest

PROGRAM = os.environ["KXASSETS"]


@pytest.fixture
def run(tmp_path):
    """Runs a script by the program, without a path to the module in the environment."""

    def start(text, *arguments, **options):
        script = tmp_path / "script.py"
        script.write_text(text)
        environment = {name: value for name, value in os.environ.items() if name != "PYTHONPATH"}
        return subprocess.Popen(
            [PROGRAM, "script", str(script), *arguments],
            cwd=tmp_path,
            env=environment,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
            **options,
        )

    def finish(*arguments):
        process = start(*arguments)
        output, errors = process.communicate(timeout=120)
        return process.returncode, output, errors

    finish.start = start
    finish.folder = tmp_path
    return finish


def test_runs_with_its_arguments(run):
    text = "import kx, sys\nkx.library('lib', create=True).save(kx.Node('Stool'))\nprint(sys.argv[1:])"
    code, output, errors = run(text, "--", "--all", "Lack ü")
    assert (code, output) == (0, "['--all', 'Lack ü']\n"), errors
    assert (run.folder / "lib" / "GEO_Stool" / "Stool.osb").is_file()


def test_ends_with_what_the_script_ended_with(run):
    assert run("import sys; sys.exit(7)")[0] == 7
    code, output, errors = run("raise ValueError('no good')")
    assert code == 1 and "ValueError: no good" in errors
    code, output, errors = run("import os; os.kill(os.getpid(), 9)")
    assert code == 137


def test_can_be_interrupted(run):
    process = run.start("import time\nprint('ready', flush=True)\ntime.sleep(60)", start_new_session=True)
    assert process.stdout.readline() == "ready\n"
    begin = time.monotonic()
    os.killpg(process.pid, signal.SIGINT)
    process.communicate(timeout=60)
    assert process.returncode == 130 or process.returncode == 1
    assert time.monotonic() - begin < 30


def test_says_when_there_is_no_script():
    done = subprocess.run([PROGRAM, "script", "none.py"], capture_output=True, text=True)
    assert (done.returncode, done.stderr) == (3, "kxassets: there is no script 'none.py'\n")
