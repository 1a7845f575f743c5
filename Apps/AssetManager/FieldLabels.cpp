// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FieldLabels.h"

#include "SceneGraph/Light.h"
#include "SceneGraph/Texture.h"

#include <algorithm>
#include <array>

QString FieldLabels::label(const std::string &field)
{
    QString words;
    for (const QChar letter : QString::fromStdString(field == "RotationAsQuaternion" ? "Rotation" : field)) {
        if (letter.isUpper() && !words.isEmpty())
            words += QString(' ') + letter.toLower();
        else
            words += letter;
    }
    return tr(words.toUtf8().constData());
}

QStringList FieldLabels::choices(const osg::FieldContainerType &type, const std::string &field)
{
    if (&type == &osg::Light::getClassType() && field == "Kind")
        return {tr("Point"), tr("Directional"), tr("Spot")};
    if (&type == &osg::Texture::getClassType() && field.starts_with("Wrap"))
        return {tr("Repeat"), tr("Clamp"), tr("Mirror")};
    return {};
}

bool FieldLabels::isAngle(const std::string &field)
{
    static constexpr std::array Angles{"Rotation", "FieldOfView", "InnerConeAngle", "OuterConeAngle"};
    return std::find(Angles.begin(), Angles.end(), field) != Angles.end();
}
