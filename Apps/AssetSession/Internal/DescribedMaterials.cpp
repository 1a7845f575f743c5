// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/Internal/DescribedMaterials.h"

#include "AssetSession/kxTexturePattern.h"
#include "Kernel/kxMaterialTags.h"
#include "Kernel/kxMaterials.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerType.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/SwitchMaterial.h"

#include <QColor>
#include <QJsonArray>

#include <cmath>
#include <set>

namespace kxAssetSessionInternal {

namespace {

const char *const SwitchKey = "switch";
const char *const MultiPassKey = "multipass";

std::string quoted(const QString &text)
{
    return "'" + text.toStdString() + "'";
}

/// IEC 61966-2-1.
float linear(double encoded)
{
    return static_cast<float>(encoded <= 0.04045 ? encoded / 12.92 : std::pow((encoded + 0.055) / 1.055, 2.4));
}

bool isNumberField(const osg::FieldPointer &field)
{
    return std::holds_alternative<float *>(field);
}

/// "#rrggbb" and "#aarrggbb" are sRGB; [r, g, b] and [r, g, b, a] are linear and may exceed 1.
osg::Result<osg::Color4f> toColor(const QJsonValue &value)
{
    const QColor color(value.toString());
    if (value.isString() && color.isValid())
        return osg::Color4f{linear(color.redF()), linear(color.greenF()), linear(color.blueF()),
                            static_cast<float>(color.alphaF())};
    const QJsonArray numbers = value.toArray();
    float channels[] = {0.0F, 0.0F, 0.0F, 1.0F};
    bool isGood = numbers.size() == 3 || numbers.size() == 4;
    for (int i = 0; isGood && i < numbers.size(); ++i) {
        channels[i] = static_cast<float>(numbers[i].toDouble(-1.0));
        isGood = channels[i] >= 0.0F && std::isfinite(channels[i]);
    }
    if (!isGood)
        return osg::Failure{R"(is neither "#rrggbb" nor [r, g, b] nor [r, g, b, a])"};
    return osg::Color4f{channels[0], channels[1], channels[2], channels[3]};
}

osg::Result<osg::Vec2f> toPair(const QJsonObject &object, const char *key, osg::Vec2f fallback)
{
    const QJsonValue value = object.value(QLatin1String(key));
    if (value.isUndefined())
        return fallback;
    if (value.isDouble())
        return osg::Vec2f{static_cast<float>(value.toDouble()), static_cast<float>(value.toDouble())};
    const QJsonArray pair = value.toArray();
    if (pair.size() != 2 || !pair[0].isDouble() || !pair[1].isDouble())
        return osg::Failure{std::string("'") + key + "' is neither a number nor two"};
    return osg::Vec2f{static_cast<float>(pair[0].toDouble()), static_cast<float>(pair[1].toDouble())};
}

/// Colours are encoded for the eye; everything else is a measure.
bool isColorField(const QString &field)
{
    return field == QLatin1String("DiffuseTexture") || field == QLatin1String("IncandescenceTexture");
}

bool isReserved(const QString &key)
{
    static const std::set<QString> keys = {QStringLiteral("name"), QStringLiteral("folder"), QStringLiteral("tags")};
    return keys.count(key) != 0;
}

osg::Result<void> addTags(const osg::MaterialPtr &material, const QJsonValue &tags)
{
    if (!tags.isUndefined() && !tags.isArray())
        return osg::Failure{"'tags' is not a list of words"};
    for (const QJsonValue tag : tags.toArray()) {
        const QString text = tag.toString();
        if (text.isEmpty() || text.contains(QLatin1Char(' ')))
            return osg::Failure{"'tags' is not a list of words"};
        kxMaterialTags::addTag(material, text.toStdString());
    }
    return {};
}

} // namespace

osg::Result<kxMaterialDescription::Described> DescribedMaterials::make(const QJsonObject &description)
{
    const std::string name = description.value(QStringLiteral("name")).toString().toStdString();
    if (name.empty())
        return osg::Failure{"a material has no name"};
    const auto failure = [&name](const std::string &reason) { return osg::Failure{"'" + name + "': " + reason}; };
    if (_made.count(name) != 0)
        return failure("there are two of this name");
    const Made material = makeMaterial(description);
    if (!material)
        return failure(material.reason());
    kxMaterials::setName(material.value().get(), name, false);
    if (const auto tagged = addTags(material.value().get(), description.value(QStringLiteral("tags"))); !tagged)
        return failure(tagged.reason());
    _made.emplace(name, material.value());
    return kxMaterialDescription::Described{material.value(),
                                            description.value(QStringLiteral("folder")).toString().toStdString()};
}

DescribedMaterials::Made DescribedMaterials::makeMaterial(const QJsonObject &description)
{
    if (description.contains(QLatin1String(SwitchKey)))
        return makeComposite(description, osg::FCRef<osg::MultiMaterial>(osg::SwitchMaterial::create()), SwitchKey);
    if (description.contains(QLatin1String(MultiPassKey)))
        return makeComposite(description, osg::FCRef<osg::MultiMaterial>(osg::MultiPassMaterial::create()),
                             MultiPassKey);
    return makeSurface(description);
}

DescribedMaterials::Made DescribedMaterials::makeComposite(const QJsonObject &description,
                                                           const osg::FCRef<osg::MultiMaterial> &composite,
                                                           const char *key)
{
    const QJsonArray parts = description.value(QLatin1String(key)).toArray();
    for (const QString &other : description.keys())
        if (!isReserved(other) && other != QLatin1String(key) && other != QLatin1String("choice"))
            return osg::Failure{quoted(other) + " is not known for a " + key};
    if (parts.isEmpty())
        return osg::Failure{std::string("'") + key + "' is not a list of names"};
    for (const QJsonValue part : parts) {
        const auto made = _made.find(part.toString().toStdString());
        if (made == _made.end())
            return osg::Failure{"there is no material " + quoted(part.toString()) + " before it"};
        const osg::CPEditor edit(composite.get(), osg::MultiMaterial::MaterialsFieldMask);
        composite->addMaterial(made->second.get());
    }
    const int choice = description.value(QStringLiteral("choice")).toInt(0);
    const osg::SwitchMaterialPtr chooser = osg::SwitchMaterialPtr::dcast(composite.get());
    if (choice < 0 || choice >= parts.size() || (choice != 0 && !chooser))
        return osg::Failure{"'choice' is none of its materials, counted from 0"};
    if (chooser) {
        const osg::CPEditor edit(chooser, osg::SwitchMaterial::ChoiceFieldMask);
        chooser->setChoice(choice);
    }
    return osg::FCRef<osg::Material>(composite.get());
}

DescribedMaterials::Made DescribedMaterials::makeSurface(const QJsonObject &description)
{
    const osg::FCRef<osg::UBRDFMaterial> material(osg::UBRDFMaterial::create());
    for (const QString &key : description.keys())
        if (!isReserved(key))
            if (const auto set = setField(material.get(), key, description.value(key)); !set)
                return osg::Failure{quoted(key) + ' ' + set.reason()};
    return osg::FCRef<osg::Material>(material.get());
}

osg::Result<void> DescribedMaterials::setField(const osg::UBRDFMaterialPtr &material, const QString &name,
                                               const QJsonValue &value)
{
    const osg::FieldInfo *info = osg::UBRDFMaterial::getClassType().findField(name.toStdString());
    if (!info)
        return osg::Failure{"is no field of a surface"};
    const osg::FieldPointer field = info->address(*material);
    const osg::CPEditor edit(material, info->mask);
    if (isNumberField(field)) {
        const double number = value.toDouble();
        if (!value.isDouble() || !std::isfinite(number))
            return osg::Failure{"is not a number"};
        *std::get<float *>(field) = static_cast<float>(number);
    } else if (std::holds_alternative<bool *>(field)) {
        if (!value.isBool())
            return osg::Failure{"is neither true nor false"};
        *std::get<bool *>(field) = value.toBool();
    } else if (std::holds_alternative<osg::Color4f *>(field)) {
        const osg::Result<osg::Color4f> color = toColor(value);
        if (!color)
            return osg::Failure{color.reason()};
        *std::get<osg::Color4f *>(field) = color.value();
    } else if (name.endsWith(QLatin1String("Texture")) && value.isObject()) {
        const auto texture = makeTexture(name, value.toObject());
        if (!texture)
            return osg::Failure{"has no texture: " + texture.reason()};
        std::get<osg::RefFieldBase *>(field)->setContainer(texture.value().get());
    } else {
        return osg::Failure{"cannot be described"};
    }
    return {};
}

osg::Result<osg::FCRef<osg::Texture>> DescribedMaterials::makeTexture(const QString &field,
                                                                      const QJsonObject &description)
{
    QJsonObject rest = description;
    const osg::Result<osg::Vec2f> scale = toPair(description, "repeat", {1.0F, 1.0F});
    const osg::Result<osg::Vec2f> offset = toPair(description, "offset", {0.0F, 0.0F});
    if (!scale || !offset)
        return osg::Failure{!scale ? scale.reason() : offset.reason()};
    const QJsonValue rotation = description.value(QStringLiteral("rotation"));
    if (!rotation.isUndefined() && !rotation.isDouble())
        return osg::Failure{"'rotation' is not a number of degrees"};
    for (const char *key : {"repeat", "offset", "rotation"})
        rest.remove(QLatin1String(key));
    const auto image = makeImage(field, rest);
    if (!image)
        return osg::Failure{image.reason()};

    osg::FCRef<osg::Texture> texture(osg::Texture::create());
    const osg::CPEditor edit(texture.get(), osg::AllFieldMask);
    constexpr double RadiansPerDegree = 0.017453292519943295;
    texture->setImage(image.value());
    texture->setScale(scale.value());
    texture->setOffset(offset.value());
    texture->setRotation(static_cast<float>(rotation.toDouble() * RadiansPerDegree));
    texture->setIsSrgb(isColorField(field));
    return texture;
}

osg::Result<osg::FCRef<osg::Image>> DescribedMaterials::makeImage(const QString &field, const QJsonObject &description)
{
    if (description.contains(QStringLiteral("image"))) {
        const QString file = description.value(QStringLiteral("image")).toString();
        if (description.size() != 1)
            return osg::Failure{"beside 'image' only 'repeat', 'offset' and 'rotation' are known"};
        osg::FCRef<osg::Image> image(osg::Image::create());
        const osg::CPEditor edit(image.get(), osg::AllFieldMask);
        if (!image->read(_folder.absoluteFilePath(file).toStdString()))
            return osg::Failure{"the picture " + quoted(file) + " cannot be read"};
        return image;
    }
    const osg::Result<kxTexturePattern> pattern = kxTexturePattern::fromJson(description);
    if (!pattern)
        return osg::Failure{pattern.reason()};
    if (isColorField(field))
        return pattern.value().drawColors();
    return field == QLatin1String("NormalTexture") ? pattern.value().drawNormals() : pattern.value().drawValues();
}

} // namespace kxAssetSessionInternal
