// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Import/Internal/WorkerRequest.h"

namespace kximport {

/// What the program that parses does: it limits itself, reads the foreign file, writes the result, and reports.
class WorkerTask
{
public:
    explicit WorkerTask(WorkerRequest request);

    /// The program's exit code: 0 where the result is there.
    int run() const;

private:
    void limitItself() const;
    int convert() const;

    WorkerRequest _request;
};

} // namespace kximport
