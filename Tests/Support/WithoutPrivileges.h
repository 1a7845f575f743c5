// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace kxtest {

/// The rights of an ordinary user, also where the tests run as root, for whom no permission is an obstacle.
class WithoutPrivileges
{
public:
    WithoutPrivileges();
    ~WithoutPrivileges();
    WithoutPrivileges(const WithoutPrivileges &) = delete;
    WithoutPrivileges &operator=(const WithoutPrivileges &) = delete;

private:
    bool _isRoot;
};

} // namespace kxtest
