#pragma once
namespace mox::bench {

/// How often the program has asked the heap for memory; counts only where CountingHeap.cpp is linked.
long heapAllocations();

} // namespace mox::bench
