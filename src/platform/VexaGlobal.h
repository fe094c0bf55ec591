#pragma once

// Symbols of the SDK libraries that modules and the host link against.
#define VEXA_API __attribute__((visibility("default")))
