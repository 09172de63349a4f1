// SPDX-License-Identifier: MIT
// What the module is to the library: a file of its own, which alone needs the codec libraries.
#include <gtest/gtest.h>

#include "QZ/Platform/AssetWriter.h"
#include "QZ/Platform/MovieReader.h"
#include "tests/Movie/Scratch.h"

namespace QZ::Test {
namespace {

using QZ::Platform::AssetWriterFactory;

// First in this program: a module stays once it is loaded.
TEST(MovieWriterModule, IsToldAsMissingAndIsFoundAgain)
{
    const ScratchFolder empty;
    AssetWriterFactory::SetModuleFolder(empty.Path().string());
    EXPECT_EQ(AssetWriterFactory::Shared(), nullptr);
    const std::string reason = AssetWriterFactory::SharedReason();
    EXPECT_NE(reason.find(empty.File("libQZMovieWriter.so")), std::string::npos) << reason;
    Platform::MovieReadError error;
    EXPECT_EQ(Platform::MovieReader::Open(QZ_MODULE_FILE, error), nullptr);
    EXPECT_EQ(error.kind, Platform::MovieReadError::Kind::NoModule);
    EXPECT_EQ(error.reason, reason);
    AssetWriterFactory::SetModuleFolder(std::nullopt);
    EXPECT_NE(AssetWriterFactory::Shared(), nullptr) << AssetWriterFactory::SharedReason();
    EXPECT_EQ(AssetWriterFactory::SharedReason(), "");
    EXPECT_EQ(Platform::MovieReader::Open(QZ_MODULE_FILE, error), nullptr);
    EXPECT_EQ(error.kind, Platform::MovieReadError::Kind::NotAMovie);
}

std::string Needed(const char* file)
{
    return Output(std::string("readelf -d '") + file + "' | grep NEEDED");
}

TEST(MovieWriterModule, AloneNeedsTheCodecLibraries)
{
    EXPECT_NE(Needed(QZ_MODULE_FILE).find("libavcodec"), std::string::npos);
    for (const char* file : {QZ_LIBRARY_FILE, QZ_TOOL_FILE}) {
        const std::string needed = Needed(file);
        for (const char* library : {"libav", "libsw", "libx26", "libQZMovieWriter"})
            EXPECT_EQ(needed.find(library), std::string::npos) << file << " needs " << needed;
    }
}

TEST(MovieWriterModule, ShowsItsEntryPointsAlone)
{
    const std::string symbols = Output("nm -D --defined-only '" QZ_MODULE_FILE "' | awk '{print $3}'");
    EXPECT_EQ(symbols, "QZMovieReaderOpen\nQZMovieWriterFactory\n");
}

}   // namespace
}   // namespace QZ::Test
