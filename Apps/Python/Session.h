// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace kxPython {

/// The host for scripts: the running program's own, or in a plain interpreter one without windows, made on first use.
///
/// A program is a host whose kernel is up when the module is imported. Nothing of it is made or given up here.
class Session
{
public:
    Session() = delete;

    /// Makes the host when there is none. Main thread only.
    static void ensure();
    /// Gives a host up that ensure() made; before the interpreter ends.
    static void close();
};

} // namespace kxPython
