// SPDX-License-Identifier: MIT
#pragma once

/// Marks what the shared library exports; everything else in it is hidden.
#define QZ_API __attribute__((visibility("default")))
