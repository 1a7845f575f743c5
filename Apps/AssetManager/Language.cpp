// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

/// Nothing else refers to what a static library holds as resources. Outside of namespaces, as Qt wants it.
static void loadCatalogues()
{
    Q_INIT_RESOURCE(kxassets_catalogues);
}

namespace {

void installCatalogue(const QString &name, const QString &folder)
{
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(name, folder))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

} // namespace

QStringList Language::available()
{
    return {QStringLiteral("de"), QStringLiteral("en")};
}

QLocale Language::wanted(const QStringList &arguments)
{
    const QString option = QStringLiteral("--language");
    for (int i = 1; i < arguments.size(); ++i) {
        if (arguments[i].startsWith(option + '='))
            return QLocale(arguments[i].mid(option.size() + 1));
        if (arguments[i] == option && i + 1 < arguments.size())
            return QLocale(arguments[i + 1]);
    }
    return {};
}

void Language::install(const QLocale &locale)
{
    loadCatalogues();
    QLocale::setDefault(locale);
    const QString code = locale.name().section('_', 0, 0);
    const QString spoken = available().contains(code) ? code : QStringLiteral("en");
    installCatalogue(QStringLiteral("qtbase_") + spoken, QLibraryInfo::location(QLibraryInfo::TranslationsPath));
    installCatalogue(QStringLiteral("kxassets_") + spoken, QStringLiteral(":/translations"));
}
