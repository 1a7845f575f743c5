// SPDX-License-Identifier: Apache-2.0
#include "kxassets/Reporting.h"

#include "kxassets/Command.h"
#include "kxassets/Interrupt.h"
#include "kxassets/PlainText.h"
#include "kxassets/ResultStream.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <algorithm>
#include <cstdio>

void complain(const std::string &text)
{
    std::fprintf(stderr, "kxassets: %s\n", PlainText::printable(text).c_str());
}

ExitCode finishBatch(const std::vector<std::string> &failures)
{
    if (Interrupt::wasRequested())
        complain("stopped before the end");
    if (failures.size() > 1)
        complain(std::to_string(failures.size()) + " failed:");
    for (const std::string &failure : failures)
        complain(failure);
    return failures.empty() && !Interrupt::wasRequested() ? ExitCode::Done : ExitCode::Failed;
}

void printJson(Context &context, const QJsonValue &value)
{
    const QJsonDocument document = value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    context.results.write(document.toJson(QJsonDocument::Indented).toStdString());
}

void printTable(Context &context, const std::vector<std::vector<std::string>> &rows)
{
    std::vector<std::size_t> widths;
    std::vector<std::vector<std::string>> lines = rows;
    for (auto &row : lines) {
        std::transform(row.begin(), row.end(), row.begin(), PlainText::printable);
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], PlainText::columns(row[i]));
    }
    for (const auto &row : lines) {
        std::string text;
        for (std::size_t i = 0; i < row.size(); ++i) {
            text += row[i];
            if (i + 1 < row.size())
                text.append(widths[i] - PlainText::columns(row[i]) + 2, ' ');
        }
        text.erase(text.find_last_not_of(' ') + 1);
        context.results.line(text);
    }
}
