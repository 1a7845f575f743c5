// SPDX-License-Identifier: Apache-2.0
#pragma once

#if !defined(Q_MOC_RUN)
#include "SceneGraph/Material.h"
#include "SceneGraph/SceneListener.h"
#endif

#include <QObject>
#include <QPixmap>

#include <map>
#include <vector>

class QTimer;

/// Small pictures of the scene's materials: what is kept on them, else rendered one by one while nothing else happens.
///
/// A material that changes is rendered anew when the changes pause. Main thread only.
class MaterialPreviews final : public QObject, private osg::SceneListener
{
    Q_OBJECT

public:
    static constexpr int Size = 96; ///< pixels a side

    explicit MaterialPreviews(QObject *parent = nullptr);
    ~MaterialPreviews() override;

    /// What is known at once, which may be an older picture or a null one; then previewChanged() follows.
    QPixmap preview(const osg::MaterialPtr &material);

Q_SIGNALS:
    void previewChanged(quint32 materialId);

private:
    void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override;
    void containerDestroyed(osg::FieldContainer &container) override;
    void renderNext();
    void ask(std::uint32_t materialId);

    std::map<std::uint32_t, QPixmap> _pictures;
    std::vector<std::uint32_t> _waiting;
    QTimer *_idle;
    QTimer *_pause;
};
