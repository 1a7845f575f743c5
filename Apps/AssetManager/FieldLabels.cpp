// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FieldLabels.h"

#include "SceneGraph/Light.h"
#include "SceneGraph/Texture.h"

#include <algorithm>
#include <array>

namespace {

/// Labels are made of names of fields; this list tells translators which there are.
[[maybe_unused]] constexpr std::array Labels{
    QT_TRANSLATE_NOOP("FieldLabels", "Anisotropy"),
    QT_TRANSLATE_NOOP("FieldLabels", "At"),
    QT_TRANSLATE_NOOP("FieldLabels", "Bump strength"),
    QT_TRANSLATE_NOOP("FieldLabels", "Bump texture"),
    QT_TRANSLATE_NOOP("FieldLabels", "Camera"),
    QT_TRANSLATE_NOOP("FieldLabels", "Choice"),
    QT_TRANSLATE_NOOP("FieldLabels", "Clear coat"),
    QT_TRANSLATE_NOOP("FieldLabels", "Clear coat roughness"),
    QT_TRANSLATE_NOOP("FieldLabels", "Color"),
    QT_TRANSLATE_NOOP("FieldLabels", "Diffuse color"),
    QT_TRANSLATE_NOOP("FieldLabels", "Diffuse texture"),
    QT_TRANSLATE_NOOP("FieldLabels", "Environment"),
    QT_TRANSLATE_NOOP("FieldLabels", "Far"),
    QT_TRANSLATE_NOOP("FieldLabels", "Field of view"),
    QT_TRANSLATE_NOOP("FieldLabels", "From"),
    QT_TRANSLATE_NOOP("FieldLabels", "Ground color"),
    QT_TRANSLATE_NOOP("FieldLabels", "Image"),
    QT_TRANSLATE_NOOP("FieldLabels", "Incandescence color"),
    QT_TRANSLATE_NOOP("FieldLabels", "Incandescence texture"),
    QT_TRANSLATE_NOOP("FieldLabels", "Index of refraction"),
    QT_TRANSLATE_NOOP("FieldLabels", "Inner cone angle"),
    QT_TRANSLATE_NOOP("FieldLabels", "Intensity"),
    QT_TRANSLATE_NOOP("FieldLabels", "Is front"),
    QT_TRANSLATE_NOOP("FieldLabels", "Is on"),
    QT_TRANSLATE_NOOP("FieldLabels", "Is two sided"),
    QT_TRANSLATE_NOOP("FieldLabels", "Is visible"),
    QT_TRANSLATE_NOOP("FieldLabels", "Kind"),
    QT_TRANSLATE_NOOP("FieldLabels", "Material"),
    QT_TRANSLATE_NOOP("FieldLabels", "Matrix"),
    QT_TRANSLATE_NOOP("FieldLabels", "Metalness"),
    QT_TRANSLATE_NOOP("FieldLabels", "Metalness texture"),
    QT_TRANSLATE_NOOP("FieldLabels", "Near"),
    QT_TRANSLATE_NOOP("FieldLabels", "Normal texture"),
    QT_TRANSLATE_NOOP("FieldLabels", "Opacity"),
    QT_TRANSLATE_NOOP("FieldLabels", "Outer cone angle"),
    QT_TRANSLATE_NOOP("FieldLabels", "Position"),
    QT_TRANSLATE_NOOP("FieldLabels", "Rotation"),
    QT_TRANSLATE_NOOP("FieldLabels", "Roughness"),
    QT_TRANSLATE_NOOP("FieldLabels", "Roughness texture"),
    QT_TRANSLATE_NOOP("FieldLabels", "Scale"),
    QT_TRANSLATE_NOOP("FieldLabels", "Sheen"),
    QT_TRANSLATE_NOOP("FieldLabels", "Size"),
    QT_TRANSLATE_NOOP("FieldLabels", "Specular color"),
    QT_TRANSLATE_NOOP("FieldLabels", "Sun direction"),
    QT_TRANSLATE_NOOP("FieldLabels", "Sun size"),
    QT_TRANSLATE_NOOP("FieldLabels", "Tint"),
    QT_TRANSLATE_NOOP("FieldLabels", "Translation"),
    QT_TRANSLATE_NOOP("FieldLabels", "Transmission color"),
    QT_TRANSLATE_NOOP("FieldLabels", "Transparency"),
    QT_TRANSLATE_NOOP("FieldLabels", "Transparency texture"),
    QT_TRANSLATE_NOOP("FieldLabels", "Turbidity"),
    QT_TRANSLATE_NOOP("FieldLabels", "Up"),
};

} // namespace

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
