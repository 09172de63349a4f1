// SPDX-License-Identifier: MIT
#include "QZ/Platform/AssetWriter.h"

#include <mutex>

#include "QZ/Platform/MovieWriterModule.h"

namespace QZ::Platform {

AssetWriterInput::~AssetWriterInput() = default;
PixelBufferAdaptor::~PixelBufferAdaptor() = default;
AssetWriter::~AssetWriter() = default;
AssetWriterFactory::~AssetWriterFactory() = default;

namespace {

struct SharedFactory {
    std::mutex mutex;
    std::shared_ptr<AssetWriterFactory> factory;
    std::string reason;
};

/// Never destroyed: a recording may end while the process does.
SharedFactory& TheSharedFactory()
{
    static SharedFactory& shared = *new SharedFactory;
    return shared;
}

/// The module's factory, which the module owns; null with a reason.
std::shared_ptr<AssetWriterFactory> ModuleFactory(std::string& reason)
{
    void* symbol = MovieWriterSymbol(kMovieWriterEntryName, reason);
    if (!symbol)
        return nullptr;
    AssetWriterFactory* factory = reinterpret_cast<MovieWriterEntry>(symbol)(kMovieWriterABIVersion);
    if (!factory) {
        reason = std::string(kMovieWriterFileName) + " belongs to another version of the library";
        return nullptr;
    }
    return {factory, [](AssetWriterFactory*) {}};
}

}   // namespace

std::shared_ptr<AssetWriterFactory> AssetWriterFactory::Shared()
{
    SharedFactory& shared = TheSharedFactory();
    const std::lock_guard lock(shared.mutex);
    shared.reason.clear();
    return shared.factory ? shared.factory : ModuleFactory(shared.reason);
}

void AssetWriterFactory::SetShared(std::shared_ptr<AssetWriterFactory> factory)
{
    SharedFactory& shared = TheSharedFactory();
    const std::lock_guard lock(shared.mutex);
    shared.factory.swap(factory);
}

std::string AssetWriterFactory::SharedReason()
{
    SharedFactory& shared = TheSharedFactory();
    const std::lock_guard lock(shared.mutex);
    return shared.reason;
}

}   // namespace QZ::Platform
