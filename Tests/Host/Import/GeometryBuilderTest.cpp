// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/GeometryBuilder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

using kximport::buildGeometry;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Four corners of a square and one place that is nowhere.
std::unique_ptr<aiMesh> makeMesh(const std::vector<std::vector<unsigned>> &faces)
{
    const float nowhere = std::numeric_limits<float>::infinity();
    auto mesh = std::make_unique<aiMesh>();
    mesh->mNumVertices = 5;
    mesh->mVertices = new aiVector3D[5]{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {nowhere, 0, 0}};
    mesh->mNumFaces = static_cast<unsigned>(faces.size());
    mesh->mFaces = new aiFace[faces.size()];
    for (std::size_t i = 0; i < faces.size(); ++i) {
        mesh->mFaces[i].mNumIndices = static_cast<unsigned>(faces[i].size());
        mesh->mFaces[i].mIndices = new unsigned[faces[i].size()];
        std::copy(faces[i].begin(), faces[i].end(), mesh->mFaces[i].mIndices);
    }
    return mesh;
}

TEST(GeometryBuilderTest, LeavesTrianglesWithoutSizes)
{
    const auto geometry = buildGeometry(*makeMesh({{0, 1, 2}, {0, 2, 3}}), {});

    ASSERT_TRUE(geometry);
    EXPECT_THAT(geometry->getIndices().values(), ElementsAre(0, 1, 2, 0, 2, 3));
    EXPECT_THAT(geometry->getFaceSizes().values(), IsEmpty());
    EXPECT_EQ(geometry->getFaceCount(), 2U);
    EXPECT_TRUE(geometry->isValid());
}

TEST(GeometryBuilderTest, KeepsPolygons)
{
    const auto geometry = buildGeometry(*makeMesh({{0, 1, 2, 3}, {0, 1, 2}}), {});

    ASSERT_TRUE(geometry);
    EXPECT_THAT(geometry->getIndices().values(), ElementsAre(0, 1, 2, 3, 0, 1, 2));
    EXPECT_THAT(geometry->getFaceSizes().values(), ElementsAre(4, 3));
}

TEST(GeometryBuilderTest, LeavesOutPointsLinesAndFacesWithCornersThatAreNone)
{
    const auto geometry = buildGeometry(*makeMesh({{0}, {0, 1}, {0, 1, 9}, {0, 1, 4}, {1, 2, 3}}), {});

    ASSERT_TRUE(geometry);
    EXPECT_THAT(geometry->getIndices().values(), ElementsAre(1, 2, 3));
    EXPECT_THAT(geometry->getFaceSizes().values(), IsEmpty());
    EXPECT_TRUE(geometry->isValid());
    EXPECT_EQ(geometry->getVolume().max(), (osg::Vec3d{1.0, 1.0, 0.0}));
}

TEST(GeometryBuilderTest, MakesNothingOfAMeshWithoutFaces)
{
    EXPECT_FALSE(buildGeometry(*makeMesh({{0}, {1}}), {}));
    EXPECT_FALSE(buildGeometry(*makeMesh({{0, 1, 4}}), {}));
    EXPECT_FALSE(buildGeometry(aiMesh(), {}));
}

TEST(GeometryBuilderTest, TakesTheSetOfTextureCoordinatesThatIsWanted)
{
    auto mesh = makeMesh({{0, 1, 2}});
    mesh->mTextureCoords[0] = new aiVector3D[5];
    mesh->mTextureCoords[1] = new aiVector3D[5]{{0.5F, 0.25F, 0}, {}, {}, {}, {}};

    EXPECT_EQ(buildGeometry(*mesh, {1, false})->getTexCoords()[0], (osg::Vec2f{0.5F, 0.25F}));
    EXPECT_EQ(buildGeometry(*mesh, {0, false})->getTexCoords()[0], (osg::Vec2f{0.0F, 0.0F}));
    EXPECT_EQ(buildGeometry(*mesh, {7, false})->getTexCoords().size(), 5U);
    EXPECT_EQ(buildGeometry(*mesh, {900, false})->getTexCoords().size(), 5U);
    EXPECT_THAT(buildGeometry(*makeMesh({{0, 1, 2}}), {1, false})->getTexCoords().values(), IsEmpty());
}

TEST(GeometryBuilderTest, DecodesColoursWhereTheFormatEncodesThem)
{
    auto mesh = makeMesh({{0, 1, 2}});
    mesh->mColors[0] = new aiColor4D[5];
    mesh->mColors[0][0] = aiColor4D(0.5F, 1.0F, 0.0F, 0.5F);

    EXPECT_EQ(buildGeometry(*mesh, {0, false})->getColors()[0], (osg::Vec4f{0.5F, 1.0F, 0.0F, 0.5F}));
    const auto decoded = buildGeometry(*mesh, {0, true});
    EXPECT_NEAR(decoded->getColors()[0][0], 0.214F, 1e-3F);
    EXPECT_EQ(decoded->getColors()[0][3], 0.5F);
}

} // namespace
