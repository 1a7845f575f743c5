// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Matrix.h"

#include <Eigen/Dense>

#include <cmath>

namespace osg {

namespace {

using EigenMatrix = Eigen::Matrix<double, 4, 4, Eigen::RowMajor>;

EigenMatrix toEigen(const Matrix &m)
{
    return Eigen::Map<const EigenMatrix>(m.values.data());
}

Matrix fromEigen(const EigenMatrix &m)
{
    Matrix result;
    Eigen::Map<EigenMatrix>(result.values.data()) = m;
    return result;
}

constexpr double SingularDeterminant = 1e-30;

} // namespace

Matrix operator*(const Matrix &a, const Matrix &b)
{
    return fromEigen(toEigen(a) * toEigen(b));
}

Vec3d transformPoint(const Matrix &m, const Vec3d &p)
{
    Vec3d result;
    for (std::size_t row = 0; row < 3; ++row)
        result[row] = m.at(row, 0) * p[0] + m.at(row, 1) * p[1] + m.at(row, 2) * p[2] + m.at(row, 3);
    return result;
}

std::optional<Matrix> inverted(const Matrix &m)
{
    const EigenMatrix matrix = toEigen(m);
    EigenMatrix inverse;
    double determinant = 0.0;
    bool isInvertible = false;
    matrix.computeInverseAndDetWithCheck(inverse, determinant, isInvertible, SingularDeterminant);
    // "not above" rather than "below" also catches a determinant that is not a number.
    if (!isInvertible || !(std::abs(determinant) >= SingularDeterminant))
        return std::nullopt;
    return fromEigen(inverse);
}

Matrix composeMatrix(const Vec3d &translation, const Quaternion &rotation, const Vec3d &scale)
{
    const Eigen::Quaterniond q(rotation.w, rotation.x, rotation.y, rotation.z);
    EigenMatrix matrix = EigenMatrix::Identity();
    matrix.topLeftCorner<3, 3>() = q.toRotationMatrix() * Eigen::Vector3d(scale[0], scale[1], scale[2]).asDiagonal();
    matrix.topRightCorner<3, 1>() = Eigen::Vector3d(translation[0], translation[1], translation[2]);
    return fromEigen(matrix);
}

} // namespace osg
