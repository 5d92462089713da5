#pragma once

namespace snip::bench {

// Each measures one group of rows in this process and prints report lines for ./bench.
void BenchList();
void BenchCodeField();
void BenchWalk();
void BenchHover();
void BenchFind();

// One measurement of the code group, in microseconds. Earlier texts leave the memory in pieces, among which
// Wine's search for a fitting one slows either side by chance, up to thirtyfold: each gets a new process.
int ShowInField();
int ShowInBareControl();
int TypeInField();
int TypeInBareControl();
/// Of its parts, the one that takes longest.
int FillBareControlInParts();

/// The first opening of the palette in a process, in microseconds.
int OpenPaletteFirst(int snippets);

}  // namespace snip::bench
