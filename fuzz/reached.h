// How far a target came, for the replay to judge.
#ifndef TYPESCOUT_FUZZ_REACHED_H
#define TYPESCOUT_FUZZ_REACHED_H

namespace fuzz {

// Streams of compound documents that gave at least a byte, over all inputs so far.
extern int streamsReached;

}  // namespace fuzz

#endif  // TYPESCOUT_FUZZ_REACHED_H
