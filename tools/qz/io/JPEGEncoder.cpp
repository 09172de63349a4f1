// SPDX-License-Identifier: MIT
#include <cstdio>   // jpeglib.h needs it

#include <jpeglib.h>

#include <array>
#include <csetjmp>
#include <cstdlib>
#include <string>

#include "tools/qz/Failure.h"
#include "tools/qz/io/ImageWriter.h"
#include "tools/qz/io/Profile.h"

namespace QZ::Tool {

namespace {

class Encoder {
public:
    Encoder()
    {
        m_jpeg.err = jpeg_std_error(&m_errors);
        m_jpeg.client_data = this;
        m_errors.error_exit = OnError;
        m_errors.output_message = [](j_common_ptr) {};
    }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    ~Encoder()
    {
        jpeg_destroy_compress(&m_jpeg);
        std::free(m_file);
    }

    std::vector<unsigned char> Encode(const Image& image, int quality)
    {
        const std::vector<unsigned char> profile = MakeProfile(image.colorSpace);
        Guarded([&] {
            jpeg_create_compress(&m_jpeg);
            jpeg_mem_dest(&m_jpeg, &m_file, &m_size);
            m_jpeg.image_width = static_cast<JDIMENSION>(image.width);
            m_jpeg.image_height = static_cast<JDIMENSION>(image.height);
            m_jpeg.input_components = 3;
            m_jpeg.in_color_space = JCS_RGB;
            jpeg_set_defaults(&m_jpeg);
            jpeg_set_quality(&m_jpeg, quality, TRUE);
            m_jpeg.comp_info[0].h_samp_factor =
                1;   // colour at full resolution: hard edges are the rule here
            m_jpeg.comp_info[0].v_samp_factor = 1;
            m_jpeg.optimize_coding = TRUE;
            jpeg_start_compress(&m_jpeg, TRUE);
            jpeg_write_icc_profile(&m_jpeg, profile.data(), static_cast<unsigned>(profile.size()));
        });
        std::vector<JSAMPLE> row(3 * static_cast<std::size_t>(image.width));
        JSAMPROW rows[] = {row.data()};
        for (int y = 0; y < image.height; ++y) {
            FlattenRow(image.At(0, y), image.width, row.data());
            Guarded([&] { jpeg_write_scanlines(&m_jpeg, rows, 1); });
        }
        Guarded([this] { jpeg_finish_compress(&m_jpeg); });
        return {m_file, m_file + m_size};
    }

private:
    // The lambda may hold nothing that needs a destructor: the jump passes over it.
    template <class Call>
    void Guarded(Call call)
    {
        if (setjmp(m_jump) != 0)
            throw Failure(Status::Encoder, "",
                          std::string("the JPEG encoder refused the picture: ") + m_error.data(),
                          "write a PNG");
        call();
    }

    static void OnError(j_common_ptr jpeg)
    {
        auto& self = *static_cast<Encoder*>(jpeg->client_data);
        jpeg->err->format_message(jpeg, self.m_error.data());
        longjmp(self.m_jump, 1);
    }

    static void FlattenRow(const unsigned char* rgba, int width, JSAMPLE* rgb)
    {
        for (int x = 0; x < width; ++x, rgba += 4)
            for (int c = 0; c < 3; ++c)
                *rgb++ = static_cast<JSAMPLE>((rgba[c] * rgba[3] + 255 * (255 - rgba[3]) + 127) / 255);
    }

    jpeg_compress_struct m_jpeg = {};
    jpeg_error_mgr m_errors = {};
    std::jmp_buf m_jump = {};
    std::array<char, JMSG_LENGTH_MAX> m_error = {};
    unsigned char* m_file = nullptr;
    unsigned long m_size = 0;
};

}   // namespace

std::vector<unsigned char> EncodeJPEG(const Image& image, int quality)
{
    return Encoder().Encode(image, quality);
}

}   // namespace QZ::Tool
