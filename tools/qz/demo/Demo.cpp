// SPDX-License-Identifier: MIT
#include "tools/qz/demo/Demo.h"

#include <chrono>

#include "tools/qz/demo/Movies.h"
#include "tools/qz/demo/Page.h"
#include "tools/qz/demo/Reduce.h"
#include "tools/qz/demo/Steps.h"
#include "tools/qz/io/ImageWriter.h"
#include "tools/qz/palette/Palette.h"
#include "tools/qz/plots/ChromaMap.h"
#include "tools/qz/plots/Histograms.h"

namespace QZ::Tool {

namespace {

constexpr int kLongestSide = 1400;   // of a picture on the page

template <class Work>
double MillisecondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// A name as the shell takes it whole.
std::string Quoted(const std::string& name)
{
    constexpr const char* kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-/";
    if (!name.empty() && name.find_first_not_of(kPlain) == std::string::npos && name[0] != '-')
        return name;
    std::string quoted = "'";
    for (const char c : name)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

class Maker {
public:
    Maker(const Image& image, const std::string& name, const Context& context)
        : m_image(image), m_name(name), m_context(context)
    {
        m_page.title = "qz on " + name;
        m_page.summary =
            std::to_string(image.width) + " \xC3\x97 " + std::to_string(image.height) + " pixels";
        if (std::max(image.width, image.height) > kLongestSide)
            m_page.summary += "; the operations work on all of them, this page shows the results reduced";
        m_page.before = "before.png";
        m_page.megapixels = static_cast<double>(image.Count()) / 1e6;
    }

    void Show(const Step& step)
    {
        m_context.Progress("demo: " + step.title + " ...");
        Image result = m_image;
        PageEntry entry = {step.group, step.title, step.text, "", "", step.name + ".png"};
        entry.milliseconds = MillisecondsOf([&] { entry.result = step.run(result); });
        if (!step.command.empty())
            entry.command = "qz " + step.command + " " + Quoted(m_name) + " " + entry.picture +
                            (step.options.empty() ? "" : " " + step.options);
        Add(entry, Reduced(result, kLongestSide));
    }

    void ShowMeasures()
    {
        m_context.Progress("demo: histograms, palette ...");
        PageEntry entry = {"Measured",
                           "Histograms",
                           "Counts of greys, their density, weights by alpha, and hues.",
                           "",
                           "qz histogram " + Quoted(m_name) + " histogram.png",
                           "histogram.png",
                           false};
        PictureHistograms histograms;
        entry.milliseconds = MillisecondsOf([&] { histograms = MeasureHistograms(m_image, {}); });
        Add(entry, HistogramSheet(histograms, m_name));

        entry = {"Measured",
                 "Palette",
                 "The colours of the picture and their shares of its pixels.",
                 "",
                 "qz palette " + Quoted(m_name) + " --picture palette.png",
                 "palette.png",
                 false};
        std::vector<PaletteColor> palette;
        entry.milliseconds = MillisecondsOf([&] { palette = PaletteOf(m_image, {}); });
        Add(entry, PaletteSheet(palette, "Palette of " + m_name));

        entry = {"Measured",
                 "The gamut",
                 "The largest chroma that sRGB holds, whatever the picture.",
                 "",
                 "qz chroma-map chroma-map.png",
                 "chroma-map.png",
                 false};
        Add(entry, ChromaMapSheet());
    }

    void ShowMovies()
    {
        for (DemoMovie& movie : MakeDemoMovies(m_context)) {
            m_files.push_back({movie.entry.picture, std::move(movie.bytes)});
            m_page.entries.push_back(std::move(movie.entry));
        }
    }

    std::vector<FolderFile> Finish()
    {
        m_files.push_back({m_page.before, EncodePNG(Reduced(m_image, kLongestSide))});
        const std::string html = PageAsHtml(m_page);
        m_files.push_back({"index.html", {html.begin(), html.end()}});
        return std::move(m_files);
    }

private:
    void Add(const PageEntry& entry, const Image& picture)
    {
        m_files.push_back({entry.picture, EncodePNG(picture)});
        m_page.entries.push_back(entry);
    }

    const Image& m_image;
    std::string m_name;
    const Context& m_context;
    Page m_page;
    std::vector<FolderFile> m_files;
};

}   // namespace

std::vector<FolderFile> MakeDemo(const Image& image, const std::string& name, const Context& progress)
{
    Maker maker(image, name, progress);
    for (const Step& step : DemoSteps())
        maker.Show(step);
    maker.ShowMeasures();
    maker.ShowMovies();
    return maker.Finish();
}

}   // namespace QZ::Tool
