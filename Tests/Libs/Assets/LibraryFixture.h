// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Support/TemporaryFolder.h"

#include <QUrl>

#include <gtest/gtest.h>

#include <string>

/// A library folder of its own for each test, the local back-end, and a registry that is empty before and after.
class LibraryFixture : public testing::Test
{
protected:
    LibraryFixture();
    ~LibraryFixture() override;

    QUrl url(const std::string &name = {}) const;
    /// Writes \a content of the root element as the metadata of the asset directory \a directory, and returns its URL.
    QUrl writeAsset(const std::string &directory, const std::string &content) const;
    void writeFile(const std::string &name, const std::string &bytes) const { _folder.write(name, bytes); }
    std::string readFile(const std::string &name) const { return _folder.read(name); }

    const kxtest::TemporaryFolder _folder;
};
