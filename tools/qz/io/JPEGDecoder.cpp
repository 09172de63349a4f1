// SPDX-License-Identifier: MIT
#include <cstdio>   // jpeglib.h needs it

#include <jerror.h>
#include <jpeglib.h>

#include <array>
#include <csetjmp>
#include <cstdlib>

#include "tools/qz/io/Orientation.h"
#include "tools/qz/io/Raster.h"

namespace QZ::Tool {

namespace {

constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr int kProfileMarker = JPEG_APP0 + 2;
constexpr unsigned kWholeMarker = 0xFFFF;

// More scans than any encoder makes: each one walks the whole picture, and a hostile file has thousands.
constexpr int kMostScans = 500;

// Whether a warning of libjpeg means that part of the picture is not what was taken. The others are slips of
// writers that the decoder puts right.
bool IsDamage(int warning)
{
    switch (warning) {
        case JWRN_ADOBE_XFORM:
        case JWRN_BOGUS_PROGRESSION:
        case JWRN_EXTRANEOUS_DATA:
        case JWRN_NOT_SEQUENTIAL:
        case JWRN_TOO_MUCH_DATA:
        case JWRN_BOGUS_ICC:
            return false;
        default:
            return true;
    }
}

// libjpeg over a file in memory. An error of libjpeg jumps back to the call that met it and becomes a Defect
// there.
class Decoder {
public:
    Decoder(const Bytes& file, PictureBuilder& picture) : m_file(file), m_picture(picture)
    {
        m_jpeg.err = jpeg_std_error(&m_errors);
        m_jpeg.client_data = this;
        m_errors.error_exit = OnError;
        m_errors.emit_message = OnMessage;
        m_errors.output_message = [](j_common_ptr) {};
        m_progress.progress_monitor = OnProgress;
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() { jpeg_destroy_decompress(&m_jpeg); }

    void Decode()
    {
        Guarded([this] {
            jpeg_create_decompress(&m_jpeg);
            m_jpeg.progress = &m_progress;
            jpeg_mem_src(&m_jpeg, m_file.data(), m_file.size());
            jpeg_save_markers(&m_jpeg, kExifMarker, kWholeMarker);
            jpeg_save_markers(&m_jpeg, kProfileMarker, kWholeMarker);
            jpeg_read_header(&m_jpeg, TRUE);
        });
        RasterHeader header = ReadHeader();
        // A progressive picture is held whole, two bytes a coefficient, until its last scan.
        const bool whole = jpeg_has_multiple_scans(&m_jpeg) != 0;
        const auto components = static_cast<std::uint64_t>(m_jpeg.num_components);
        CheckLimits(m_picture.Limit(), header.width, header.height, whole ? 4 + 2 * components : 4);
        m_picture.Begin(std::move(header));
        ReadRows();
    }

private:
    // The lambda may hold nothing that needs a destructor: the jump passes over it.
    template <class Call>
    void Guarded(Call call)
    {
        if (setjmp(m_jump) != 0)
            throw Defect(std::string("not a sound JPEG file: ") + m_error.data());
        call();
    }

    static Decoder& Self(j_common_ptr jpeg) { return *static_cast<Decoder*>(jpeg->client_data); }

    static void OnError(j_common_ptr jpeg)
    {
        Decoder& self = Self(jpeg);
        jpeg->err->format_message(jpeg, self.m_error.data());
        longjmp(self.m_jump, 1);
    }

    static void OnMessage(j_common_ptr jpeg, int level)
    {
        if (level < 0 && IsDamage(jpeg->err->msg_code))
            OnError(jpeg);
    }

    static void OnProgress(j_common_ptr jpeg)
    {
        Decoder& self = Self(jpeg);
        if (self.m_jpeg.input_scan_number > kMostScans)
            ERREXIT(jpeg, JERR_BAD_PROGRESSION);
    }

    RasterHeader ReadHeader()
    {
        RasterHeader header;
        header.format = "JPEG";
        header.width = m_jpeg.image_width;
        header.height = m_jpeg.image_height;
        header.bitDepth = m_jpeg.data_precision;
        switch (m_jpeg.jpeg_color_space) {
            case JCS_GRAYSCALE:
                header.model = Model::Grey;
                m_jpeg.out_color_space = JCS_GRAYSCALE;
                break;
            case JCS_CMYK:
            case JCS_YCCK:
                header.model = Model::CMYK;
                header.inverted = m_jpeg.saw_Adobe_marker != 0;   // Adobe's programs write 0 for full ink
                m_jpeg.out_color_space = JCS_CMYK;
                break;
            case JCS_YCbCr:
            case JCS_RGB:
                m_jpeg.out_color_space = JCS_RGB;
                break;
            default:
                throw Defect("a JPEG of unknown colours", "convert it to PNG");
        }
        ReadProfile(header);
        ReadOrientation(header);
        return header;
    }

    void ReadProfile(RasterHeader& header)
    {
        JOCTET* profile = nullptr;
        unsigned length = 0;
        Guarded([&] { jpeg_read_icc_profile(&m_jpeg, &profile, &length); });
        if (profile != nullptr)
            header.profile.assign(profile, profile + length);
        std::free(profile);
    }

    void ReadOrientation(RasterHeader& header)
    {
        for (jpeg_saved_marker_ptr marker = m_jpeg.marker_list; marker != nullptr; marker = marker->next)
            if (marker->marker == kExifMarker && marker->data_length > 6 && marker->data[0] == 'E')
                header.orientation = ExifOrientation({marker->data, marker->data_length});
    }

    void ReadRows()
    {
        Guarded([this] { jpeg_start_decompress(&m_jpeg); });
        std::vector<JSAMPLE> row(static_cast<std::size_t>(m_jpeg.output_width) *
                                 static_cast<std::size_t>(m_jpeg.output_components));
        JSAMPROW rows[] = {row.data()};
        while (m_jpeg.output_scanline < m_jpeg.output_height) {
            const JDIMENSION y = m_jpeg.output_scanline;
            Guarded([&] { jpeg_read_scanlines(&m_jpeg, rows, 1); });
            m_picture.Row(y, row.data());
        }
        Guarded([this] { jpeg_finish_decompress(&m_jpeg); });
    }

    const Bytes& m_file;
    PictureBuilder& m_picture;
    jpeg_decompress_struct m_jpeg = {};
    jpeg_error_mgr m_errors = {};
    jpeg_progress_mgr m_progress = {};
    std::jmp_buf m_jump = {};
    std::array<char, JMSG_LENGTH_MAX> m_error = {};
};

}   // namespace

void DecodeJPEG(const Bytes& file, PictureBuilder& picture)
{
    Decoder(file, picture).Decode();
}

}   // namespace QZ::Tool
