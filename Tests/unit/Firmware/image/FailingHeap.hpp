#pragma once

namespace mox::images {

/// While one lives, the n-th allocation by operator new of this thread fails.
class FailingHeap {
public:
    explicit FailingHeap(unsigned allocation);
    ~FailingHeap();
    FailingHeap(const FailingHeap&) = delete;
    FailingHeap& operator=(const FailingHeap&) = delete;

    /// Whether an allocation has failed.
    bool hasFailed() const;
};

} // namespace mox::images
