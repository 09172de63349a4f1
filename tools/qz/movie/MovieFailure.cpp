// SPDX-License-Identifier: MIT
#include "tools/qz/movie/MovieFailure.h"

namespace QZ::Tool {

Failure MovieFailure(const Platform::MovieReadError& error, const std::string& path)
{
    using Kind = Platform::MovieReadError::Kind;
    switch (error.kind) {
        case Kind::NoModule:
            return {Status::Input, path, error.reason, kModuleRemedy};
        case Kind::Unreadable:
            return {Status::Input, path, error.reason, "check the file and its permissions"};
        case Kind::NotAMovie:
        case Kind::Damaged:
        case Kind::Unsupported:
        case Kind::None:
            break;
    }
    return {Status::Malformed, path, error.reason, ""};
}

}   // namespace QZ::Tool
