// SPDX-License-Identifier: MIT
#include "QZ/Platform/MediaBuffers.h"

#include <limits>
#include <mutex>
#include <new>
#include <utility>

namespace QZ::Platform {

PixelBuffer::~PixelBuffer() = default;
PixelBufferPool::~PixelBufferPool() = default;

namespace {

using Memory = std::unique_ptr<unsigned char[]>;

/// The bytes of a row and of the whole; 0 for attributes that no buffer can have.
struct Extent {
    std::uint64_t row = 0, total = 0;

    explicit Extent(const PixelBufferAttributes& attributes)
    {
        if (attributes.width <= 0 || attributes.height <= 0 || attributes.bytesPerRowAlignment <= 0 ||
            attributes.pixelFormat != kPixelFormatBGRA)
            return;
        const auto alignment = static_cast<std::uint64_t>(attributes.bytesPerRowAlignment);
        row = (static_cast<std::uint64_t>(attributes.width) * 4 + alignment - 1) / alignment * alignment;
        total = row * static_cast<std::uint64_t>(attributes.height);
        if (total > static_cast<std::uint64_t>(std::numeric_limits<std::ptrdiff_t>::max()))
            total = 0;
    }
};

class MemoryPixelBuffer final : public PixelBuffer {
public:
    MemoryPixelBuffer(const PixelBufferAttributes& attributes, std::uint64_t bytesPerRow, Memory memory)
        : m_width(attributes.width),
          m_height(attributes.height),
          m_bytesPerRow(bytesPerRow),
          m_memory(std::move(memory))
    {}
    int Width() const override { return m_width; }
    int Height() const override { return m_height; }
    std::uint64_t BytesPerRow() const override { return m_bytesPerRow; }
    void Lock() override {}   // this memory never moves
    void Unlock() override {}
    unsigned char* BaseAddress() override { return m_memory.get(); }
    void SetICCProfile(ICCProfile profile) override { m_profile = std::move(profile); }
    ICCProfile Profile() const override { return m_profile; }

    Memory TakeMemory() { return std::move(m_memory); }

private:
    const int m_width, m_height;
    const std::uint64_t m_bytesPerRow;
    Memory m_memory;
    ICCProfile m_profile;
};

/// What a pool shares with its buffers, so that these may outlive it.
struct PoolState {
    const PixelBufferAttributes attributes;
    const Extent extent;
    const std::size_t mostBuffers;
    std::mutex mutex;
    std::vector<Memory> unused;
    std::size_t inUse = 0;

    PoolState(const PixelBufferAttributes& a, std::size_t most) : attributes(a), extent(a), mostBuffers(most)
    {}

    /// Memory of a released buffer or new one; null when the pool is exhausted.
    Memory Take()
    {
        const std::lock_guard lock(mutex);
        if (mostBuffers != 0 && inUse == mostBuffers)
            return nullptr;
        Memory memory;
        if (unused.empty()) {
            memory.reset(new (std::nothrow) unsigned char[extent.total]);
        } else {
            memory = std::move(unused.back());
            unused.pop_back();
        }
        inUse += memory ? 1 : 0;
        return memory;
    }

    void GiveBack(Memory memory)
    {
        const std::lock_guard lock(mutex);
        --inUse;
        unused.push_back(std::move(memory));
    }
};

class RecyclingPool final : public PixelBufferPool {
public:
    explicit RecyclingPool(std::shared_ptr<PoolState> state) : m_state(std::move(state)) {}

    std::shared_ptr<PixelBuffer> MakePixelBuffer() override
    {
        Memory memory = m_state->Take();
        if (!memory)
            return nullptr;
        auto* buffer = new MemoryPixelBuffer(m_state->attributes, m_state->extent.row, std::move(memory));
        return {buffer, [pool = std::weak_ptr(m_state)](MemoryPixelBuffer* released) {
                    if (const std::shared_ptr<PoolState> state = pool.lock())
                        state->GiveBack(released->TakeMemory());
                    delete released;
                }};
    }

private:
    const std::shared_ptr<PoolState> m_state;
};

}   // namespace

std::shared_ptr<PixelBuffer> PixelBuffer::Create(const PixelBufferAttributes& attributes)
{
    const Extent extent(attributes);
    if (extent.total == 0)
        return nullptr;
    Memory memory(new (std::nothrow) unsigned char[extent.total]());
    if (!memory)
        return nullptr;
    return std::make_shared<MemoryPixelBuffer>(attributes, extent.row, std::move(memory));
}

std::shared_ptr<PixelBufferPool> PixelBufferPool::Create(const PixelBufferAttributes& attributes,
                                                         std::size_t mostBuffers)
{
    if (Extent(attributes).total == 0)
        return nullptr;
    return std::make_shared<RecyclingPool>(std::make_shared<PoolState>(attributes, mostBuffers));
}

}   // namespace QZ::Platform
