#pragma once

#include "VexaGlobal.h"

#include <QVariant>

// Conversions of loosely typed values (as JSON and request parameters deliver
// them) into exact C++ types, refusing anything that does not fit.
namespace VexaVariant {

// An int from a whole number or from decimal text; fallback for anything else
// (fractions, out-of-range numbers, other text, null).
VEXA_API int toInt(const QVariant& value, int fallback);

// The same, reporting success instead of substituting a fallback.
VEXA_API bool readInt(const QVariant& value, int* out);

} // namespace VexaVariant
