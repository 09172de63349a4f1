// SPDX-License-Identifier: MIT
#pragma once

#include <signal.h>
#include <sys/resource.h>

#include <cstdlib>
#include <filesystem>
#include <string>

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

/// A small file system of its own, where one may be mounted: by root.
class SmallDisk {
public:
    /// \param kilobytes  how much it holds
    SmallDisk(const std::string& folder, int kilobytes) : m_folder(folder)
    {
        std::filesystem::create_directory(folder);
        m_mounted = Run("mount -t tmpfs -o size=" + std::to_string(kilobytes) + "k tmpfs '" + folder + "'");
    }
    ~SmallDisk()
    {
        if (m_mounted)
            Run("umount '" + m_folder + "'");
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    [[nodiscard]] bool IsMounted() const { return m_mounted; }
    [[nodiscard]] std::string File(const std::string& name) const { return m_folder + '/' + name; }

private:
    static bool Run(const std::string& command)
    {
        return std::system((command + " 2>/dev/null").c_str()) == 0;
    }

    const std::string m_folder;
    bool m_mounted = false;
};

}   // namespace QZ::Test
