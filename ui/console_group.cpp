// Aligning and stretching the windows of the group. See console_group.h.
#include "ui/console_group.h"

Edges AlignEdges(Edges edges, const Edges& reference, GroupSide side) {
    int dx = 0, dy = 0;
    switch (side) {
    case kLeftSide: dx = reference.left - edges.left; break;
    case kRightSide: dx = reference.right - edges.right; break;
    case kTopSide: dy = reference.top - edges.top; break;
    case kBottomSide: dy = reference.bottom - edges.bottom; break;
    default: break;
    }
    return {edges.left + dx, edges.top + dy, edges.right + dx, edges.bottom + dy};
}

Edges StretchEdges(Edges edges, const Edges& reference, GroupSide side, int minWidth,
                   int minHeight) {
    Edges to = edges;
    switch (side) {
    case kLeftSide: to.left = reference.left; break;
    case kRightSide: to.right = reference.right; break;
    case kTopSide: to.top = reference.top; break;
    case kBottomSide: to.bottom = reference.bottom; break;
    default: return edges;
    }
    return to.right - to.left < minWidth || to.bottom - to.top < minHeight ? edges : to;
}
