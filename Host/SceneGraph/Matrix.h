// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/SceneGraphExport.h"
#include "SceneGraph/VectorTypes.h"

#include <array>
#include <cstddef>
#include <optional>

namespace osg {

/// A 4 x 4 matrix in double precision, stored row by row, applied to column vectors: the translation stands in the
/// last column.
struct Matrix
{
    std::array<double, 16> values{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    double &at(std::size_t row, std::size_t column) { return values[row * 4 + column]; }
    double at(std::size_t row, std::size_t column) const { return values[row * 4 + column]; }

    friend bool operator==(const Matrix &, const Matrix &) = default;
};

KX_SCENEGRAPH_EXPORT Matrix operator*(const Matrix &a, const Matrix &b);

/// The point \a p mapped by \a m, its last row taken as (0, 0, 0, 1).
KX_SCENEGRAPH_EXPORT Vec3d transformPoint(const Matrix &m, const Vec3d &p);

/// The inverse by cofactors; none where the determinant's absolute value is below 1e-30.
KX_SCENEGRAPH_EXPORT std::optional<Matrix> inverted(const Matrix &m);

/// Translation x rotation x scale.
KX_SCENEGRAPH_EXPORT Matrix composeMatrix(const Vec3d &translation, const Quaternion &rotation, const Vec3d &scale);

/// The parts of a placement.
struct Decomposition
{
    Vec3d translation;
    Quaternion rotation;
    Vec3d scale; ///< along the axes; all negative for a mirrored placement
};

/// By polar decomposition. What shear or a scale along other axes there is, is lost: compose the parts again to see. Expects
/// finite numbers.
KX_SCENEGRAPH_EXPORT Decomposition decompose(const Matrix &m);

} // namespace osg
