#pragma once

// Length of the distance read-out's wording. Kept for callers that set it; every read-out uses the
// long wording today.
enum class DistanceStyle {
    Long,
    Short,
};
