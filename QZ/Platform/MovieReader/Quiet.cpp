// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieReader/Quiet.h"

extern "C" {
#include <libavutil/log.h>
}

#include <cstdarg>
#include <mutex>

namespace QZ::Platform::Movie {

namespace {
thread_local int g_quiet = 0;

void LogUnlessQuiet(void* object, int level, const char* format, std::va_list arguments)
{
    if (g_quiet == 0)
        av_log_default_callback(object, level, format, arguments);
}
}   // namespace

Quiet::Quiet()
{
    static std::once_flag installed;
    std::call_once(installed, [] { av_log_set_callback(LogUnlessQuiet); });
    ++g_quiet;
}

Quiet::~Quiet()
{
    --g_quiet;
}

}   // namespace QZ::Platform::Movie
