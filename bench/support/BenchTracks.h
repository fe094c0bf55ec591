#pragma once

#include <QByteArray>

// The tracks the benchmarks add, as a library module would describe them.
namespace BenchTracks {

// The roles of track i, as JSON text.
QByteArray roles(int i);
// Track i as an item of add-external-items: its roles travel as a JSON string.
QByteArray item(int i);

} // namespace BenchTracks
