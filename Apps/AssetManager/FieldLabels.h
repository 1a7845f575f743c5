// SPDX-License-Identifier: Apache-2.0
#pragma once

#if !defined(Q_MOC_RUN)
#include "SceneGraph/FieldContainerType.h"
#endif

#include <QCoreApplication>
#include <QString>
#include <QStringList>

/// What fields are called for people, derived from their declarations.
class FieldLabels
{
    Q_DECLARE_TR_FUNCTIONS(FieldLabels)

public:
    FieldLabels() = delete;

    /// "DiffuseColor" as "Diffuse color".
    static QString label(const std::string &field);
    /// What each number of a field stands for that is a choice; empty for every other field.
    static QStringList choices(const osg::FieldContainerType &type, const std::string &field);
    /// Whether the number is an angle in radians, which people see in degrees.
    static bool isAngle(const std::string &field);
};
