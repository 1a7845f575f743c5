// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <QString>

/// The scene document as a file: nodes, environments, plates, materials, what the pool holds, and the camera.
///
/// Any program that opens scene files finds it all; opened here, the default environment and the camera take the places of
/// the new document's own. Main thread only. Both answer "" or a sentence for people.
class SceneStore
{
    Q_DECLARE_TR_FUNCTIONS(SceneStore)

public:
    SceneStore() = delete;

    /// Whole or not at all.
    static QString save(const QString &path);
    /// Replaces the document. On failure it is as before.
    static QString open(const QString &path);
};
