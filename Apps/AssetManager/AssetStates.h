// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <map>
#include <memory>
#include <string>
#include <vector>

/// How stored assets stand to the scene (the AssetState of all their copies there), and which of them are damaged. Main thread only.
///
/// Follows the scene by itself, some time after the last change; what is stored on drives that do not answer, when they do.
class AssetStates final : public QObject
{
    Q_OBJECT

public:
    enum State : unsigned {
        InScene = 1,
        EditedInScene = 2, ///< the copy in the scene was changed
        StoredNewer = 4,   ///< the stored asset was saved again since it was loaded
        Broken = 8
    };

    explicit AssetStates(QObject *parent = nullptr);
    ~AssetStates() override;

    /// Flags of State.
    unsigned stateOf(const std::string &uuid) const;
    /// The same in sentences.
    QStringList reasonsOf(const std::string &uuid) const;
    /// Those that the scene has copies of.
    std::vector<std::string> used() const;

    /// Says what is wrong with an asset; with an empty reason, nothing.
    void setBroken(const std::string &uuid, const QString &reason);
    /// These are not there any more.
    void forgetBroken(const std::vector<std::string> &uuids);

    /// Looks at the scene now.
    void update();
    /// Looks at it soon, once for several calls.
    void updateSoon();

Q_SIGNALS:
    void changed();

private:
    class Watch;

    std::unique_ptr<Watch> _watch;
    std::map<std::string, unsigned> _states; ///< of those in the scene
    std::map<std::string, QString> _broken;
    QTimer _timer;
    QTimer _retry;
};
