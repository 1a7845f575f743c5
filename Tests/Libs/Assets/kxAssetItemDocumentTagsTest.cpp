// SPDX-License-Identifier: Apache-2.0
// How tags are told from those of placed assets: this program stands between the document and the table of categories.
#include "Assets/kxAssetItemDocument.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <string>
#include <vector>

namespace {

std::vector<kxAssetCategoryType> *s_asked = nullptr;

std::vector<kxAssetCategoryType> askedFor(const char *tags)
{
    std::vector<kxAssetCategoryType> asked;
    s_asked = &asked;
    kxAssetItemDocument::tagListFrom(QString::fromUtf8(tags));
    s_asked = nullptr;
    return asked;
}

using Categories = std::vector<kxAssetCategoryType>;

} // namespace

/// The library finds this in place of its own, which it goes on to.
std::string kxAssetCategory::getTagPrefix(kxAssetCategoryType category)
{
    using Function = std::string(kxAssetCategoryType);
    static auto *const own = reinterpret_cast<Function *>(
        dlsym(RTLD_NEXT, "_ZN15kxAssetCategory12getTagPrefixB5cxx11E19kxAssetCategoryType"));
    if (s_asked)
        s_asked->push_back(category);
    return own(category);
}

TEST(kxAssetItemDocumentTagsTest, AreComparedWithGeometryThenEnvironmentThenSceneplate)
{
    EXPECT_EQ(askedFor("mine"), (Categories{Geometry, Environment, Sceneplate}));
}

TEST(kxAssetItemDocumentTagsTest, AreComparedNoFurtherThanTheFirstPrefixTheyHave)
{
    EXPECT_EQ(askedFor("Geometry Asset: Chair"), Categories{Geometry});
    EXPECT_EQ(askedFor("Environment Asset: Sky"), (Categories{Geometry, Environment}));
    EXPECT_EQ(askedFor("Scene"), Categories{}) << "it goes by its own name";
}
