// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "QZ/Foundation/Color/CColor.h"
#include "tools/qz/CommandLine.h"
#include "tools/qz/io/ImageReader.h"
#include "tools/qz/io/ImageWriter.h"
#include "tools/qz/movie/MovieToMovie.h"

namespace QZ::Tool {

/// An option that takes one of a few names.
template <class T>
Option AddChoice(Command& command, const std::string& option, T& value,
                 const std::map<std::string, std::type_identity_t<T>>& names, const std::string& text)
{
    const auto choose = [&value, names](const std::string& word) {
        const auto found = names.find(word);
        if (found == names.end()) {
            std::string list;
            for (const auto& [name, ignored] : names)
                list += (list.empty() ? "" : ", ") + name;
            RefuseValue(word + " is not one of " + list);
        }
        value = found->second;
    };
    return command.AddText(option, choose, text).TypeName("NAME");
}

/// --max-pixels.
void AddMaxPixels(Command& command, Limits& limits);

/// The operand IN and the options of reading: --max-pixels.
void AddInput(Command& command, std::string& path, Limits& limits);

/// The operand OUT and the options of writing: --format, --quality.
void AddOutput(Command& command, Output& output);

/// --illuminant d50|d65.
void AddIlluminant(Command& command, Foundation::CColor::EIlluminant& illuminant);

/// What most commands are: one picture in, one picture out.
struct PictureToPicture {
    std::string in;
    Output out;
    Limits limits;

    void AddTo(Command& command);
    /// Checks the output, then reads the input.
    [[nodiscard]] Image Read(Context& context) const;
    void Write(const Image& image, const Context& context) const { WriteImage(image, out, context); }
};

/// One picture in, one picture out, or the same with every picture of a movie.
struct PictureOrMovie : PictureToPicture {
    MovieEncoding encoding;

    void AddTo(Command& command);

    /// Whether a movie is asked for: OUT ends in .mov.
    [[nodiscard]] bool IsMovie() const { return IsMovieName(out.path) && !out.format; }
    /// Works on each picture of a movie, on several threads at a time.
    /// \param doing  what goes on, for the progress.
    Status WorkOnEach(const std::string& doing, const std::function<void(Image&)>& operation,
                      Context& context) const;

    /// As PictureToPicture; refuses the options of a movie.
    [[nodiscard]] Image Read(Context& context) const;
};

}   // namespace QZ::Tool
