// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QStringList>

#include <memory>
#include <vector>

class kxUrlManager;

/// Reads directories before the main thread does, which then finds in memory what it asks for: the window does not stand still
/// over a drive that takes its time to answer. What is read is dropped; who reads after it sees what is there then.
///
/// Main thread only, but for the reading itself. A drive that does not answer at all is not waited for, not even at the end.
class ReadAhead final : public QObject
{
    Q_OBJECT

public:
    explicit ReadAhead(QObject *parent = nullptr);
    /// Leaves directories to themselves that take longer to read than DriveInquiry::Farewell, which is how long it waits for all
    /// together.
    ~ReadAhead() override;

    /// Has these read before all that was wanted earlier, the first one first; without the descriptions of assets when only what
    /// changed is looked for. Those that are wanted already are left out.
    void want(const QStringList &directories, bool withContents);
    bool isWanted(const QString &directory) const;
    /// Whether it was read, which is forgotten then. Otherwise it is told when that may have changed.
    bool take(const QString &directory);
    /// Nothing is wanted any more.
    void clear();
    /// The same, and whoever is held up holds up nobody else: others read what is wanted next.
    void giveUp();

    /// Reads one directory at once, on any thread.
    static void read(kxUrlManager &manager, const QString &directory, bool withContents);

Q_SIGNALS:
    /// More was read since take() failed.
    void advanced();

private:
    struct Wanted;
    struct State;
    static void work(State &state);
    void leaveState();

    std::shared_ptr<State> _state; ///< the workers have it too, for as long as they are held up
    std::vector<std::weak_ptr<State>> _givenUp;
};
