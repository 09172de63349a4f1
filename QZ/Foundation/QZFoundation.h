// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// The whole library in one include, but for HSLuv.h, whose names are global and therefore opt-in.

#include "QZ/Export.h"
#include "QZ/Foundation/Analysis/COtsuMethod.h"
#include "QZ/Foundation/Analysis/CWhiteBalance.h"
#include "QZ/Foundation/Analysis/ColorQuantization.h"
#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Analysis/HueAndGrayscaleQuantization.h"
#include "QZ/Foundation/Analysis/MedianCut.h"
#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Foundation/Color/CColorRows.h"
#include "QZ/Foundation/Color/CConvert.h"
#include "QZ/Foundation/Color/CGrayscaleToneCurve.h"
#include "QZ/Foundation/Color/CLUVMaximumChromaMap.h"
#include "QZ/Math/CConstants.h"
#include "QZ/Math/CDiscreteGaussianFilter.h"
#include "QZ/Math/CMatrix3.h"
#include "QZ/Math/CQuaternion.h"
#include "QZ/Math/CVector2.h"
#include "QZ/Math/CVector3.h"
#include "QZ/Math/CVector4.h"

// A library built without its media layer installs none of these headers.
#if __has_include("QZ/Platform/AssetWriter.h")
#include "QZ/Foundation/Media/CAnimation.h"
#include "QZ/Foundation/Media/CFile.h"
#include "QZ/Foundation/Media/FrameRate.h"
#include "QZ/Foundation/Media/QZFileUtility.h"
#include "QZ/Foundation/Media/QZImageOrientation.h"
#include "QZ/Foundation/Media/QZRealTimeVideoRecorder.h"
#include "QZ/Foundation/Media/QZVideoRecorder.h"
#include "QZ/Foundation/Media/QZWorkThread.h"
#include "QZ/Platform/Application.h"
#include "QZ/Platform/AssetWriter.h"
#include "QZ/Platform/Clock.h"
#include "QZ/Platform/DispatchQueue.h"
#include "QZ/Platform/Geometry.h"
#include "QZ/Platform/ImageAssets.h"
#include "QZ/Platform/ImageIO.h"
#include "QZ/Platform/MainQueue.h"
#include "QZ/Platform/MediaBuffers.h"
#include "QZ/Platform/PhotoAlbum.h"
#include "QZ/Platform/Time.h"
#endif

extern "C" {
/// The library's version as a number: 1.0.
QZ_API extern const double QZFoundationVersionNumber;
/// The library's version as a zero-terminated text: "QZFoundation-1".
QZ_API extern const unsigned char QZFoundationVersionString[];
}
