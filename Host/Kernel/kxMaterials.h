// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/Node.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

/// What can be asked of and done to materials. Null-safe throughout; sets of handles are in ascending order of ids.
/// Main thread only.
class KX_KERNEL_EXPORT kxMaterials
{
public:
    kxMaterials() = delete;

    /// The exact name, UTF-8; "" for null and for a material without one.
    static std::string getName(const osg::MaterialPtr &material);
    /// Sets exactly this name, also when another material has it. With \a announce views are told.
    static void setName(const osg::MaterialPtr &material, const std::string &name, bool announce);

    /// The entries of a switch, multi-pass or multi material, in order, nulls included; not the layers of an uber material.
    static std::vector<osg::MaterialPtr> getSubMaterials(const osg::MaterialPtr &material);

    /// Appends the material and all its sub-materials to \a materials, parents first, each once; with \a intoLayers also
    /// the BRDF materials of uber materials.
    static void getRecursiveMaterials(const osg::MaterialPtr &material, std::vector<osg::MaterialPtr> &materials,
                                      bool intoLayers);

    /// The material of the scene that carries an asset attachment with this UUID, the one with the lowest id of several;
    /// null for none, and for an empty UUID. The scene's materials are those in its pools, those assigned to its nodes, and
    /// the entries of such composites.
    static osg::MaterialPtr findAssetMaterial(const std::string &uuid);
    /// All materials of the scene that carry an asset attachment, lowest id first.
    static std::vector<osg::MaterialPtr> getAllAssetMaterials();

    /// The materials assigned to the node and to the nodes below it.
    static std::set<osg::MaterialPtr> getMaterials(const osg::NodePtr &node);
    /// Adds the same to \a materials; with \a intoParts also all that they are made of, as getRecursiveMaterials() says.
    static void getMaterialsRecursive(const osg::NodePtr &node, std::set<osg::MaterialPtr> &materials, bool intoParts);

    /// The materials that nodes at and below put over what is assigned there; with \a intoParts also what they are made of.
    static void getOverrideMaterialsRecursive(const osg::NodePtr &node, std::set<osg::MaterialPtr> &materials,
                                              bool intoParts);
    /// Assigned and override materials together.
    static void getMaterialsAndOverrideMaterials(const osg::NodePtr &node, std::set<osg::MaterialPtr> &materials,
                                                 bool intoParts);
    /// Puts a material over all that are assigned at the node and below; null takes it away.
    static void setOverrideMaterial(const osg::NodePtr &node, const osg::MaterialPtr &material);

    /// The nodes at or below \a root to which the material itself is assigned, parents first.
    static std::vector<osg::NodePtr> getNodesWithMaterial(const osg::MaterialPtr &material, const osg::NodePtr &root);

    /// The rendered preview kept on the material, or null.
    static osg::ImagePtr getPreviewImage(const osg::MaterialPtr &material);

    /// The ids of what the scene's material pool holds, ascending; empty without a scene.
    static std::set<std::uint32_t> getMaterialPoolMaterialIds();

    /// Free texts by key, written with the material. Adding replaces the value that the key had.
    static void addValuePair(const osg::MaterialPtr &material, const std::string &key, const std::string &value);
    static bool hasValuePair(const osg::MaterialPtr &material, const std::string &key, const std::string &value);
    /// With \a announce views are told, when there was such a key.
    static void removeKey(const osg::MaterialPtr &material, const std::string &key, bool announce);
};
