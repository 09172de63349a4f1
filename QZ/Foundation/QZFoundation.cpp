// SPDX-License-Identifier: MIT
#include "QZ/Foundation/QZFoundation.h"

const double QZFoundationVersionNumber = 1.0;
const unsigned char QZFoundationVersionString[] = "QZFoundation-1";
