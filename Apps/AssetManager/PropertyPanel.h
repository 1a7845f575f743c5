// SPDX-License-Identifier: Apache-2.0
#pragma once

#if !defined(Q_MOC_RUN)
#include "SceneGraph/Node.h"
#include "SceneGraph/SceneListener.h"
#endif

#include <QVector>
#include <QWidget>

#include <set>
#include <vector>

class PropertySection;
class QComboBox;
class QLabel;
class QLineEdit;
class QScrollArea;
class QTimer;
class QVBoxLayout;
class SceneActions;

/// The properties of the selected objects, and of the materials that were chosen or that they have.
///
/// Several objects of one type are edited together; what they differ in says so.
class PropertyPanel final : public QWidget, private osg::SceneListener
{
    Q_OBJECT

public:
    explicit PropertyPanel(SceneActions &actions, QWidget *parent = nullptr);
    ~PropertyPanel() override;

    /// Shows these instead of those of the selection, until that changes.
    void showMaterials(const QVector<quint32> &materialIds);

private:
    using Ids = std::vector<std::uint32_t>;

    /// What is shown; another one means other editors.
    struct Content
    {
        Ids nodes;
        Ids cores;
        Ids cameras;
        Ids materials; ///< to choose from

        friend bool operator==(const Content &, const Content &) = default;
    };

    void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override;
    void containerDestroyed(osg::FieldContainer &container) override;
    void selectionChanged();
    void update();
    Content content() const;
    void build();
    void buildMaterialChoice();
    void buildMaterial();
    PropertySection *addSection(const QString &title, const Ids &ids, const char *name);
    void removeSection(PropertySection *&section);
    void refresh();
    void refreshNames();
    void rename();

    SceneActions &_actions;
    Ids _chosen; ///< materials; empty: those of the selection
    Content _content;
    std::set<std::uint32_t> _watched;
    QTimer *_timer;
    QLabel *_hint;
    QScrollArea *_scroll;
    QVBoxLayout *_sections;
    QWidget *_object;
    QLineEdit *_name;
    QLabel *_type;
    QLabel *_asset;
    QComboBox *_material;
    QLabel *_materialAsset;
    PropertySection *_coreSection = nullptr;
    PropertySection *_cameraSection = nullptr;
    PropertySection *_materialSection = nullptr;
};
