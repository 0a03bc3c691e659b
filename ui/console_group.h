// Aligning and stretching the windows of the group: rectangles only.
#pragma once

struct Edges {
    int left, top, right, bottom; // screen pixels
};

enum GroupSide { kNoSide, kLeftSide, kRightSide, kTopSide, kBottomSide };

// Moves `edges` so that the side meets the same side of `reference`.
Edges AlignEdges(Edges edges, const Edges& reference, GroupSide side);
// Moves that side alone. A rectangle that would become smaller than the minimum stays as it is.
Edges StretchEdges(Edges edges, const Edges& reference, GroupSide side, int minWidth,
                   int minHeight);
