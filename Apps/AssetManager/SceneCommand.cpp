// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneCommand.h"

#include "Kernel/kxController.h"
#include "Kernel/kxScenegraph.h"

#include <algorithm>

namespace {

void note(QStringList &failures, const QString &failure)
{
    if (!failure.isEmpty() && !failures.contains(failure))
        failures.append(failure);
}

} // namespace

SceneCommand::SceneCommand(const QString &text, Report report, int gesture)
    : QUndoCommand(text), _report(std::move(report)), _gesture(gesture)
{}

SceneCommand::~SceneCommand() = default;

QString SceneCommand::perform(std::unique_ptr<SceneStep> step)
{
    QString failure = step->apply();
    if (failure.isEmpty())
        _steps.push_back(std::move(step));
    return failure;
}

void SceneCommand::adopt(std::unique_ptr<SceneStep> step)
{
    _steps.push_back(std::move(step));
}

void SceneCommand::undo()
{
    QStringList failures;
    for (auto step = _steps.rbegin(); step != _steps.rend(); ++step)
        note(failures, (*step)->revert());
    _isApplied = false;
    finish(failures);
}

void SceneCommand::redo()
{
    QStringList failures;
    if (!_isApplied)
        for (const auto &step : _steps)
            note(failures, step->apply());
    _isApplied = true;
    finish(failures);
}

bool SceneCommand::mergeWith(const QUndoCommand *other)
{
    const auto *later = dynamic_cast<const SceneCommand *>(other);
    if (!later || later->_gesture != _gesture)
        return false;
    const auto own = static_cast<std::ptrdiff_t>(_steps.size());
    for (const std::shared_ptr<SceneStep> &step : later->_steps) {
        const bool isAbsorbed = std::any_of(_steps.begin(), _steps.begin() + own,
                                            [&step](const auto &earlier) { return earlier->absorb(*step); });
        if (!isAbsorbed)
            _steps.push_back(step);
    }
    return true;
}

void SceneCommand::finish(const QStringList &failures) const
{
    kxController::setModified(true);
    kxScenegraph::update(false);
    kxController::updateRender(false);
    if (!failures.isEmpty() && _report)
        _report(failures);
}
