// SPDX-License-Identifier: Apache-2.0
#include "FileNames.h"

#include "SourceTree.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <string_view>

namespace architecture {

namespace {

using Set = std::set<std::string>;

bool isChecked(std::string_view path)
{
    return path.starts_with("Host/") || path.starts_with("Libs/") || path.starts_with("Apps/") ||
           path.starts_with("Tests/");
}

bool isTestFile(std::string_view path)
{
    return path.starts_with("Tests/") && path.ends_with("Test.cpp");
}

bool isMain(std::string_view path)
{
    return stemOf(path) == "main" || stemOf(path) == "Main" || stemOf(path) == "QtMain" || stemOf(path) == "WindowMain";
}

std::string beside(const std::string &path, const char *extension)
{
    return folderOf(path) + "/" + stemOf(path) + extension;
}

bool isListed(const std::vector<NameException> &exceptions, const std::string &path)
{
    return std::any_of(exceptions.begin(), exceptions.end(), [&](const NameException &e) { return e.path == path; });
}

/// "kxFile" and "kxFileChecksum" are both about the class kxFile; "kxFilesystem" is not.
bool isAbout(std::string_view subject, std::string_view className)
{
    if (!subject.starts_with(className))
        return false;
    return subject.size() == className.size() ||
           std::isupper(static_cast<unsigned char>(subject[className.size()])) != 0;
}

bool testsAClass(const std::string &path, const std::vector<std::string> &files)
{
    std::string subject = stemOf(path);
    subject.resize(subject.size() - std::string_view("Test").size());
    const std::string ownFolder = folderOf(path);
    const std::string testedFolder = ownFolder.substr(std::string_view("Tests/").size());
    return std::any_of(files.begin(), files.end(), [&](const std::string &file) {
        const std::string folder = folderOf(file);
        return isHeader(file) &&
               (folder == testedFolder || folder == testedFolder + "/Internal" || folder == ownFolder) &&
               isAbout(subject, stemOf(file));
    });
}

/// Collects what is wrong, with the exceptions taken into account.
struct Problems
{
    std::vector<std::string> found;

    void expect(bool isRegular, const std::string &path, const std::vector<NameException> &exceptions,
                const char *problem)
    {
        const bool isException = isListed(exceptions, path);
        if (!isRegular && !isException)
            found.push_back(path + ": " + problem +
                            "; name it so, or list it with its reason in FileNameExceptions.cpp");
        if (isRegular && isException)
            found.push_back(path + ": is no exception any more; take it out of FileNameExceptions.cpp");
    }

    void expectThere(const Set &files, const std::vector<NameException> &exceptions)
    {
        for (const NameException &exception : exceptions) {
            if (!files.contains(exception.path))
                found.push_back(exception.path + ": is not there; take it out of FileNameExceptions.cpp");
        }
    }
};

} // namespace

std::vector<std::string> findNameProblems(const std::vector<std::string> &files,
                                          const std::vector<NameException> &headersWithoutSource,
                                          const std::vector<NameException> &sourcesWithoutHeader,
                                          const std::vector<NameException> &testsOfCapabilities)
{
    const Set all(files.begin(), files.end());
    Problems problems;
    for (const std::string &path : files) {
        if (!isChecked(path) || path.ends_with("Export.h"))
            continue;
        if (isHeader(path))
            problems.expect(all.contains(beside(path, ".cpp")), path, headersWithoutSource,
                            "has no source of its name");
        else if (isTestFile(path))
            problems.expect(testsAClass(path, files), path, testsOfCapabilities,
                            "is named after no class of its folder");
        else if (isSource(path) && !isMain(path))
            problems.expect(all.contains(beside(path, ".h")), path, sourcesWithoutHeader, "has no header of its name");
    }
    for (const auto *exceptions : {&headersWithoutSource, &sourcesWithoutHeader, &testsOfCapabilities})
        problems.expectThere(all, *exceptions);
    return problems.found;
}

} // namespace architecture
