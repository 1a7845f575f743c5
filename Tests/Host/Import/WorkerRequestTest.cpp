// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/WorkerRequest.h"

#include <gmock/gmock.h>

using kximport::ImportKind;
using kximport::WorkerRequest;

namespace {

TEST(WorkerRequestTest, TravelsAsACommandLine)
{
    WorkerRequest request;
    request.kind = ImportKind::Materials;
    request.path = "--kind=scene #1 ü 木.glb";
    request.resultFile = "/tmp/a b/result.osb";
    request.workFolder = "/tmp/a b";
    request.memory = 4'000'000'000U;

    const std::vector<std::string> arguments = request.toArguments();
    const auto read = WorkerRequest::fromArguments(arguments);

    EXPECT_THAT(arguments,
                testing::ElementsAre("--kind=materials", "--memory=4000000000", "--result=/tmp/a b/result.osb",
                                     "--work-folder=/tmp/a b", "--", "--kind=scene #1 ü 木.glb"));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->kind, ImportKind::Materials);
    EXPECT_EQ(read->path, request.path);
    EXPECT_EQ(read->resultFile, request.resultFile);
    EXPECT_EQ(read->workFolder, request.workFolder);
    EXPECT_EQ(read->memory, request.memory);
    EXPECT_EQ(read->selfTest, "");
}

TEST(WorkerRequestTest, KnowsEveryKind)
{
    for (const ImportKind kind : {ImportKind::Scene, ImportKind::Materials, ImportKind::Environment}) {
        WorkerRequest request;
        request.kind = kind;
        EXPECT_EQ(WorkerRequest::fromArguments(request.toArguments())->kind, kind);
    }
}

TEST(WorkerRequestTest, CarriesASelfTest)
{
    WorkerRequest request;
    request.selfTest = "quiet hang";

    EXPECT_EQ(WorkerRequest::fromArguments(request.toArguments())->selfTest, "quiet hang");
}

TEST(WorkerRequestTest, RefusesWhatItDoesNotKnow)
{
    EXPECT_FALSE(WorkerRequest::fromArguments({}));
    EXPECT_FALSE(WorkerRequest::fromArguments({"a.obj"}));
    EXPECT_FALSE(WorkerRequest::fromArguments({"--"}));
    EXPECT_FALSE(WorkerRequest::fromArguments({"--kind=dream", "--", "a.obj"}));
    EXPECT_FALSE(WorkerRequest::fromArguments({"--memory=12x", "--", "a.obj"}));
    EXPECT_FALSE(WorkerRequest::fromArguments({"--memory=-1", "--", "a.obj"}));
    EXPECT_FALSE(WorkerRequest::fromArguments({"--help", "--", "a.obj"}));
}

} // namespace
