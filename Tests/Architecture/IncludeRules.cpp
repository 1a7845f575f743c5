// SPDX-License-Identifier: Apache-2.0
#include "IncludeRules.h"

#include <algorithm>
#include <regex>
#include <vector>

namespace architecture {

namespace {

using Names = std::vector<std::string_view>;

bool contains(const Names &names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// A folder of the project, and the folders below it in the order of layers that it may use.
struct Layer
{
    std::string_view folder; ///< in the tree
    std::string_view name;   ///< in includes
    Names mayUse;
};

const std::vector<Layer> &layers()
{
    static const std::vector<Layer> table = {
        {"Host/SceneGraph", "SceneGraph", {}},
        {"Host/Kernel", "Kernel", {"SceneGraph"}},
        {"Host/Rendering", "Rendering", {"Kernel", "SceneGraph"}},
        {"Host/Import", "Import", {"Kernel", "SceneGraph"}},
        {"Libs/Assets", "Assets", {"Rendering", "Kernel", "SceneGraph"}},
        {"Apps/AssetSession", "AssetSession", {"Assets", "Import", "Rendering", "Kernel", "SceneGraph"}},
        {"Apps/kxassets", "kxassets", {"AssetSession", "Assets", "Import", "Rendering", "Kernel", "SceneGraph"}},
        {"Apps/AssetManager",
         "AssetManager",
         {"AssetSession", "Assets", "Import", "Rendering", "Kernel", "SceneGraph"}},
        {"Apps/Python", "Python", {"AssetSession", "Assets", "Import", "Rendering", "Kernel", "SceneGraph"}},
    };
    return table;
}

enum class Where {
    Anywhere,
    InsideOnly, ///< sources and Internal/: no user of a library needs these headers
};

/// A library of others, and which layers may use it.
struct ThirdParty
{
    std::string_view name;
    std::string_view headers; ///< expression that matches the whole include
    Names layers;
    Where where;
    std::string_view instead;
};

const Names EveryLayer = {"*"};
const Names EveryLayerWithQt = {"Kernel",       "Rendering", "Import",       "Assets",
                                "AssetSession", "kxassets",  "AssetManager", "Python"};

const std::vector<ThirdParty> &thirdParties()
{
    static const std::vector<ThirdParty> table = {
        {"the standard library", "[a-z_0-9]+", EveryLayer, Where::Anywhere, ""},
        {"POSIX",
         "(cxxabi|dirent|dlfcn|fcntl|link|poll|pthread|pty|pwd|signal|spawn|unistd)\\.h|(sys|linux)/[a-z_]+\\.h",
         EveryLayer, Where::InsideOnly, "the standard library in headers"},
        {"the sanitizers", "sanitizer/[a-z_]+\\.h", EveryLayer, Where::InsideOnly,
         "nothing: no interface depends on them"},
        {"the processor's intrinsics",
         "[a-z]*mmintrin\\.h|immintrin\\.h",
         {"Rendering", "Kernel", "SceneGraph"},
         Where::InsideOnly,
         "plain C++"},
        {"Qt", "Q[A-Za-z0-9]+|Qt[A-Za-z]+/[A-Za-z0-9]+|ui_[A-Za-z0-9_]+\\.h|(moc_)?[A-Za-z0-9_]+\\.(moc|cpp)",
         EveryLayerWithQt, Where::Anywhere, "the standard library: the scene graph knows no Qt"},
        {"Boost",
         "boost/.+",
         {"Kernel", "Assets", "AssetSession", "kxassets", "AssetManager"},
         Where::Anywhere,
         "the standard library"},
        {"FlatBuffers",
         "flatbuffers/.+|.*_generated\\.h",
         {"SceneGraph"},
         Where::InsideOnly,
         "SceneGraph/SceneFile.h, which reads and writes scene files"},
        {"zstd",
         "zstd(_errors)?\\.h",
         {"SceneGraph"},
         Where::InsideOnly,
         "SceneGraph/SceneFile.h or SceneGraph/Image.h, which compress what they write"},
        {"the libraries of plain pictures",
         "jpeglib\\.h|png\\.h",
         {"SceneGraph"},
         Where::InsideOnly,
         "SceneGraph/Image.h, which reads and writes every format"},
        {"OpenImageIO",
         "OpenImageIO/.+",
         {"SceneGraph"},
         Where::InsideOnly,
         "SceneGraph/Image.h, which reads and writes every format"},
        {"Imath",
         "(Imath/)?half\\.h",
         {"SceneGraph"},
         Where::InsideOnly,
         "SceneGraph/Image.h, which converts pixels of every type"},
        {"Eigen",
         "Eigen/.+",
         {"SceneGraph", "Rendering", "Import"},
         Where::InsideOnly,
         "SceneGraph/VectorTypes.h and SceneGraph/Matrix.h"},
        {"Embree", "embree3/.+", {"Rendering"}, Where::InsideOnly, "the renderer's own interface in Rendering/"},
        {"TBB", "(tbb|oneapi)/.+", {"Rendering"}, Where::InsideOnly, "QtConcurrent or QThreadPool"},
        {"Assimp", "assimp/.+", {"Import"}, Where::InsideOnly, "the importer's own interface in Import/"},
        {"the checksum library",
         "isa-l(/[a-z_0-9]+)?\\.h|libdeflate\\.h",
         {"Kernel", "SceneGraph"},
         Where::InsideOnly,
         "Kernel/kxFile.h, which computes checksums"},
        {"CLI11", "CLI/.+", {"kxassets"}, Where::Anywhere, "no command line outside the programs"},
        {"pybind11",
         "pybind11/.+|Python\\.h",
         {"Python", "AssetManager"},
         Where::Anywhere,
         "AssetManager/ScriptRunner.h, which runs Python"},
        {"X's protocol", "xcb/[a-z]+\\.h", {}, Where::Anywhere, "Qt, which talks to the window system"},
        {"GoogleTest", "(gtest|gmock)/.+", {}, Where::Anywhere, "tests only below Tests/"},
        {"Google Benchmark", "benchmark/.+", {}, Where::Anywhere, "benchmarks only below Benchmarks/"},
    };
    return table;
}

const Layer *layerNamed(std::string_view name)
{
    const auto found = std::find_if(layers().begin(), layers().end(), [&](const Layer &l) { return l.name == name; });
    return found != layers().end() ? &*found : nullptr;
}

const Layer *layerOf(std::string_view path)
{
    const auto holds = [&](const Layer &l) {
        return path.starts_with(l.folder) && path.substr(l.folder.size()).starts_with('/');
    };
    const auto found = std::find_if(layers().begin(), layers().end(), holds);
    return found != layers().end() ? &*found : nullptr;
}

bool isInside(std::string_view path)
{
    return path.ends_with(".cpp") || path.find("/Internal/") != std::string_view::npos;
}

bool isTestOrBenchmark(std::string_view path)
{
    return path.starts_with("Tests/") || path.starts_with("Benchmarks/");
}

std::string joined(const Names &names)
{
    std::string text;
    for (const std::string_view name : names)
        text.append(text.empty() ? "" : ", ").append(name);
    return text.empty() ? "nothing of the project" : text;
}

std::string_view firstPart(std::string_view target)
{
    const std::size_t slash = target.find('/');
    return slash == std::string_view::npos ? std::string_view() : target.substr(0, slash);
}

std::optional<std::string> checkOwn(const Layer &user, std::string_view target)
{
    const std::string_view used = firstPart(target);
    if (used == user.name)
        return {};
    if (!contains(user.mayUse, used))
        return std::string(user.folder) + " may use " + joined(user.mayUse) +
               "; move what is needed down to one of these, or let a layer above connect the two";
    if (target.find("/Internal/") != std::string_view::npos)
        return "Internal/ belongs to its own library; use a public header of " + std::string(used);
    return {};
}

/// Tests reach what their library reaches, with its Internal/; above it they may not, or a lower layer could not be
/// tested without the upper one.
std::optional<std::string> checkOwnInTest(std::string_view path, std::string_view target)
{
    if (!path.starts_with("Tests/"))
        return {};
    const Layer *tested = layerOf(path.substr(std::string_view("Tests/").size()));
    if (tested == nullptr || firstPart(target) == "Support")
        return {};
    return checkOwn(*tested, target);
}

/// What several test files of a folder share is written from Tests/, as "Support/SceneTest.h".
bool isHelperOfSameTests(std::string_view path, std::string_view target)
{
    const std::size_t slash = target.rfind('/');
    return slash != std::string_view::npos && path.starts_with("Tests/" + std::string(target.substr(0, slash + 1)));
}

const ThirdParty *thirdPartyOf(const std::string &target)
{
    const auto matches = [&](const ThirdParty &library) {
        return std::regex_match(target, std::regex(library.headers.begin(), library.headers.end()));
    };
    const auto found = std::find_if(thirdParties().begin(), thirdParties().end(), matches);
    return found != thirdParties().end() ? &*found : nullptr;
}

std::optional<std::string> checkThirdParty(std::string_view path, const Layer *layer, const std::string &target)
{
    const ThirdParty *library = thirdPartyOf(target);
    if (library == nullptr)
        return "no rule allows this header; use one of the listed libraries, or enter it with a reason in "
               "Tests/Architecture/IncludeRules.cpp";
    if (isTestOrBenchmark(path) || layer == nullptr || contains(library->layers, "*"))
        layer = nullptr;
    if (layer != nullptr && !contains(library->layers, layer->name))
        return std::string(library->name) + " is not for " + std::string(layer->folder) + "; write " +
               std::string(library->instead);
    if (library->where == Where::InsideOnly && !isTestOrBenchmark(path) && !isInside(path))
        return std::string(library->name) + " is for sources and Internal/ only; write " +
               std::string(library->instead);
    return {};
}

} // namespace

std::optional<Include> parseInclude(std::string_view line)
{
    static const std::regex form(R"(\s*#\s*include\s*(["<])([^">]+)[">].*)");
    std::match_results<std::string_view::const_iterator> match;
    if (!std::regex_match(line.begin(), line.end(), match, form))
        return {};
    return Include{match[2].str(), match[1].str() == "\""};
}

std::optional<std::string> findViolation(std::string_view path, const Include &include)
{
    const Layer *user = layerOf(path);
    const std::string_view first = firstPart(include.target);
    const bool isOwn = layerNamed(first) != nullptr || (first == "Support" && isTestOrBenchmark(path));
    if (isOwn && !include.isQuoted)
        return "headers of the project are quoted; write \"" + include.target + "\"";
    if (isOwn)
        return user != nullptr ? checkOwn(*user, include.target) : checkOwnInTest(path, include.target);
    if (include.isQuoted && isHelperOfSameTests(path, include.target))
        return {};
    if (include.target.find("..") != std::string::npos)
        return "an include starts at the library's folder; write \"Kernel/kxLog.h\", for instance";
    const bool isGenerated = thirdPartyOf(include.target) != nullptr;
    if (include.isQuoted && !isGenerated)
        // Programs of tests have headers of their own, which nobody else can reach.
        return isTestOrBenchmark(path) && first.empty()
                   ? std::nullopt
                   : std::optional<std::string>(
                         "an include names the library's folder; write \"Kernel/kxLog.h\", for instance");
    return checkThirdParty(path, user, include.target);
}

} // namespace architecture
