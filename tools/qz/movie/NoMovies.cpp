// SPDX-License-Identifier: MIT
// qz built without the media layer.
#include "tools/qz/movie/MovieToMovie.h"

namespace QZ::Tool {

Status WorkOnMovie(const MovieToMovie& files, const std::string&, const std::function<void(Image&)>&,
                   Context&)
{
    throw Failure(Status::Usage, files.out, "this qz was built without movies", "name a .png or .jpg");
}

}   // namespace QZ::Tool
