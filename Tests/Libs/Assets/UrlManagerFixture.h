// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "TestUrlManager.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// A back-end in memory that is registered and empty, metadata for it, and a registry of items that is empty before and after.
class UrlManagerFixture : public testing::Test
{
protected:
    using Uuids = std::vector<std::string>;

    UrlManagerFixture();
    ~UrlManagerFixture() override;

    static QUrl url(const char *path) { return TestUrlManager::url(QString::fromUtf8(path)); }
    static QByteArray metadata(const std::string &uuid, const char *category = "Materials", const char *name = "Red");
    /// The UUIDs of the items, in their order.
    static Uuids registered();

    inline static const std::string First = "10000000-0000-4000-8000-000000000001";
    inline static const std::string Second = "20000000-0000-4000-8000-000000000002";
    inline static const std::string Third = "30000000-0000-4000-8000-000000000003";

    TestUrlManager &manager;
};
