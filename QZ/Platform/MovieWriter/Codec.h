// SPDX-License-Identifier: MIT
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

#include <memory>
#include <string>

namespace QZ::Platform::Movie {

/// Frees what the codec libraries allocate.
struct Free {
    void operator()(AVCodecContext* object) const { avcodec_free_context(&object); }
    void operator()(AVFrame* object) const { av_frame_free(&object); }
    void operator()(AVPacket* object) const { av_packet_free(&object); }
    void operator()(SwsContext* object) const { sws_freeContext(object); }
    void operator()(SwrContext* object) const { swr_free(&object); }
};
template <class T>
using Owned = std::unique_ptr<T, Free>;

/// An error code of the codec libraries in words.
[[nodiscard]] inline std::string CodecError(int code)
{
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(code, text, sizeof text);
    return text;
}

/// The named encoder, quiet: what goes wrong is told by results, and a library's host owns its standard
/// error.
[[nodiscard]] inline Owned<AVCodecContext> NewEncoder(const char* name)
{
    const AVCodec* codec = avcodec_find_encoder_by_name(name);
    Owned<AVCodecContext> context(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (context)
        context->log_level_offset = AV_LOG_TRACE;
    return context;
}

}   // namespace QZ::Platform::Movie
