// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/DirectoryListing.h"

#include <QFile>
#include <QRegExp>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace kxAssetsInternal {

namespace {

struct CloseDirectory
{
    void operator()(DIR *directory) const { ::closedir(directory); }
};

/// One of the forms "*.xml" and "a?b*", in either case.
class NameFilter
{
public:
    explicit NameFilter(const QString &pattern) : _expression(pattern, Qt::CaseInsensitive, QRegExp::Wildcard)
    {
        const QString rest = pattern.mid(1);
        if (pattern.startsWith(QLatin1Char('*')) && !rest.contains(QRegExp(QStringLiteral("[*?\\[\\]]"))))
            _ending = rest;
    }

    bool matches(const QString &name) const
    {
        return _ending.isNull() ? _expression.exactMatch(name) : name.endsWith(_ending, Qt::CaseInsensitive);
    }

private:
    QRegExp _expression;
    QString _ending; ///< null where the expression has to tell
};

bool isOfKind(DIR *directory, const dirent &entry, unsigned char kind)
{
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == kind;
    struct stat status = {};
    return ::fstatat(::dirfd(directory), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           IFTODT(status.st_mode) == kind;
}

/// Hands the names of one kind to \a take. A name that is no text cannot be asked for again, so it is left out.
template <class Take> void forEachName(const QString &path, unsigned char kind, Take take)
{
    if (path.isEmpty())
        return;
    const std::unique_ptr<DIR, CloseDirectory> directory(::opendir(QFile::encodeName(path).constData()));
    if (!directory)
        return;
    while (const dirent *entry = ::readdir(directory.get())) {
        if (entry->d_name[0] == '.' || !isOfKind(directory.get(), *entry, kind))
            continue;
        const QByteArray bytes = QByteArray::fromRawData(entry->d_name, static_cast<int>(qstrlen(entry->d_name)));
        const QString name = QFile::decodeName(bytes);
        if (QFile::encodeName(name) == bytes)
            take(name);
    }
}

} // namespace

std::vector<QString> filesIn(const QString &directory, const QStringList &nameFilters)
{
    const std::vector<NameFilter> filters(nameFilters.begin(), nameFilters.end());
    std::vector<QString> names;
    forEachName(directory, DT_REG, [&](const QString &name) {
        if (filters.empty() || std::any_of(filters.begin(), filters.end(),
                                           [&name](const NameFilter &filter) { return filter.matches(name); }))
            names.push_back(name);
    });
    return names;
}

std::vector<QString> directoriesIn(const QString &directory)
{
    std::vector<std::pair<QString, QString>> namesByKey;
    forEachName(directory, DT_DIR, [&](const QString &name) { namesByKey.emplace_back(name.toLower(), name); });
    std::stable_sort(namesByKey.begin(), namesByKey.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    std::vector<QString> names;
    names.reserve(namesByKey.size());
    for (auto &[key, name] : namesByKey)
        names.push_back(std::move(name));
    return names;
}

int countDirectoriesIn(const QString &directory)
{
    int count = 0;
    forEachName(directory, DT_DIR, [&count](const QString &) { ++count; });
    return count;
}

} // namespace kxAssetsInternal
