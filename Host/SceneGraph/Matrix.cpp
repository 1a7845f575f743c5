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

namespace {

/// M = Q S with an orthogonal Q and a symmetric S, from the singular values; after Shoemake and Duff, "Matrix Animation and
/// Polar Decomposition", Graphics Interface 1992, with the sign kept apart.
struct Polar
{
    Eigen::Matrix3d rotation;
    Eigen::Matrix3d stretch;
    double sign = 1.0;
};

Polar polarOf(const Eigen::Matrix3d &m)
{
    const Eigen::JacobiSVD<Eigen::Matrix3d> svd(m, Eigen::ComputeFullU | Eigen::ComputeFullV);
    Polar polar;
    polar.rotation = svd.matrixU() * svd.matrixV().transpose();
    polar.stretch = svd.matrixV() * svd.singularValues().asDiagonal() * svd.matrixV().transpose();
    if (polar.rotation.determinant() < 0.0) {
        polar.rotation = -polar.rotation;
        polar.sign = -1.0;
    }
    return polar;
}

/// The stretches along the axes of an eigenbasis, each given to the coordinate axis that lies nearest to its own, so that a
/// scale along the axes comes out as it went in.
Vec3d axisScales(const Eigen::Matrix3d &stretch, double sign)
{
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> solver(stretch);
    Vec3d scales{0.0, 0.0, 0.0};
    std::array<bool, 3> isTaken{};
    for (int i = 2; i >= 0; --i) {
        std::size_t best = 3;
        for (std::size_t axis = 0; axis < 3; ++axis)
            if (!isTaken[axis] && (best == 3 || std::abs(solver.eigenvectors()(static_cast<int>(axis), i)) >
                                                    std::abs(solver.eigenvectors()(static_cast<int>(best), i))))
                best = axis;
        isTaken[best] = true;
        scales[best] = sign * solver.eigenvalues()(i);
    }
    return scales;
}

} // namespace

Decomposition decompose(const Matrix &m)
{
    Eigen::Matrix3d linear;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            linear(row, column) = m.at(static_cast<std::size_t>(row), static_cast<std::size_t>(column));
    const Polar polar = polarOf(linear);
    const Eigen::Quaterniond rotation(polar.rotation);
    return {{m.at(0, 3), m.at(1, 3), m.at(2, 3)},
            {rotation.x(), rotation.y(), rotation.z(), rotation.w()},
            axisScales(polar.stretch, polar.sign)};
}

} // namespace osg
