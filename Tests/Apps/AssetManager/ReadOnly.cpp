// SPDX-License-Identifier: Apache-2.0
#include "ReadOnly.h"

namespace fs = std::filesystem;

ReadOnly::ReadOnly(const QString &folder) : _folder(folder.toStdString())
{
    fs::permissions(_folder.parent_path(), fs::perms(0755)); // those without privileges reach it
    set(0555, 0444);
    _user.emplace();
}

ReadOnly::~ReadOnly()
{
    _user.reset();
    set(0755, 0644);
}

void ReadOnly::set(int directories, int files) const
{
    fs::permissions(_folder, fs::perms(directories));
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(_folder))
        fs::permissions(entry, fs::perms(entry.is_directory() ? directories : files));
}
