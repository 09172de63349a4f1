// SPDX-License-Identifier: MIT
// qz built without the media layer.
#include "tools/qz/movie/MovieToMovie.h"
#include "tools/qz/movie/RecordMovie.h"

namespace QZ::Tool {

MovieSummary MakeMovie(const MovieToMovie& files, const std::string&, const std::function<void(Image&)>&,
                       const Context&)
{
    throw Failure(Status::Usage, files.out, "this qz was built without movies", "name a .png or .jpg");
}

Status WorkOnMovie(const MovieToMovie& files, const std::string& doing,
                   const std::function<void(Image&)>& operation, Context& context)
{
    return Tell(MakeMovie(files, doing, operation, context), files.out, context);
}

Recorded RecordScene(const RecordOptions& options, const Context&)
{
    throw Failure(Status::Usage, options.out, "this qz was built without movies", "");
}

Status Tell(const MovieSummary&, const std::string&, Context&)
{
    return Status::Done;
}

}   // namespace QZ::Tool
