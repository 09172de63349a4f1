// SPDX-License-Identifier: MIT
#pragma once

#include <signal.h>
#include <sys/resource.h>

namespace QZ::Test {

/// A limit on the size of files, under which writing fails as on a full disk (EFBIG in place of ENOSPC).
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes)
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        m_handler = ::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = m_before;
        limit.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        ::signal(SIGXFSZ, m_handler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_before = {};
    void (*m_handler)(int) = SIG_DFL;
};

}   // namespace QZ::Test
