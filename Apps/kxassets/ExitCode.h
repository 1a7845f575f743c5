// SPDX-License-Identifier: Apache-2.0
#pragma once

/// What the program ends with.
enum class ExitCode {
    Done = 0,
    Findings = 1, ///< done, and something was found: damage, a difference
    Usage = 2,    ///< the arguments cannot be understood
    Failed = 3    ///< something could not be done; standard error says what
};
