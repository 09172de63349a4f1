// SPDX-License-Identifier: MIT
#include "QZ/Platform/MediaBuffers.h"

#include <gtest/gtest.h>

#include <set>

using namespace QZ::Platform;

namespace {

PixelBufferAttributes Attributes(int width, int height, int alignment = 4)
{
    PixelBufferAttributes attributes;
    attributes.width = width;
    attributes.height = height;
    attributes.bytesPerRowAlignment = alignment;
    return attributes;
}

}   // namespace

TEST(FourCharacterCode, PutsTheFirstCharacterHighest)
{
    EXPECT_EQ(kPixelFormatBGRA, 0x42475241u);
    EXPECT_EQ(FourCharacterCode("aac "), 0x61616320u);
}

TEST(PixelBuffer, AlignsItsRows)
{
    EXPECT_EQ(PixelBuffer::Create(Attributes(3, 2))->BytesPerRow(), 12u);
    EXPECT_EQ(PixelBuffer::Create(Attributes(3, 2, 16))->BytesPerRow(), 16u);
    EXPECT_EQ(PixelBuffer::Create(Attributes(4, 2, 16))->BytesPerRow(), 16u);
    EXPECT_EQ(PixelBuffer::Create(Attributes(3, 2, 1))->BytesPerRow(), 12u);
}

TEST(PixelBuffer, HoldsAllItsRowsZeroed)
{
    const std::shared_ptr<PixelBuffer> buffer = PixelBuffer::Create(Attributes(5, 7));
    EXPECT_EQ(buffer->Width(), 5);
    EXPECT_EQ(buffer->Height(), 7);
    buffer->Lock();
    for (std::size_t i = 0; i < 5 * 4 * 7; ++i)
        EXPECT_EQ(buffer->BaseAddress()[i], 0);
    buffer->BaseAddress()[5 * 4 * 7 - 1] = 255;
    buffer->Unlock();
}

TEST(PixelBuffer, IsNotMadeOfImpossibleAttributes)
{
    EXPECT_EQ(PixelBuffer::Create(Attributes(0, 2)), nullptr);
    EXPECT_EQ(PixelBuffer::Create(Attributes(2, -1)), nullptr);
    EXPECT_EQ(PixelBuffer::Create(Attributes(2, 2, 0)), nullptr);
    PixelBufferAttributes otherFormat = Attributes(2, 2);
    otherFormat.pixelFormat = FourCharacterCode("ARGB");
    EXPECT_EQ(PixelBuffer::Create(otherFormat), nullptr);
    EXPECT_EQ(PixelBufferPool::Create(Attributes(0, 2)), nullptr);
}

TEST(PixelBufferPool, GivesTheMemoryOfReleasedBuffersAgain)
{
    const std::shared_ptr<PixelBufferPool> pool = PixelBufferPool::Create(Attributes(64, 64));
    std::set<unsigned char*> addresses;
    for (int i = 0; i < 100; ++i) {
        const std::shared_ptr<PixelBuffer> a = pool->MakePixelBuffer();
        const std::shared_ptr<PixelBuffer> b = pool->MakePixelBuffer();
        addresses.insert(a->BaseAddress());
        addresses.insert(b->BaseAddress());
    }
    EXPECT_EQ(addresses.size(), 2u);
}

TEST(PixelBufferPool, GivesBuffersWithoutTheProfileOfTheirFormerUse)
{
    const std::shared_ptr<PixelBufferPool> pool = PixelBufferPool::Create(Attributes(2, 2));
    pool->MakePixelBuffer()->SetICCProfile(std::make_shared<std::vector<unsigned char>>(3));
    EXPECT_EQ(pool->MakePixelBuffer()->Profile(), nullptr);
}

TEST(PixelBufferPool, StopsAtItsLimitUntilABufferIsReleased)
{
    const std::shared_ptr<PixelBufferPool> pool = PixelBufferPool::Create(Attributes(2, 2), 2);
    std::shared_ptr<PixelBuffer> a = pool->MakePixelBuffer();
    const std::shared_ptr<PixelBuffer> b = pool->MakePixelBuffer();
    EXPECT_EQ(pool->MakePixelBuffer(), nullptr);
    a.reset();
    EXPECT_NE(pool->MakePixelBuffer(), nullptr);
}

TEST(PixelBufferPool, MayDieBeforeItsBuffers)
{
    std::shared_ptr<PixelBufferPool> pool = PixelBufferPool::Create(Attributes(2, 2));
    const std::shared_ptr<PixelBuffer> buffer = pool->MakePixelBuffer();
    pool.reset();
    buffer->BaseAddress()[15] = 1;
    EXPECT_EQ(buffer->BaseAddress()[15], 1);
}

TEST(FormatDescription, KnowsTheBytesOfAFrameOfUncompressedSound)
{
    EXPECT_EQ(FormatDescription::LinearPCM16(44100, 2)->BytesPerFrame(), 4u);
    FormatDescription compressed = *FormatDescription::LinearPCM16(44100, 2);
    compressed.subType = FourCharacterCode("aac ");
    EXPECT_EQ(compressed.BytesPerFrame(), 0u);
}

TEST(SampleBuffer, BoxesTimedMetadata)
{
    const std::shared_ptr<SampleBuffer> sample = SampleBuffer::MakeMetadata(
        {{"org.example.a", "hi"}, {"org.example.b", ""}}, MakeTime(3, 30), MakeTime(1, 30));
    const std::vector<unsigned char> expected = {0, 0, 0, 10, 0, 0, 0, 1, 'h', 'i', 0, 0, 0, 8, 0, 0, 0, 2};
    EXPECT_EQ(sample->bytes, expected);
    EXPECT_EQ(sample->format->mediaType, MediaType::Metadata);
    EXPECT_EQ(sample->format->subType, FourCharacterCode("mebx"));
    ASSERT_EQ(sample->format->metadataKeys.size(), 2u);
    EXPECT_EQ(sample->format->metadataKeys[1].localID, 2u);
    EXPECT_EQ(sample->format->metadataKeys[1].key, "org.example.b");
    EXPECT_EQ(CompareTime(sample->presentationTime, MakeTime(1, 10)), 0);
    EXPECT_EQ(CompareTime(sample->duration, MakeTime(1, 30)), 0);
}
