#pragma once

namespace snip::bench {

// Each measures one group of rows in this process and prints report lines for ./bench.
void BenchList();
void BenchCodeField();
void BenchWalk();
void BenchHover();
void BenchFind();

// One measurement of the code group, in microseconds.
int ShowInField();
int ShowInBareControl();

}  // namespace snip::bench
