// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptSupport.h"

namespace {

constexpr const char *Source = R"python(
import ast
import builtins
import codeop
import io
import linecache
import os
import re
import sys
import threading
import time
import traceback
import types

_modules = sys.modules
_modules["readline"] = None  # importing it would set the terminal up
import rlcompleter
del _modules["readline"]


class Output(io.TextIOBase):
    """Hands what is written to the program."""

    encoding = "utf-8"
    errors = "backslashreplace"

    def __init__(self, write, name):
        self._write = write
        self.name = name

    def writable(self):
        return True

    def write(self, text):
        if not isinstance(text, str):
            raise TypeError(f"write() argument must be str, not {type(text).__name__}")
        self._write(text.encode(self.encoding, self.errors))
        return len(text)

    def close(self):
        pass


class NoInput(io.TextIOBase):
    """Waiting for a line would stop the whole program."""

    encoding = "utf-8"

    def readable(self):
        return True

    def read(self, size=-1):
        raise EOFError("scripts in this program cannot ask for input")

    readline = read

    def close(self):
        pass


def _sleep(seconds, _pause=time.sleep):
    """Suspends execution for a number of seconds, in which the program can end the script."""
    if threading.current_thread() is not threading.main_thread():
        return _pause(seconds)
    end = time.monotonic() + seconds
    _pause(min(seconds, 0.05))
    while (left := end - time.monotonic()) > 0:
        _pause(min(left, 0.05))


if time.sleep.__module__ == "time":
    time.sleep = _sleep


class Session:
    """One namespace, in which files and lines are run one after the other."""

    def __init__(self, write, write_error):
        self._output = Output(write, "<stdout>")
        self._errors = Output(write_error, "<stderr>")
        self._module = types.ModuleType("__main__")
        self._module.__builtins__ = builtins
        self._names = vars(self._module)
        self._count = 0

    def _enter(self):
        sys.modules["__main__"] = self._module
        sys.stdin, sys.stdout, sys.stderr = NoInput(), self._output, self._errors

    def run_text(self, text):
        self._enter()
        self._count += 1
        name = f"<console {self._count}>"
        linecache.cache[name] = (len(text), None, text.splitlines(True), name)
        sys.argv = [""]
        tree = ast.parse(text, name)
        exec(compile(ast.Interactive(tree.body), name, "single", dont_inherit=True), self._names)

    def run_file(self, path, arguments):
        self._enter()
        sys.argv = [path, *arguments]
        folder = os.path.dirname(os.path.realpath(path))
        sys.path.insert(0, folder)
        self._names["__file__"] = path
        try:
            with io.open_code(os.path.abspath(path)) as file:
                code = compile(file.read(), path, "exec", dont_inherit=True)
            linecache.checkcache(path)
            exec(code, self._names)
        finally:
            self._names.pop("__file__", None)
            if folder in sys.path:
                sys.path.remove(folder)

    def end(self, error):
        """The exit code of what ended with an exception, which is shown where it is one."""
        if isinstance(error, SystemExit):
            if error.code is None:
                return 0
            if isinstance(error.code, int):
                return error.code & 0xFF  # what a process can end with
            print(error.code, file=self._errors)
            return 1
        trace = error.__traceback__
        while trace and trace.tb_frame.f_code.co_filename == __file__:
            trace = trace.tb_next
        traceback.print_exception(type(error), error, trace, file=self._errors)
        return 1

    def is_complete(self, text):
        try:
            return codeop.compile_command(text, "<console>", "single") is not None
        except (SyntaxError, ValueError, OverflowError):
            return True  # running it says what is wrong

    def completions(self, text):
        """What the last word of a line can go on as: whole words."""
        word = re.search(r"[\w.]*$", text).group()
        if not word:
            return []
        completer = rlcompleter.Completer(self._names)
        found = []
        while (match := completer.complete(word, len(found))) is not None:
            found.append(match)
        return sorted({match.rstrip() for match in found if match.startswith(word)})

    def close(self):
        """Runs what scripts registered for the end, and lets go of what they made."""
        self._enter()
        import atexit
        import gc

        atexit._run_exitfuncs()
        sys.stdin = sys.stdout = sys.stderr = None
        builtins.__dict__.pop("_", None)
        if sys.modules.get("__main__") is self._module:
            sys.modules["__main__"] = types.ModuleType("__main__")
        self._names.clear()
        gc.collect()
)python";

} // namespace

const char *ScriptSupport::fileName()
{
    return "<asset-manager>";
}

const char *ScriptSupport::source()
{
    return Source;
}
