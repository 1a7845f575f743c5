// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Support/WithoutPrivileges.h"

#include <QString>

#include <filesystem>
#include <optional>

/// While it lives, the folder and all below may only be read, also by the administrator.
class ReadOnly
{
public:
    explicit ReadOnly(const QString &folder);
    ~ReadOnly();
    ReadOnly(const ReadOnly &) = delete;
    ReadOnly &operator=(const ReadOnly &) = delete;

private:
    void set(int directories, int files) const;

    std::filesystem::path _folder;
    std::optional<kxtest::WithoutPrivileges> _user;
};
