// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxAssetOperations.h"
#include "AssetSession/kxGeometryImport.h"
#include "AssetSession/kxLibraryVerifier.h"
#include "AssetSession/kxMaterialImport.h"
#include "AssetSession/kxNodeSaving.h"
#include "AssetSession/kxPictureImport.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxEnvironmentMaterialAssetItem.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometrySceneplateCommon.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxUrlManager.h"
#include "Python/Containers.h"
#include "Python/LibraryCall.h"
#include "Rendering/QImageConverter.h"
#include "Rendering/kxPreviewSettings.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/UEnvironmentMaterial.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QProgressDialog>
#include <QTimer>

#include <pybind11/stl.h>

#include <limits>
#include <memory>
#include <optional>
#include <set>

namespace py = pybind11;

namespace kxPython {

namespace {

constexpr int PollInterval = 50; // ms

/// A library in the hands of a script.
struct Library
{
    kxAssetLibrary library;
    std::set<std::string> before; ///< those that were known already, to the program or to another object
};

/// Assets are known by UUID, and looked up again at each use, since every save may replace items.
struct Asset
{
    std::string uuid;
    std::shared_ptr<Library> library;

    kxAssetItem &item() const
    {
        kxAssetItem *found = kxAssetItemFactory::the().findItem(uuid);
        if (!found)
            throw Error("the asset " + uuid + " is not in the library any more");
        return *found;
    }
};

void scan(Library &library, const py::object &progress)
{
    Progress told(progress);
    // Never shown: the scan looks at it for whether it is to stop.
    QProgressDialog dialog;
    dialog.setMinimumDuration(std::numeric_limits<int>::max());
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &dialog, [&] {
        const int count = kxAssetItemFactory::the().itemCount();
        if (!told([count](const py::object &function) { return function(count); }))
            dialog.cancel();
    });
    poll.start(PollInterval);
    {
        const LibraryCall call;
        const py::gil_scoped_release unlocked;
        library.library.open(&dialog);
    }
    told.rethrow();
}

std::shared_ptr<Library> openLibrary(const py::object &path, bool isMade, const py::object &progress)
{
    const std::string folder = pathOf(path);
    auto library = std::make_shared<Library>(Library{kxAssetLibrary(QString::fromStdString(folder)), {}});
    for (kxAssetItem *item : library->library.items())
        library->before.insert(item->uuid());
    if (!library->library.exists() && !isMade)
        throw Error("there is no folder '" + folder + "'");
    if (!library->library.exists() && !QDir().mkpath(QString::fromStdString(folder)))
        throw Error("the folder '" + folder + "' cannot be made");
    scan(*library, progress);
    return library;
}

void closeLibrary(const std::shared_ptr<Library> &library)
{
    const LibraryCall call;
    for (kxAssetItem *item : library->library.items())
        if (const std::string uuid = item->uuid(); !library->before.contains(uuid))
            kxAssetItemFactory::the().deleteItem(uuid);
}

kxAssetCategoryType categoryNamed(const std::string &name)
{
    for (const kxAssetCategoryType category : {Material, Environment, Geometry, Sceneplate})
        if (kxAssetCategory::getInternalCategoryName(category) == name)
            return category;
    throw py::value_error("a category is one of Materials, Environments, Geometries, Sceneplates");
}

bool fits(kxAssetItem &item, const std::optional<std::string> &name, const std::optional<std::string> &tag)
{
    if (name && !QString::fromStdString(item.name()).contains(QString::fromStdString(*name), Qt::CaseInsensitive))
        return false;
    return !tag || kxAssetLibrary::tagsOf(item).contains(QString::fromStdString(*tag));
}

py::list assets(const std::shared_ptr<Library> &library, const std::optional<std::string> &category,
                const std::optional<std::string> &name, const std::optional<std::string> &tag)
{
    py::list all;
    for (kxAssetItem *item : library->library.items(category ? categoryNamed(*category) : Undefined))
        if (fits(*item, name, tag))
            all.append(Asset{item->uuid(), library});
    return all;
}

Asset assetNamed(const std::shared_ptr<Library> &library, const std::string &text)
{
    const osg::Result<std::string> uuid = library->library.resolve(QString::fromStdString(text));
    if (!uuid)
        throw py::key_error(uuid.reason());
    return {uuid.value(), library};
}

QUrl folderOf(const Library &library, const std::string &folder)
{
    const osg::Result<QUrl> url = library.library.folder(QString::fromStdString(folder));
    if (!url)
        throw Error(url.reason());
    return url.value();
}

std::vector<std::string> verify(const std::shared_ptr<Library> &library)
{
    const LibraryCall call;
    std::vector<std::string> lines;
    for (const kxLibraryVerifier::Finding &finding : kxLibraryVerifier(library->library.path()).verify())
        lines.push_back(finding.path + ": " + finding.text);
    return lines;
}

// Saving

Asset saveMaterial(const std::shared_ptr<Library> &library, const osg::MaterialPtr &material, const QUrl &folder,
                   bool isUpdate)
{
    std::unique_ptr<kxMaterialAssetItem> item = std::make_unique<kxMaterialAssetItem>();
    if (osg::UEnvironmentMaterialPtr::dcast(material))
        item = std::make_unique<kxEnvironmentMaterialAssetItem>();
    item->initFrom(material, {}, isUpdate);
    const std::string uuid = item->uuid();
    const LibraryCall call;
    if (uuid.empty() || !item->save(folder))
        call.fail("the material cannot be saved in '" + folder.toLocalFile().toStdString() + "'");
    return {uuid, library};
}

/// Where the asset that it came from is, if that is known.
std::optional<QUrl> placeOf(const osg::AttachmentContainerPtr &object)
{
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(object);
    kxAssetItem *item = attachment ? kxAssetItemFactory::the().findItem(attachment->getUuid()) : nullptr;
    return item ? std::optional<QUrl>(item->parentDirectoryUrl()) : std::nullopt;
}

Asset save(const std::shared_ptr<Library> &library, const py::object &object, const std::optional<std::string> &name,
           const std::string &folder, bool isUpdate, bool makesReferencesOrdinary)
{
    const QUrl target = folderOf(*library, folder);
    const auto container = osg::AttachmentContainerPtr::dcast(unwrap(object));
    if (const auto material = osg::MaterialPtr::dcast(container)) {
        if (name)
            throw py::value_error("a material asset is named like its material: set material.name");
        return saveMaterial(library, material, isUpdate ? placeOf(material).value_or(target) : target, isUpdate);
    }
    const auto node = osg::NodePtr::dcast(container);
    if (!node)
        throw py::type_error("an asset is made of a node or a material");
    const LibraryCall call;
    const kxNodeSaving saving({makesReferencesOrdinary, true});
    return {call.take(isUpdate ? saving.update(node) : saving.save(node, name.value_or(""), target)).uuid, library};
}

Asset saveGroup(const std::shared_ptr<Library> &library, const py::object &nodes, const std::string &name,
                const std::string &folder)
{
    const QUrl target = folderOf(*library, folder);
    const std::vector<osg::NodePtr> all = nodesOf(nodes);
    const LibraryCall call;
    return {call.take(kxNodeSaving({}).saveGroup(all, name, target)).uuid, library};
}

// Importing

kxMaterialImport::Outcome asNew(const kxGeometryImport::Outcome &outcome)
{
    kxMaterialImport::Outcome result{{}, outcome.failures};
    for (const kxGeometryImport::Saved &saved : outcome.saved)
        result.saved.push_back({saved.uuid, saved.name, false});
    return result;
}

kxMaterialImport::Outcome importAs(const Library &library, const QString &file, const std::string &kind,
                                   const QUrl &folder, const std::vector<std::string> &tags, Progress &told)
{
    const auto goOn = [&told] { return told([](const py::object &function) { return function(); }); };
    if (kind == "materials") {
        kxMaterialImport import(library.library);
        import.setTags(tags);
        return import.importFile(file, folder, goOn);
    }
    if (kind == "geometry" || kind == "parts") {
        kxGeometryImport import;
        import.setSplit(kind == "parts");
        return asNew(import.importFile(file, folder, goOn));
    }
    for (const auto &[name, picture] : {std::pair("environment", kxPictureImport::Kind::Environment),
                                        std::pair("frontplate", kxPictureImport::Kind::Frontplate),
                                        std::pair("backplate", kxPictureImport::Kind::Backplate)})
        if (kind == name)
            return asNew(kxPictureImport(picture).importFile(file, folder));
    throw py::value_error("kind is one of materials, geometry, parts, environment, frontplate, backplate");
}

py::list importFile(const std::shared_ptr<Library> &library, const py::object &path, const std::string &kind,
                    const std::string &folder, const std::vector<std::string> &tags, const py::object &progress)
{
    const std::string file = pathOf(path);
    const QUrl target = folderOf(*library, folder);
    Progress told(progress);
    kxMaterialImport::Outcome outcome;
    {
        const LibraryCall call;
        const py::gil_scoped_release unlocked;
        outcome = importAs(*library, QString::fromStdString(file), kind, target, tags, told);
    }
    told.rethrow();
    py::list all;
    for (const kxMaterialImport::Saved &saved : outcome.saved)
        all.append(Asset{saved.uuid, library});
    if (outcome.failures.empty())
        return all;
    std::string text;
    for (const std::string &failure : outcome.failures)
        text += (text.empty() ? "" : "\n") + failure;
    throw Error(text);
}

// Assets

std::string textOf(const QString &text)
{
    return text.toStdString();
}

py::object modified(const Asset &asset)
{
    const QDateTime time = asset.item().lastModified();
    if (!time.isValid())
        return py::none();
    const py::module_ datetime = py::module_::import("datetime");
    return datetime.attr("datetime")
        .attr("fromtimestamp")(static_cast<double>(time.toMSecsSinceEpoch()) / 1000.0,
                               datetime.attr("timezone").attr("utc"));
}

std::vector<std::string> tagsOf(const Asset &asset)
{
    std::vector<std::string> tags;
    for (const QString &tag : kxAssetLibrary::tagsOf(asset.item()))
        tags.push_back(tag.toStdString());
    return tags;
}

void setTags(const Asset &asset, const std::vector<std::string> &tags)
{
    const LibraryCall call;
    LibraryCall::check(kxAssetOperations::retag(asset.item().uuid(), {tags, {}, true}));
}

void rename(const Asset &asset, const std::string &name)
{
    if (name.empty())
        throw py::value_error("an asset needs a name");
    const LibraryCall call;
    if (!asset.item().changeName(QString::fromStdString(name)))
        call.fail("'" + asset.item().name() + "' could not be renamed");
}

py::object load(const Asset &asset, bool makesCurrent)
{
    const LibraryCall call;
    kxAssetItem &item = asset.item();
    if (dynamic_cast<kxMaterialAssetItem *>(&item)) {
        if (const osg::MaterialPtr material = kxMaterialAssetItem::getMaterialFromUUID(asset.uuid))
            return wrap(material);
    } else if (auto *environment = dynamic_cast<kxEnvironmentNodeAssetItem *>(&item)) {
        if (environment->loadEnvironmentNode(makesCurrent))
            return wrap(environment->getEnvironmentNode());
    } else if (auto *node = dynamic_cast<kxGeometrySceneplateCommon *>(&item)) {
        if (node->loadNode())
            return wrap(node->getNode());
    }
    call.fail("'" + asset.item().name() + "' cannot be loaded");
}

py::object preview(const Asset &asset)
{
    const QUrl directory = asset.item().directoryUrl();
    const kxUrlManager *manager = kxUrlManager::getUrlManager(directory);
    QImage picture;
    const LibraryCall call;
    if (!manager || !manager->loadImageFromDir(directory, &picture) || picture.isNull())
        return py::none();
    const osg::FCRef<osg::Image> image(osg::Image::create());
    QImageConverter::convertToOSGImage(picture, image.get());
    return wrap(image.get());
}

void setPreviews(int size, int samples)
{
    if (size < 16 || size > 4096 || samples < 1)
        throw py::value_error("size is a number from 16 to 4096, samples one from 1 on");
    kxPreviewSettings::setSize(size);
    kxPreviewSettings::setSamples(samples);
}

void renderPreview(const Asset &asset)
{
    const LibraryCall call;
    LibraryCall::check(kxAssetOperations::renderPreview(asset.item().uuid()));
}

/// An asset that others are made of goes only where that is wanted.
void removeAsset(const Asset &asset, bool isForced)
{
    const std::string name = asset.item().name();
    const std::string user = isForced ? "" : kxAssetOperations::userOf(asset.library->library, asset.uuid);
    if (!user.empty())
        throw Error("'" + name + "' stays, because '" + user + "' is made of it");
    const LibraryCall call;
    LibraryCall::check(kxAssetOperations::remove(asset.uuid));
}

void move(const Asset &asset, const std::string &folder)
{
    const QUrl target = folderOf(*asset.library, folder);
    kxAssetItem &item = asset.item();
    const std::string name = item.name();
    const QUrl from = item.directoryUrl();
    kxUrlManager *manager = kxUrlManager::getUrlManager(from);
    const LibraryCall call;
    if (!QDir().mkpath(target.toLocalFile()) || manager->containsItems(target, Undefined))
        throw Error("'" + folder + "' is no folder for assets");
    if (manager->exists(manager->extendByDirectory(target, manager->directoryName(from))))
        throw Error("'" + name + "' was not moved: the target holds a folder of that name");
    QUrl to;
    if (!manager->move(from, target, to, false))
        call.fail("'" + name + "' could not be moved as a whole to " + target.toLocalFile().toStdString());
    manager->collectItems(to, Undefined, nullptr); // the registry knows the old place
}

/// Whether a scene's object is as the asset is stored.
bool isSame(const Asset &asset, const ContainerObject &object)
{
    const auto container = osg::AttachmentContainerPtr::dcast(object.container.get());
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(container);
    return attachment && attachment->getUuid() == asset.uuid && asset.item().hasSameChecksum(container) &&
           !attachment->getUserEdited();
}

void bindAssets(py::module_ &module)
{
    py::class_<Asset>(module, "Asset", "An asset of a library.")
        .def_readonly("uuid", &Asset::uuid)
        .def_property(
            "name", [](const Asset &asset) { return asset.item().name(); }, &rename,
            "Setting it changes the metadata; the folder keeps its name.")
        .def_property_readonly(
            "category",
            [](const Asset &asset) { return kxAssetCategory::getInternalCategoryName(asset.item().category()); })
        .def_property_readonly("type",
                               [](const Asset &asset) {
                                   return textOf(
                                       asset.item().data(kxAssetCategory::getTypeColumn(), Qt::DisplayRole).toString());
                               })
        .def_property("tags", &tagsOf, &setTags)
        .def_property_readonly("path",
                               [](const Asset &asset) {
                                   return py::module_::import("pathlib").attr("Path")(
                                       textOf(asset.item().directoryUrl().toLocalFile()));
                               })
        .def_property_readonly(
            "folder",
            [](const Asset &asset) {
                const QString place = asset.library->library.relativePath(asset.item());
                const QString folder = QFileInfo(place).path();
                return textOf(folder == QLatin1String(".") ? QString() : folder);
            },
            "The folder of the library that it is in; '' is the library itself.")
        .def_property_readonly("modified", &modified, "When it was saved last, in UTC.")
        .def_property_readonly("checksum", [](const Asset &asset) { return asset.item().checksum(); })
        .def_property_readonly("preview", &preview, "The picture of it, or None.")
        .def_property_readonly("has_preview",
                               [](const Asset &asset) { return kxAssetOperations::hasPreview(asset.uuid); })
        .def_property_readonly(
            "exists", [](const Asset &asset) { return kxAssetItemFactory::the().findItem(asset.uuid) != nullptr; })
        .def("load", &load, py::arg("make_current") = true,
             "The material or node; environments join the scene's, the others belong to no scene yet.")
        .def("is_same", &isSame, py::arg("object"), "Whether an object of the scene is as the asset is stored.")
        .def("render_preview", &renderPreview, "Renders the picture of a material again.")
        .def("move", &move, py::arg("folder"), "Into another folder of the library.")
        .def("remove", &removeAsset, py::arg("force") = false,
             "Removes it from the disk. What other assets are made of stays, unless forced.")
        .def("__eq__",
             [](const Asset &asset, const py::object &other) {
                 return py::isinstance<Asset>(other) && other.cast<const Asset &>().uuid == asset.uuid;
             })
        .def("__hash__", [](const Asset &asset) { return py::hash(py::str(asset.uuid)); })
        .def("__repr__", [](const Asset &asset) {
            kxAssetItem *item = kxAssetItemFactory::the().findItem(asset.uuid);
            return "<kx.Asset " + (item ? std::string(py::repr(py::str(item->name()))) : "removed") + ' ' + asset.uuid +
                   '>';
        });
}

} // namespace

void bindLibrary(py::module_ &module)
{
    bindAssets(module);
    py::class_<Library, std::shared_ptr<Library>>(
        module, "Library", "A folder of assets. Iterating gives the assets by name; with 'with' it is closed again.")
        .def_property_readonly("path",
                               [](const Library &library) {
                                   return py::module_::import("pathlib").attr("Path")(textOf(library.library.path()));
                               })
        .def("assets", &assets, py::arg("category") = py::none(), py::arg("name") = py::none(),
             py::arg("tag") = py::none(), "Those of a category, whose name holds a text, and with a tag.")
        .def("refresh", &scan, py::arg("progress") = py::none(),
             "Reads what is on disk. progress(count) may answer False to stop.")
        .def("save", &save, py::arg("object"), py::arg("name") = py::none(), py::kw_only(), py::arg("folder") = "",
             py::arg("update") = false, py::arg("make_ordinary") = false,
             "Saves a node or material as an asset: a new one, or with update the one that it came from. Nodes that "
             "hold "
             "references to other files are saved with make_ordinary only, which makes them ordinary nodes.")
        .def("save_group", &saveGroup, py::arg("nodes"), py::arg("name"), py::kw_only(), py::arg("folder") = "",
             "Saves several nodes as one asset; they keep their places to each other.")
        .def("import_file", &importFile, py::arg("path"), py::arg("kind") = "materials", py::kw_only(),
             py::arg("folder") = "", py::arg("tags") = std::vector<std::string>(), py::arg("progress") = py::none(),
             "Imports a model or picture and answers the assets. kind is one of materials, geometry, parts, "
             "environment, "
             "frontplate, backplate. progress() may answer False to stop.")
        .def("verify", &verify, "One text for each thing that is wrong; none for a sound library.")
        .def("close", &closeLibrary, "Forgets the assets that opening it made known; nothing changes on disk.")
        .def("__iter__",
             [](const std::shared_ptr<Library> &library) {
                 return py::iter(assets(library, std::nullopt, std::nullopt, std::nullopt));
             })
        .def("__len__", [](const Library &library) { return library.library.items().size(); })
        .def("__bool__", [](const Library &) { return true; })
        .def("__getitem__", &assetNamed, py::arg("asset"),
             "By UUID, the beginning of one, or the exact name. KeyError when it is none or several.")
        .def("__contains__",
             [](const Library &library, const std::string &text) {
                 return static_cast<bool>(library.library.resolve(QString::fromStdString(text)));
             })
        .def("__enter__", [](const std::shared_ptr<Library> &library) { return library; })
        .def("__exit__", [](const std::shared_ptr<Library> &library, const py::args &) { closeLibrary(library); })
        .def("__repr__", [](const Library &library) {
            return "<kx.Library " + std::string(py::repr(py::str(textOf(library.library.path())))) + '>';
        });
    module.def("set_previews", &setPreviews, py::kw_only(), py::arg("size"), py::arg("samples"),
               "How large, in pixels, and how good the pictures of materials are rendered from now on.");
    module.def("library", &openLibrary, py::arg("path"), py::arg("create") = false, py::arg("progress") = py::none(),
               "Opens a folder and reads the assets in it. progress(count) may answer False to stop.");
}

} // namespace kxPython
