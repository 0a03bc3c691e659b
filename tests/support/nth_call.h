// "The n-th call fails": a fake of an interface asks FailsNow() at each call, and ForEachFault()
// runs the same scenario once for every call that it makes, failing the first, the second, ...
#pragma once

struct NthCall {
    int failAt = 0; // 1-based; 0: nothing fails
    int count = 0;
};

// Counts a call; 1 when this is the one that fails.
inline int FailsNow(NthCall& calls) {
    return ++calls.count == calls.failAt;
}

// scenario(calls) is run with failAt = 1, 2, ... until a run makes fewer calls than that; returns
// the number of runs in which a call failed. `limit` guards against a scenario that never ends.
template <class Scenario> int ForEachFault(Scenario scenario, int limit = 10000) {
    for (int n = 1; n <= limit; ++n) {
        NthCall calls;
        calls.failAt = n;
        scenario(calls);
        if (calls.count < n) return n - 1;
    }
    return limit;
}
