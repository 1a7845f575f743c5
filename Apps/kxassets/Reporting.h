// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kxassets/ExitCode.h"

#include <string>
#include <vector>

class QJsonValue;
struct Context;

/// One line on standard error.
void complain(const std::string &text);

/// Complaints in one list at the end of a batch, and the exit code that follows.
ExitCode finishBatch(const std::vector<std::string> &failures);

void printJson(Context &context, const QJsonValue &value);

/// A table, its columns as wide as their contents, as people count characters.
void printTable(Context &context, const std::vector<std::vector<std::string>> &rows);
