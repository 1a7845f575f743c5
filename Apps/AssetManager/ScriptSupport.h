// SPDX-License-Identifier: Apache-2.0
#pragma once

/// The part of running scripts that is best said in Python.
class ScriptSupport
{
public:
    ScriptSupport() = delete;

    /// What the interpreter calls the file that source() does not come from; in tracebacks nobody wants to see it.
    static const char *fileName();
    /// Defines the class Session: streams that hand over what is written, a namespace that stays, and how to run something
    /// in it.
    static const char *source();
};
