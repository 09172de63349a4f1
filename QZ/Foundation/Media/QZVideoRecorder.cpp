// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/QZVideoRecorder.h"

#include <utility>

#include "QZ/Foundation/Media/QZFileUtility.h"
#include "QZ/Foundation/Media/RecorderSettings.h"
#include "QZ/Foundation/Media/VideoRecording.h"

using namespace QZ::Platform;

QZVideoRecorderDelegate::~QZVideoRecorderDelegate() = default;

QZVideoRecorder::QZVideoRecorder(QZVideoRecorderDelegate* delegate, std::optional<std::string> path)
    : m_recording(std::make_shared<Recording>(delegate))
{
    m_recording->filename = path ? std::move(path) : QZ::Foundation::DefaultMoviePath();
}

QZVideoRecorder::~QZVideoRecorder()
{
    m_recording->ForgetDelegate();
    stop();
    QZFileUtility::markUniqueFilenameForDelete(filename());
}

bool QZVideoRecorder::startWithFrameRate(int frameRate, double bitRateMultiplier, int width, int height,
                                         const AffineTransform* transform,
                                         const std::vector<MetadataItem>* metadata, std::string_view format)
{
    if (m_recording->CurrentTracks().writer)
        return false;
    QZFileUtility::markUniqueFilenameForDelete(filename());

    VideoRecordingRequest request = {
        {}, QZ::Foundation::SourceAttributes(width, height), transform, metadata};
    request.video.codec = QZ::Foundation::CodecOfFormat(format);
    request.video.width = width;
    request.video.height = height;
    if (request.video.codec != VideoCodec::ProRes422)
        request.video.compression =
            QZ::Foundation::CompressionFor(width, height, frameRate, bitRateMultiplier);

    if (m_recording->Start(request))
        return true;
    stop();
    return false;
}

void QZVideoRecorder::cancel()
{
    m_recording->cancelled = true;
}

void QZVideoRecorder::stop()
{
    m_recording->Stop();
}

void QZVideoRecorder::finishedWithSamples()
{
    m_recording->FinishedWithSamples();
}

std::optional<std::string> QZVideoRecorder::filename() const
{
    const std::lock_guard lock(m_recording->mutex);
    return m_recording->filename;
}

std::string QZVideoRecorder::failureReason() const
{
    const std::lock_guard lock(m_recording->mutex);
    const std::shared_ptr<AssetWriter>& writer = m_recording->tracks.writer;
    if (writer && writer->Status() == AssetWriterStatus::Failed)
        return writer->Reason();
    return m_recording->failureReason;
}
